#pragma once

#include "app/setting.h"

/// General, windows and behaviour.
class GeneralSettings {
    SettingsStore& m_file;

  public:
    explicit GeneralSettings(SettingsStore& store) : m_file(store) {}

    BoolSetting AskOnStartup{m_file, "AskOnStartup", "false"};
    BoolSetting AlwaysOnTop{m_file, "AlwaysOnTop", "false"};
    BoolSetting AutoPlayOnStart{m_file, "AutoPlayOnStart", "false"};
    BoolSetting StartHidden{m_file, "StartHidden", "false"};
    BoolSetting MinimizeOnExit{m_file, "MinimizeOnExit", "false"};
    BoolSetting MiniMode{m_file, "MiniMode", "false"};
    BoolSetting SkinMode{m_file, "SkinMode", "false"};
    BoolSetting LanguageSelected{m_file, "LanguageSelected", "true"};
    TextSetting LanguageFile{m_file, "LanguageFile", "English.lng"};
    BoolSetting LanguageSet{m_file, "LanguageSet", "false"};
    BoolSetting AllowMultipleInstances{m_file, "AllowMultipleInstances", "true"};
    BoolSetting AutoCheckVersion{m_file, "AutoCheckVersion", "true"};
    IntSetting AutoUpdateDelay{m_file, "AutoUpdateDelay", "86400"};
    TextSetting AppVersion{m_file, "AppVersion", "2.15.901"};
    TextSetting CheckedVersion{m_file, "CheckedVersion"};
    TextSetting LastVersionCheckDate{m_file, "LastVersionCheckDate"};
    // Seconds since 1970.
    IntSetting LastVersionCheck{m_file, "LastVersionCheck", "1281415628"};
    TextSetting Editor{m_file, "Editor", "notepad"};
    TextSetting InvalidFileChar{m_file, "InvalidFileChar", "_"};
    TextSetting WorldTimeFormat{m_file, "WorldTimeFormat", "h:mm AP"};
    BoolSetting CreateLogFile{m_file, "CreateLogFile", "true"};
    BoolSetting AdvancedLogging{m_file, "AdvancedLogging", "false"};
    BoolSetting LogWindow{m_file, "LogWindow", "false"};
    BoolSetting LogOnTop{m_file, "LogOnTop", "false"};
    BoolSetting LogSnapped{m_file, "LogSnapped", "false"};
    // Points and sizes are texts of the form (x,y).
    TextSetting LogPosition{m_file, "LogPosition", "(502,301)"};
    TextSetting LogSize{m_file, "LogSize", "(436,298)"};
    TextSetting Position{m_file, "Position", "(904,605)"};
    TextSetting MainSize{m_file, "MainSize", "(0,0)"};
    IntSetting CurrentDisplay{m_file, "CurrentDisplay", "0"};
    IntSetting LastUsedTab{m_file, "LastUsedTab", "-1"};
    BoolSetting SaveLastUsedView{m_file, "SaveLastUsedView", "false"};
    TextSetting FontListScale{m_file, "FontListScale", "5.0"};
    BoolSetting SongFontBold{m_file, "SongFontBold", "true"};
    BoolSetting UseInfoStyleSheet{m_file, "UseInfoStyleSheet", "true"};
    BoolSetting MenusScrollable{m_file, "MenusScrollable", "true"};
    BoolSetting ShowInfoIcon{m_file, "ShowInfoIcon", "true"};
    BoolSetting SelectFirstMenuItem{m_file, "SelectFirstMenuItem", "false"};
    IntSetting StatusBarLabels{m_file, "StatusBarLabels", "0"};
    IntSetting MainButtons{m_file, "MainButtons", "0"};
    IntSetting MessageBoxTimeout{m_file, "MessageBoxTimeout", "120"};
    BoolSetting ShowMessageBoxConnection{m_file, "ShowMessageBoxConnection", "false"};
    BoolSetting AskUserOnExitIfPlaying{m_file, "AskUserOnExitIfPlaying", "false"};
    BoolSetting AskUserOnExitIfRecording{m_file, "AskUserOnExitIfRecording", "true"};
    BoolSetting AlertUserOnExitIfPlaying{m_file, "AlertUserOnExitIfPlaying", "false"};
    BoolSetting AutoRestartApp{m_file, "AutoRestartApp", "false"};
    TextSetting RestartAppTime{m_file, "RestartAppTime"};
    TextSetting SleepTimerSecs{m_file, "SleepTimerSecs"};
    TextSetting IconPath{m_file, "IconPath"};
    TextSetting Country{m_file, "Country"};
    TextSetting IPAddress{m_file, "IPAddress"};
    TextSetting ClearCacheDate{m_file, "ClearCacheDate"};
    IntSetting ShutdownComputerAction{m_file, "ShutdownComputerAction", "0"};
    IntSetting CacheUses{m_file, "CacheUses", "0"};
    BoolSetting ClearCachedLogosInit{m_file, "ClearCachedLogosInit", "false"};
    BoolSetting UseIEDownload{m_file, "UseIEDownload", "false"};
    BoolSetting StationWasPlaying{m_file, "StationWasPlaying", "false"};
    BoolSetting OldMan{m_file, "OldMan", "false"};
    BoolSetting TaskSchedulerAdmin{m_file, "TaskSchedulerAdmin", "false"};

    // Not in the table of defaults: false, 0 or empty until first written.
    BoolSetting AutoStart{m_file, "AutoStart"};
    BoolSetting DisableNotifications{m_file, "DisableNotifications"};
    BoolSetting DoNotUseNativeMessageBox{m_file, "DoNotUseNativeMessageBox"};
    BoolSetting MinimizeToTrayOnStartUp{m_file, "MinimizeToTrayOnStartUp"};
    BoolSetting UseWindowsTheme{m_file, "UseWindowsTheme"};
    TextSetting BackupFolder{m_file, "BackupFolder"};
    TextSetting LastSelectedWidget{m_file, "LastSelectedWidget"};
    TextSetting LastTracksPath{m_file, "LastTracksPath"};
    TextSetting LastUsedOpenURLPath{m_file, "LastUsedOpenURLPath"};
};

/// Texts that a colour class takes: "#rrggbb" or a name. Dark... are for the dark theme.
class ColourSettings {
    SettingsStore& m_file;

  public:
    explicit ColourSettings(SettingsStore& store) : m_file(store) {}

    TextSetting PeakBackColor{m_file, "PeakBackColor", "#55aa7f"};
    TextSetting PeakBarColorTop{m_file, "PeakBarColorTop", "#ffaa00"};
    TextSetting PeakBarColorBottom{m_file, "PeakBarColorBottom", "#ffff7f"};
    TextSetting InfoBackColor{m_file, "InfoBackColor", "#006493"};
    TextSetting InfoTextColor{m_file, "InfoTextColor", "white"};
    TextSetting InfoBorderColor{m_file, "InfoBorderColor", "white"};
    TextSetting DarkInfoBackColor{m_file, "DarkInfoBackColor", "#35434F"};
    TextSetting DarkInfoTextColor{m_file, "DarkInfoTextColor", "white"};
    TextSetting DarkInfoBorderColor{m_file, "DarkInfoBorderColor", "white"};
    TextSetting InfoTrackTextColor{m_file, "InfoTrackTextColor"};
    TextSetting DarkInfoTrackTextColor{m_file, "DarkInfoTrackTextColor"};
    TextSetting PopupBackColor{m_file, "PopupBackColor", "#6696E3"};
    TextSetting PopupTextColor1{m_file, "PopupTextColor1", "black"};
    TextSetting PopupTextColor2{m_file, "PopupTextColor2", "black"};
};
