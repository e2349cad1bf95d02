#pragma once

#include "app/setting.h"

/// Tray and notifications.
class TraySettings {
    SettingsStore& m_file;

  public:
    explicit TraySettings(SettingsStore& store) : m_file(store) {}

    BoolSetting TrayOnClose{m_file, "TrayOnClose", "false"};
    BoolSetting TrayOnMinimize{m_file, "TrayOnMinimize", "false"};
    BoolSetting PersistentTrayIcon{m_file, "PersistentTrayIcon", "true"};
    BoolSetting ShowTrayIcon{m_file, "ShowTrayIcon", "true"};
    BoolSetting UpdateTrayToolTip{m_file, "UpdateTrayToolTip", "true"};
    BoolSetting TrayClickMuteVolume{m_file, "TrayClickMuteVolume", "true"};
    // Deliberate: the default stands under a key that nobody reads, so SetVolumeFromWindowsTray is
    // false.
    UnreadSetting VolumeFromWindowsTray{m_file, "VolumeFromWindowsTray", "false"};
    BoolSetting SetVolumeFromWindowsTray{m_file, "SetVolumeFromWindowsTray"};
    IntSetting TrayNotification{m_file, "TrayNotification", "0"};
    BoolSetting DisablePopups{m_file, "DisablePopups", "false"};
    BoolSetting ShowNotificationNewSong{m_file, "ShowNotificationNewSong", "true"};
    BoolSetting ShowNotificationFavsUploaded{m_file, "ShowNotificationFavsUploaded", "true"};
    // Seconds.
    IntSetting NotificationTimeout{m_file, "NotificationTimeout", "5"};
    BoolSetting ShowPopupNoAutoHide{m_file, "ShowPopupNoAutoHide", "false"};
    BoolSetting KeepNotificationWindowWithinBounds{
        m_file, "KeepNotificationWindowWithinBounds", "false"};
    BoolSetting ShowCoverArtButtons{m_file, "ShowCoverArtButtons", "false"};
    BoolSetting ShowCoverArt{m_file, "ShowCoverArt", "true"};
    BoolSetting ShowCoverArtInPopupWindow{m_file, "ShowCoverArtInPopupWindow", "true"};
    TextSetting IRQString{m_file, "IRQString", "Listening to %station% playing %track%"};
    BoolSetting AnnounceTrackNotification{m_file, "AnnounceTrackNotification"};
};

/// Speech, screen readers and hotkeys; ScreenReader has its own rule in AppSettings.
class SpeechSettings {
    SettingsStore& m_file;

  public:
    explicit SpeechSettings(SettingsStore& store) : m_file(store) {}

    BoolSetting SpeakMessages{m_file, "SpeakMessages", "false"};
    IntSetting SpeakOption{m_file, "SpeakOption", "0"};
    IntSetting SpeakOptionVolume{m_file, "SpeakOptionVolume", "50"};
    IntSetting SystemSpeechOption{m_file, "SystemSpeechOption", "0"};
    BoolSetting AnnounceSecondsRemaining{m_file, "AnnounceSecondsRemaining", "false"};
    BoolSetting SpeakClosingMess{m_file, "SpeakClosingMess", "false"};
    BoolSetting SpeakMenus{m_file, "SpeakMenus", "false"};
    BoolSetting UseSpeakMan{m_file, "UseSpeakMan", "true"};
    BoolSetting NoSystemScreenReader{m_file, "NoSystemScreenReader", "false"};
    TextSetting SapiVoice{m_file, "SapiVoice"};
    IntSetting SapiVolume{m_file, "SapiVolume", "80"};
    IntSetting SapiRate{m_file, "SapiRate", "2"};
    BoolSetting AllowSingleKeyShortcuts{m_file, "AllowSingleKeyShortcuts", "false"};
    BoolSetting ProcessMediaKeys{m_file, "ProcessMediaKeys", "true"};
};
