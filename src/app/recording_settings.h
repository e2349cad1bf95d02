#pragma once

#include "app/setting.h"

/// Recording and splitting; folder, date and time formats have their own rules in AppSettings.
class RecordingSettings {
    SettingsStore& m_file;

  public:
    explicit RecordingSettings(SettingsStore& store) : m_file(store) {}

    IntSetting RecMode{m_file, "RecMode", "0"};
    IntSetting RecordingMode{m_file, "RecordingMode", "0"};
    TextSetting RecPattern{m_file, "RecPattern", "%title%\\%track%"};
    TextSetting RecPatternNoSplitting{
        m_file, "RecPatternNoSplitting", "%title%\\%title%_%date%_%time%"};
    TextSetting FilePattern{m_file, "FilePattern", "%station%\\%track%"};
    TextSetting DateFormat{m_file, "DateFormat", "%Y%m%d"};
    TextSetting TimeFormat{m_file, "TimeFormat", "%H%M%S"};
    // Minutes; 0: by track.
    IntSetting RecSplitMins{m_file, "RecSplitMins", "0"};
    BoolSetting OverwriteRecFile{m_file, "OverwriteRecFile", "false"};
    BoolSetting ReuseCurrentRecFile{m_file, "ReuseCurrentRecFile", "true"};
    BoolSetting DoNotUseRecBuffer{m_file, "DoNotUseRecBuffer", "true"};
    IntSetting RecBufferSize{m_file, "RecBufferSize"};
    // kbit/s
    IntSetting EncodingBitrate{m_file, "EncodingBitrate", "196"};
    IntSetting EncodingStreamType{m_file, "EncodingStreamType"};
    BoolSetting LameContinuous{m_file, "LameContinuous", "false"};
    BoolSetting LameEncodeOgg{m_file, "LameEncodeOgg", "false"};
    BoolSetting UseLegacyEncoding{m_file, "UseLegacyEncoding", "false"};
    BoolSetting UseM4AForAAC{m_file, "UseM4AForAAC", "true"};
    BoolSetting RemoveOriginalFileAfterEncoding{m_file, "RemoveOriginalFileAfterEncoding", "true"};
    BoolSetting ShowEncoderOutput{m_file, "ShowEncoderOutput", "false"};
    BoolSetting ShowEncoder{m_file, "ShowEncoder", "false"};
    BoolSetting ShowPauseRecordingButton{m_file, "ShowPauseRecordingButton", "false"};
    BoolSetting AnnounceRecordingStatus{m_file, "AnnounceRecordingStatus", "false"};
    BoolSetting SaveTagsForTrackFile{m_file, "SaveTagsForTrackFile", "true"};
    BoolSetting UseTagMan{m_file, "UseTagMan", "false"};
    BoolSetting AutoSaveTrackHistory{m_file, "AutoSaveTrackHistory", "false"};
    TextSetting AutoSaveTrackHistoryFormat{m_file, "AutoSaveTrackHistoryFormat", "m3u"};
    BoolSetting AddDateToTrackHistory{m_file, "AddDateToTrackHistory", "true"};
    BoolSetting SaveTracksToFile{m_file, "SaveTracksToFile", "false"};
    IntSetting MaxHistoryLength{m_file, "MaxHistoryLength", "20"};
    BoolSetting DoNotEncodeAtAllTimes{m_file, "DoNotEncodeAtAllTimes"};
};

/// Schedules; ScheduleTime24h has its own rule in AppSettings.
class SchedulerSettings {
    SettingsStore& m_file;

  public:
    explicit SchedulerSettings(SettingsStore& store) : m_file(store) {}

    BoolSetting AdvancedScheduling{m_file, "AdvancedScheduling", "false"};
    BoolSetting ShowScheduleConfirmation{m_file, "ShowScheduleConfirmation", "true"};
    BoolSetting ScheduleV2{m_file, "ScheduleV2", "false"};
};
