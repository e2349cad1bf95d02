#pragma once

#include "app/setting.h"

/// Audio and playback.
class AudioSettings {
    SettingsStore& m_file;

  public:
    explicit AudioSettings(SettingsStore& store) : m_file(store) {}

    // Percent.
    IntSetting Volume{m_file, "Volume", "20"};
    BoolSetting VolumeForEachStation{m_file, "VolumeForEachStation", "false"};
    BoolSetting ShowVolumeBooster{m_file, "ShowVolumeBooster", "false"};
    // Seconds.
    IntSetting FadeInValue{m_file, "FadeInValue", "2"};
    IntSetting FadeOutValue{m_file, "FadeOutValue", "2"};
    BoolSetting AdjustByVolume{m_file, "AdjustByVolume", "false"};
    BoolSetting Compressor{m_file, "Compressor", "false"};
    BoolSetting AutoVolume{m_file, "AutoVolume", "false"};
    BoolSetting SwapChannels{m_file, "SwapChannels", "false"};
    IntSetting StereoSeparation{m_file, "StereoSeparation", "0"};
    // -1: the default device.
    IntSetting PlayOnDevices{m_file, "PlayOnDevices", "-1"};
    TextSetting PlayOnDevicesName{m_file, "PlayOnDevicesName"};
    /// What a station of the recording device hears; empty: the system's default.
    TextSetting RecordingDeviceName{m_file, "RecordingDeviceName"};
    IntSetting Playback32Bit{m_file, "Playback32Bit", "-1"};
    BoolSetting EqualizerEnabled{m_file, "EqualizerEnabled", "false"};
    TextSetting EQPreset{m_file, "EQPreset"};
    TextSetting EQPreamp{m_file, "EQPreamp"};
    IntSetting EQPresetID{m_file, "EQPresetID", "0"};
    BoolSetting PeakMeterEnabled{m_file, "PeakMeterEnabled", "true"};
    BoolSetting PeakMeterSpectrum{m_file, "PeakMeterSpectrum", "false"}; ///< in place of the level
    BoolSetting PeakmetersSideBySide{m_file, "PeakmetersSideBySide", "false"};
    IntSetting PeakmetersOrientation{m_file, "PeakmetersOrientation", "0"};
    BoolSetting AllowFlacStreams{m_file, "AllowFlacStreams", "true"};
    IntSetting DefaultPodcastDynamicBoost{m_file, "DefaultPodcastDynamicBoost", "2"};
    IntSetting DefaultLocalFileDynamicBoost{m_file, "DefaultLocalFileDynamicBoost", "0"};
    IntSetting TrackAdvancePercent{m_file, "TrackAdvancePercent", "0"};
    IntSetting TrackAdvanceSeconds{m_file, "TrackAdvanceSeconds", "0"};
    BoolSetting MonoOutput{m_file, "MonoOutput"};
};

/// Connection, buffering and proxy; ProxyDisabled has its own rule in AppSettings.
class ConnectionSettings {
    SettingsStore& m_file;

  public:
    explicit ConnectionSettings(SettingsStore& store) : m_file(store) {}

    // Milliseconds.
    IntSetting BufferSize{m_file, "BufferSize", "6000"};
    // Bytes.
    IntSetting MaxBuffer{m_file, "MaxBuffer", "10485760"};
    IntSetting Retries{m_file, "Retries", "2"};
    IntSetting RestartRetries{m_file, "RestartRetries", "2"};
    // Seconds.
    IntSetting TimeoutValue{m_file, "TimeoutValue", "10"};
    IntSetting WaitReconnectSeconds{m_file, "WaitReconnectSeconds", "2"};
    /// How long a lost station is waited for while nothing is recorded.
    IntSetting ReconnectMinutes{m_file, "ReconnectMinutes", "10"};
    BoolSetting AskToReconnect{m_file, "AskToReconnect", "false"};
    BoolSetting ParsePlaylistFile{m_file, "ParsePlaylistFile", "false"};
    BoolSetting TestStations{m_file, "TestStations", "false"};
    // Deliberate: the default stands under a key that nobody reads, so AutoChangeHttps is false.
    UnreadSetting AutoChangesHttps{m_file, "AutoChangesHttps", "false"};
    BoolSetting AutoChangeHttps{m_file, "AutoChangeHttps"};
    TextSetting UserAgent{m_file, "UserAgent"};
    IntSetting UpdateInterval{m_file, "UpdateInterval", "75"};
    BoolSetting UseSystemProxy{m_file, "UseSystemProxy", "false"};
    TextSetting Proxy{m_file, "Proxy"};
    TextSetting ProxyPort{m_file, "ProxyPort", "0"};
    TextSetting ProxyUsername{m_file, "ProxyUsername"};
    TextSetting ProxyPassword{m_file, "ProxyPassword"};
};
