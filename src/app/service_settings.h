#pragma once

#include "app/setting.h"

/// Scrobbling, lyrics, cover art and plug-in hosting.
class ServiceSettings {
    SettingsStore& m_file;

  public:
    explicit ServiceSettings(SettingsStore& store) : m_file(store) {}

    BoolSetting UseLastFM{m_file, "UseLastFM", "false"};
    BoolSetting ScrobbleLastFM{m_file, "ScrobbleLastFM", "false"};
    // Seconds.
    IntSetting ScrobblingStartDelay{m_file, "ScrobblingStartDelay", "20"};
    TextSetting LastFMSessionKey2{m_file, "LastFMSessionKey2"};
    IntSetting LyricsProvider{m_file, "LyricsProvider", "4"};
    TextSetting LyricsPlugin{m_file, "LyricsPlugin"};
    IntSetting LyricsAlignment{m_file, "LyricsAlignment", "4"};
    BoolSetting AutoStartLyricsServer{m_file, "AutoStartLyricsServer", "false"};
    BoolSetting UseLyricsServer{m_file, "UseLyricsServer"};
    IntSetting CoverArtProvider{m_file, "CoverArtProvider", "1"};
    BoolSetting DownloadCoverArtOnly{m_file, "DownloadCoverArtOnly"};
    BoolSetting UseWinampPlugins{m_file, "UseWinampPlugins", "false"};
    BoolSetting WinampPluginEnabled{m_file, "WinampPluginEnabled", "false"};
    TextSetting WinampDSP{m_file, "WinampDSP"};
    TextSetting WinampFolder{m_file, "WinampFolder"};
    TextSetting WinampPlugin{m_file, "WinampPlugin"};
    TextSetting WinampPluginPath{m_file, "WinampPluginPath"};
};

/// Keys of newer features.
class OwnSettings {
    SettingsStore& m_file;

  public:
    explicit OwnSettings(SettingsStore& store) : m_file(store) {}

    // Cuts an MP3 stream without the pre-roll of a clean decoder start.
    BoolSetting RecMp3ByteExact{m_file, "RecMp3ByteExact", "false"};
    TextSetting AudioProvider{m_file, "AudioProvider", "ffmpeg"};
    // What the record button does: one file a track, or one file in all.
    BoolSetting RecButtonSplits{m_file, "RecButtonSplits", "true"};
    // 0 constant, 1 variable, 2 average
    IntSetting RecEncodingMode{m_file, "RecEncodingMode", "0"};
    // The user's arguments of external encoders; empty: the usual ones.
    TextSetting RecLameArguments{m_file, "RecLameArguments"};
    TextSetting RecAacPlusArguments{m_file, "RecAacPlusArguments"};
    TextSetting RecOggEncArguments{m_file, "RecOggEncArguments"};
    TextSetting RecFlacArguments{m_file, "RecFlacArguments"};
    TextSetting RecFaacArguments{m_file, "RecFaacArguments"};
    // Milliseconds of stream time; negative: before the title.
    IntSetting RecSplitDelayMs{m_file, "RecSplitDelayMs", "0"};
    // A stream of the wanted type and bitrate is written as it comes.
    BoolSetting RecKeepSameFormat{m_file, "RecKeepSameFormat", "true"};
    // A recording ends where the disk has less; 0: no limit.
    IntSetting RecMinFreeMB{m_file, "RecMinFreeMB", "200"};
    // 0 off, 1 low, 2 medium, 3 high, 4 custom: with the numbers that follow.
    IntSetting DynamicBoost{m_file, "DynamicBoost", "0"};
    // Decibels, to one, decibels.
    IntSetting DynamicBoostThreshold{m_file, "DynamicBoostThreshold", "-18"};
    IntSetting DynamicBoostRatio{m_file, "DynamicBoostRatio", "3"};
    IntSetting DynamicBoostGain{m_file, "DynamicBoostGain", "9"};
    TextSetting LastStationUrl{m_file, "LastStationUrl"};
    TextSetting LastStationName{m_file, "LastStationName"};
    // "system", "light" or "dark"
    TextSetting Theme{m_file, "Theme", "system"};
};
