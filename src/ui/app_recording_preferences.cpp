// The part of AppUiSettings that serves the recording pages of the settings dialog.
#include "app/app_settings.h"
#include "recording/c_encoder_params.h"
#include "ui/app_ui_settings.h"

namespace {

template <typename Key, typename Value>
void change(Key& key, const Value& before, const Value& after) {
    if (before != after) {
        key.set(after);
    }
}

struct ArgumentKey {
    int encoder;
    TextSetting AppSettings::*setting;
};

constexpr ArgumentKey kArgumentKeys[] = {
    {BASS::EncoderMp3, &AppSettings::RecLameArguments},
    {BASS::EncoderAacPlus, &AppSettings::RecAacPlusArguments},
    {BASS::EncoderOgg, &AppSettings::RecOggEncArguments},
    {BASS::EncoderFlac, &AppSettings::RecFlacArguments},
    {BASS::EncoderAac, &AppSettings::RecFaacArguments},
    {BASS::EncoderFlacOgg, &AppSettings::RecFlacArguments},
};

} // namespace

QString AppUiSettings::encoderArguments(int encoder) const {
    for (const ArgumentKey& key : kArgumentKeys) {
        if (key.encoder == encoder) {
            return (m_settings.*key.setting)();
        }
    }
    return {};
}

RecordingPreferences AppUiSettings::recordingPreferences() const {
    RecordingPreferences now;
    const auto on = RecordSplitting::On;
    const auto off = RecordSplitting::Off;
    now.folder = m_settings.AppRecordingFolder();
    now.split = {
        m_settings.RecPattern(), m_settings.RecDateFormat(on), m_settings.RecTimeFormat(on)};
    now.noSplit = {m_settings.RecPatternNoSplitting(),
                   m_settings.RecDateFormat(off),
                   m_settings.RecTimeFormat(off)};
    now.isSplit = m_settings.RecButtonSplits();
    now.splitMinutes = m_settings.RecSplitMins();
    now.splitDelayMs = m_settings.RecSplitDelayMs();
    now.isOverwriting = m_settings.OverwriteRecFile();
    now.isMp3ByteExact = m_settings.RecMp3ByteExact();
    now.isM4aUsed = m_settings.UseM4AForAAC();
    now.isPauseShown = m_settings.ShowPauseRecordingButton();
    now.hasBuffer = !m_settings.DoNotUseRecBuffer();
    if (m_settings.RecBufferSize() > 0) {
        now.bufferMegabytes = m_settings.RecBufferSize();
    }
    now.encoder = m_settings.EncodingStreamType();
    now.bitrate = m_settings.EncodingBitrate();
    now.mode = m_settings.RecEncodingMode();
    now.isSameKept = m_settings.RecKeepSameFormat();
    now.isOriginalRemoved = m_settings.RemoveOriginalFileAfterEncoding();
    for (const ArgumentKey& key : kArgumentKeys) {
        now.arguments.insert(key.encoder, (m_settings.*key.setting)());
    }
    now.hasTags = m_settings.SaveTagsForTrackFile();
    now.hasTrackList = m_settings.AutoSaveTrackHistory();
    now.trackListFormat = m_settings.AutoSaveTrackHistoryFormat();
    now.isTrackListDated = m_settings.AddDateToTrackHistory();
    now.isTitleListKept = m_settings.SaveTracksToFile();
    return now;
}

void AppUiSettings::changeRecording(const RecordingPreferences& before,
                                    const RecordingPreferences& after) {
    if (before.folder != after.folder) {
        m_settings.SetAppRecordingFolder(after.folder);
    }
    change(m_settings.RecPattern, before.split.pattern, after.split.pattern);
    change(m_settings.RecPatternNoSplitting, before.noSplit.pattern, after.noSplit.pattern);
    changeFormats(RecordSplitting::On, before.split, after.split);
    changeFormats(RecordSplitting::Off, before.noSplit, after.noSplit);
    change(m_settings.RecButtonSplits, before.isSplit, after.isSplit);
    change(m_settings.RecMode, before.isSplit ? 1 : 0, after.isSplit ? 1 : 0);
    change(m_settings.RecSplitMins, before.splitMinutes, after.splitMinutes);
    change(m_settings.RecSplitDelayMs, before.splitDelayMs, after.splitDelayMs);
    change(m_settings.OverwriteRecFile, before.isOverwriting, after.isOverwriting);
    change(m_settings.RecMp3ByteExact, before.isMp3ByteExact, after.isMp3ByteExact);
    change(m_settings.UseM4AForAAC, before.isM4aUsed, after.isM4aUsed);
    change(m_settings.ShowPauseRecordingButton, before.isPauseShown, after.isPauseShown);
    change(m_settings.DoNotUseRecBuffer, !before.hasBuffer, !after.hasBuffer);
    change(m_settings.RecBufferSize, before.bufferMegabytes, after.bufferMegabytes);
}

void AppUiSettings::changeFormats(RecordSplitting splitting,
                                  const RecordingPreferences::Names& before,
                                  const RecordingPreferences::Names& after) {
    if (before.dateFormat != after.dateFormat) {
        m_settings.SetRecDateFormat(splitting, after.dateFormat);
    }
    if (before.timeFormat != after.timeFormat) {
        m_settings.SetRecTimeFormat(splitting, after.timeFormat);
    }
}

void AppUiSettings::changeEncoding(const RecordingPreferences& before,
                                   const RecordingPreferences& after) {
    change(m_settings.EncodingStreamType, before.encoder, after.encoder);
    change(m_settings.EncodingBitrate, before.bitrate, after.bitrate);
    change(m_settings.RecEncodingMode, before.mode, after.mode);
    change(m_settings.RecKeepSameFormat, before.isSameKept, after.isSameKept);
    change(m_settings.RemoveOriginalFileAfterEncoding,
           before.isOriginalRemoved,
           after.isOriginalRemoved);
    for (const ArgumentKey& key : kArgumentKeys) {
        change(m_settings.*key.setting,
               before.arguments.value(key.encoder),
               after.arguments.value(key.encoder));
    }
    change(m_settings.SaveTagsForTrackFile, before.hasTags, after.hasTags);
    change(m_settings.AutoSaveTrackHistory, before.hasTrackList, after.hasTrackList);
    change(m_settings.AutoSaveTrackHistoryFormat, before.trackListFormat, after.trackListFormat);
    change(m_settings.AddDateToTrackHistory, before.isTrackListDated, after.isTrackListDated);
    change(m_settings.SaveTracksToFile, before.isTitleListKept, after.isTitleListKept);
}
