#pragma once

#include <QString>

class AppSettings;

/// The proxy as the settings describe it.
struct ProxySettings {
    QString host; ///< empty: none
    QString port; ///< decimal; empty or 0: none given
    QString user;
    QString password;
    bool isDisabled = false;

    bool operator==(const ProxySettings& other) const;
    bool operator!=(const ProxySettings& other) const { return !(*this == other); }
    [[nodiscard]] bool isInForce() const { return !host.isEmpty() && !isDisabled; }
};

/// GUI thread.
ProxySettings proxySettings(const AppSettings& settings);

/// "user:password@host:port" for the audio library; empty where no proxy is in force. At most 1023
/// bytes in UTF-8 reach it; a longer text is no proxy. Pure.
QString audioProxyText(const ProxySettings& proxy);

/// The proxy of all of Qt's network classes: the one of the settings, else the system's. At start
/// and whenever the settings change. GUI thread.
void applyApplicationProxy(const ProxySettings& proxy);
