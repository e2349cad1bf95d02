#include "ui/app_ui_settings.h"

#include "app/app_settings.h"
#include "app/application_proxy.h"
#include "app/language_manager.h"
#include "recording/station_options.h"

#include <QDir>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QUrl>

#include <algorithm>

namespace {

constexpr qint64 kMegabyte = 1024 * 1024;

BASS::EncoderMode encoderMode(int setting) {
    return setting == 1   ? BASS::EncoderMode::VariableBitrate
           : setting == 2 ? BASS::EncoderMode::AverageBitrate
                          : BASS::EncoderMode::ConstantBitrate;
}

BASS::RecordMode resolved(BASS::RecordMode mode, int setting) {
    if (mode != BASS::RecordMode::FromSettings) {
        return mode;
    }
    // 1 is the engine's split mode; anything else is one file.
    return setting == 1 ? BASS::RecordMode::Split : BASS::RecordMode::NoSplit;
}

} // namespace

int AppUiSettings::volume() const {
    return m_settings.Volume();
}

void AppUiSettings::setVolume(int percent) {
    m_settings.Volume.set(percent);
}

ThemeChoice AppUiSettings::theme() const {
    return themeFromText(m_settings.Theme());
}

void AppUiSettings::setTheme(ThemeChoice choice) {
    m_settings.Theme.set(themeToText(choice));
}

QByteArray AppUiSettings::windowGeometry(const QString& window) const {
    return m_settings.RestoreWindowGeometry(window);
}

void AppUiSettings::setWindowGeometry(const QString& window, const QByteArray& geometry) {
    m_settings.SaveWindowGeometry(window, geometry);
}

int AppUiSettings::lastPage() const {
    return m_settings.LastUsedTab();
}

void AppUiSettings::setLastPage(int index) {
    if (index != m_settings.LastUsedTab()) {
        m_settings.LastUsedTab.set(index);
    }
}

QString AppUiSettings::languageFile() const {
    return languageFiles(m_settings.LanguageFile()).main;
}

void AppUiSettings::setLanguageFile(const QString& file) {
    m_settings.LanguageFile.set(file);
    m_settings.LanguageSet.set(true); // from now on "/lang=" changes nothing
}

bool AppUiSettings::askOnExitIfRecording() const {
    return m_settings.AskUserOnExitIfRecording();
}

bool AppUiSettings::autoPlayOnStart() const {
    return m_settings.AutoPlayOnStart();
}

bool AppUiSettings::advancedScheduling() const {
    return m_settings.AdvancedScheduling();
}

bool AppUiSettings::isRecordButtonSplitting() const {
    return m_settings.RecButtonSplits();
}

bool AppUiSettings::isPauseButtonShown() const {
    return m_settings.ShowPauseRecordingButton();
}

QString AppUiSettings::recordingFolder() const {
    return QDir::fromNativeSeparators(m_settings.AppRecordingFolder());
}

BASS::RecordingOptions AppUiSettings::recordingOptions(BASS::RecordMode mode,
                                                       const BASS::StationRecord& station,
                                                       const QString& schedule) const {
    BASS::RecordingOptions options;
    options.mode = resolved(BASS::stationRecordMode(mode, station.recInfo), m_settings.RecMode());
    const RecordSplitting splitting =
        options.mode == BASS::RecordMode::NoSplit ? RecordSplitting::Off : RecordSplitting::On;
    options.folder = recordingFolder();
    options.patternSplit = m_settings.RecPattern();
    options.patternNoSplit = m_settings.RecPatternNoSplitting();
    options.dateFormat = m_settings.RecDateFormat(splitting);
    options.timeFormat = m_settings.RecTimeFormat(splitting);
    options.invalidReplacement = m_settings.InvalidFileChar();
    options.overwrite = m_settings.OverwriteRecFile();
    options.isMp3CutByteExact = m_settings.RecMp3ByteExact();
    // The station's own delay goes before the general one.
    options.splitDelay =
        std::chrono::milliseconds(station.splitDelayMs > 0 ? static_cast<int>(station.splitDelayMs)
                                                           : m_settings.RecSplitDelayMs());
    options.splitEvery = std::chrono::minutes(std::max(0, m_settings.RecSplitMins()));
    options.isFileReused = m_settings.ReuseCurrentRecFile();
    options.minFreeBytes = std::max(0, m_settings.RecMinFreeMB()) * kMegabyte;
    options.hasTags = m_settings.SaveTagsForTrackFile();
    options.hasTrackList = m_settings.AutoSaveTrackHistory();
    options.trackList = {m_settings.AutoSaveTrackHistoryFormat(),
                         m_settings.AddDateToTrackHistory()};
    options.isTitleListKept = m_settings.SaveTracksToFile();
    options.address = QUrl(station.playUrl()).toString(QUrl::RemoveUserInfo);
    options.encoder = m_settings.EncodingStreamType();
    options.encodingBitrate = m_settings.EncodingBitrate();
    options.encodingMode = encoderMode(m_settings.RecEncodingMode());
    options.encoderArguments = encoderArguments(options.encoder);
    options.isSameKept = m_settings.RecKeepSameFormat();
    options.isOriginalKept = !m_settings.RemoveOriginalFileAfterEncoding();
    options.isM4aUsed = m_settings.UseM4AForAAC();
    options.station = {station.name, station.country, station.countryState, station.city, schedule};
    return BASS::withStationOptions(options, station.recInfo);
}

EngineSettings AppUiSettings::engineSettings() const {
    EngineSettings engine;
    engine.userAgent = m_settings.UserAgent();
    engine.outputDeviceName = m_settings.PlayOnDevicesName();
    engine.outputDevice = m_settings.PlayOnDevices();
    engine.recordingDeviceName = m_settings.RecordingDeviceName();
    engine.bufferMs = m_settings.BufferSize();
    engine.proxy = audioProxyText(proxySettings(m_settings));
    engine.attempts = std::max(1, m_settings.Retries());
    engine.isPlaylistChecked = m_settings.ParsePlaylistFile();
    engine.timeoutSeconds = m_settings.TimeoutValue();
    engine.patience = std::chrono::minutes(std::max(1, m_settings.ReconnectMinutes()));
    engine.fadeIn = std::chrono::seconds(m_settings.FadeInValue());
    engine.fadeOut = std::chrono::seconds(m_settings.FadeOutValue());
    if (!m_settings.DoNotUseRecBuffer())
        engine.recordingBufferMegabytes = m_settings.RecBufferSize() > 0
                                              ? m_settings.RecBufferSize()
                                              : RecordingPreferences().bufferMegabytes;
    return engine;
}

QFont AppUiSettings::applicationFont() const {
    const FontText text = m_settings.GetAppFont();
    QFont font = QGuiApplication::font();
    if (!text.stored.isEmpty() && font.fromString(text.stored)) {
        return font;
    }
    if (QFontDatabase().families().contains(text.family)) {
        font.setFamily(text.family);
    }
    font.setPointSize(text.pointSize);
    return font;
}
