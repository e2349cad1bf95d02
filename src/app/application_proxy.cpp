#include "app/application_proxy.h"

#include "app/app_settings.h"
#include "base/log.h"

#include <QNetworkProxy>

namespace {
constexpr int kLongestProxyText = 1023; ///< bytes; the audio library is given a buffer of 1024

/// 0, the default of the setting, is no port.
quint16 portOf(const ProxySettings& proxy) {
    return proxy.port.toUShort();
}
} // namespace

bool ProxySettings::operator==(const ProxySettings& other) const {
    return host == other.host && port == other.port && user == other.user &&
           password == other.password && isDisabled == other.isDisabled;
}

ProxySettings proxySettings(const AppSettings& settings) {
    return {settings.Proxy(),
            settings.ProxyPort(),
            settings.ProxyUsername(),
            settings.ProxyPassword(),
            settings.ProxyDisabled()};
}

QString audioProxyText(const ProxySettings& proxy) {
    if (!proxy.isInForce())
        return {};
    QString text;
    if (!proxy.user.isEmpty())
        text = proxy.user + QLatin1Char(':') + proxy.password + QLatin1Char('@');
    text += proxy.host;
    if (portOf(proxy) != 0)
        text += QLatin1Char(':') + QString::number(portOf(proxy));
    if (text.toUtf8().size() > kLongestProxyText) {
        qCWarning(lcApp, "audioProxyText: the proxy's description is too long, it is not used");
        return {};
    }
    return text;
}

void applyApplicationProxy(const ProxySettings& proxy) {
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    if (!proxy.isInForce())
        return;
    QNetworkProxy chosen(QNetworkProxy::HttpProxy, proxy.host);
    chosen.setUser(proxy.user);
    chosen.setPassword(proxy.password);
    chosen.setPort(portOf(proxy));
    QNetworkProxy::setApplicationProxy(chosen);
}
