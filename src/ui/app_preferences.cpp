// The part of AppUiSettings that serves the settings dialog.
#include "app/app_settings.h"
#include "app/message_log.h"
#include "ui/app_ui_settings.h"

#include <QDir>

namespace {

template <typename Key, typename Value>
void change(Key& key, const Value& before, const Value& after) {
    if (before != after) {
        key.set(after);
    }
}

} // namespace

TrayOptions AppUiSettings::trayOptions() const {
    TrayOptions options;
    options.isShown = m_settings.ShowTrayIcon();
    options.isPersistent = m_settings.PersistentTrayIcon();
    options.isHiddenOnClose = m_settings.TrayOnClose();
    options.isHiddenOnMinimize = m_settings.TrayOnMinimize();
    options.isHiddenAtStart = m_settings.MinimizeToTrayOnStartUp();
    options.isMutedByClick = m_settings.TrayClickMuteVolume();
    options.hasPopups = !m_settings.DisablePopups();
    options.isToolTipUpdated = m_settings.UpdateTrayToolTip();
    return options;
}

Preferences AppUiSettings::preferences() const {
    Preferences now;
    now.languageFile = languageFile();
    now.theme = theme();
    now.isAutoPlaying = m_settings.AutoPlayOnStart();
    now.isAskingOnExit = m_settings.AskUserOnExitIfRecording();
    now.areMultipleInstancesAllowed = m_settings.AllowMultipleInstances();
    now.isLogFileKept = m_settings.CreateLogFile();
    now.tray = trayOptions();
    now.fadeInSeconds = m_settings.FadeInValue();
    now.fadeOutSeconds = m_settings.FadeOutValue();
    now.bufferMs = m_settings.BufferSize();
    now.attempts = m_settings.Retries();
    now.outputDevice = m_settings.PlayOnDevicesName();
    now.meter = meterKind();
    now.patienceMinutes = m_settings.ReconnectMinutes();
    now.recordingDevice = m_settings.RecordingDeviceName();
    now.recording = recordingPreferences();
    now.proxy = proxySettings(m_settings);
    return now;
}

void AppUiSettings::changePreferences(const Preferences& before, const Preferences& after) {
    changeGeneral(before, after);
    changeTray(before.tray, after.tray);
    changeSound(before, after);
    changeRecording(before.recording, after.recording);
    changeEncoding(before.recording, after.recording);
    if (before.proxy != after.proxy) {
        changeProxy(after.proxy);
    }
}

void AppUiSettings::changeGeneral(const Preferences& before, const Preferences& after) {
    if (before.languageFile != after.languageFile) {
        setLanguageFile(after.languageFile);
    }
    if (before.theme != after.theme) {
        setTheme(after.theme);
    }
    change(m_settings.AutoPlayOnStart, before.isAutoPlaying, after.isAutoPlaying);
    change(m_settings.AskUserOnExitIfRecording, before.isAskingOnExit, after.isAskingOnExit);
    change(m_settings.AllowMultipleInstances,
           before.areMultipleInstancesAllowed,
           after.areMultipleInstancesAllowed);
    change(m_settings.CreateLogFile, before.isLogFileKept, after.isLogFileKept);
}

void AppUiSettings::changeTray(const TrayOptions& before, const TrayOptions& after) {
    change(m_settings.ShowTrayIcon, before.isShown, after.isShown);
    change(m_settings.PersistentTrayIcon, before.isPersistent, after.isPersistent);
    change(m_settings.TrayOnClose, before.isHiddenOnClose, after.isHiddenOnClose);
    change(m_settings.TrayOnMinimize, before.isHiddenOnMinimize, after.isHiddenOnMinimize);
    change(m_settings.MinimizeToTrayOnStartUp, before.isHiddenAtStart, after.isHiddenAtStart);
    change(m_settings.TrayClickMuteVolume, before.isMutedByClick, after.isMutedByClick);
    change(m_settings.DisablePopups, !before.hasPopups, !after.hasPopups);
    change(m_settings.UpdateTrayToolTip, before.isToolTipUpdated, after.isToolTipUpdated);
}

void AppUiSettings::changeSound(const Preferences& before, const Preferences& after) {
    change(m_settings.FadeInValue, before.fadeInSeconds, after.fadeInSeconds);
    change(m_settings.FadeOutValue, before.fadeOutSeconds, after.fadeOutSeconds);
    change(m_settings.BufferSize, before.bufferMs, after.bufferMs);
    change(m_settings.Retries, before.attempts, after.attempts);
    change(m_settings.ReconnectMinutes, before.patienceMinutes, after.patienceMinutes);
    change(m_settings.RecordingDeviceName, before.recordingDevice, after.recordingDevice);
    if (before.meter != after.meter) {
        m_settings.PeakMeterEnabled.set(after.meter != MeterKind::None);
        m_settings.PeakMeterSpectrum.set(after.meter == MeterKind::Spectrum);
    }
    if (before.outputDevice != after.outputDevice) {
        m_settings.PlayOnDevicesName.set(after.outputDevice);
        m_settings.PlayOnDevices.set(-1); // a place in the list says little after the next start
    }
}

void AppUiSettings::changeProxy(const ProxySettings& proxy) {
    m_settings.Proxy.set(proxy.host);
    m_settings.ProxyPort.set(proxy.port);
    m_settings.ProxyUsername.set(proxy.user);
    m_settings.ProxyPassword.set(proxy.password);
    m_settings.SetProxyDisabled(proxy.isDisabled);
    applyApplicationProxy(proxySettings(m_settings));
}
