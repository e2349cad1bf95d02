#pragma once

#include "engine/engine_types.h"
#include "ui/ui_settings.h"

#include <QFont>

class AppSettings;
enum class RecordSplitting;

/// The window's and the engine's preferences out of the settings store.
///
/// *Thread*: GUI. *Owner*: main(); the store outlives it.
class AppUiSettings final : public UiSettings {
  public:
    explicit AppUiSettings(AppSettings& settings) : m_settings(settings) {}

    [[nodiscard]] int volume() const override;
    void setVolume(int percent) override;
    [[nodiscard]] ThemeChoice theme() const override;
    void setTheme(ThemeChoice choice) override;
    [[nodiscard]] QByteArray windowGeometry(const QString& window) const override;
    void setWindowGeometry(const QString& window, const QByteArray& geometry) override;
    [[nodiscard]] int lastPage() const override;
    void setLastPage(int index) override;
    [[nodiscard]] QString languageFile() const override;
    void setLanguageFile(const QString& file) override;
    [[nodiscard]] TrayOptions trayOptions() const override;
    [[nodiscard]] Preferences preferences() const override;
    void changePreferences(const Preferences& before, const Preferences& after) override;
    [[nodiscard]] BASS::SoundOptions sound(const BASS::StationRecord& station) const override;
    void setSound(const BASS::StationRecord& station, const BASS::SoundOptions& sound) override;
    void forgetStationEqualizer(const BASS::StationRecord& station) override;
    [[nodiscard]] PeakMeterLook peakMeter() const override;
    [[nodiscard]] bool askOnExitIfRecording() const override;
    [[nodiscard]] bool autoPlayOnStart() const override;
    [[nodiscard]] bool advancedScheduling() const override;
    [[nodiscard]] QString recordingFolder() const override;
    [[nodiscard]] bool isRecordButtonSplitting() const override;
    [[nodiscard]] bool isPauseButtonShown() const override;
    [[nodiscard]] BASS::RecordingOptions recordingOptions(BASS::RecordMode mode,
                                                          const BASS::StationRecord& station,
                                                          const QString& schedule) const override;

    [[nodiscard]] EngineSettings engineSettings() const;
    /// The font of the settings where the system has its family, else the system's own.
    [[nodiscard]] QFont applicationFont() const;

  private:
    void changeGeneral(const Preferences& before, const Preferences& after);
    void changeTray(const TrayOptions& before, const TrayOptions& after);
    void changeSound(const Preferences& before, const Preferences& after);
    [[nodiscard]] RecordingPreferences recordingPreferences() const;
    [[nodiscard]] MeterKind meterKind() const;
    void changeRecording(const RecordingPreferences& before, const RecordingPreferences& after);
    void changeEncoding(const RecordingPreferences& before, const RecordingPreferences& after);
    void changeFormats(RecordSplitting splitting,
                       const RecordingPreferences::Names& before,
                       const RecordingPreferences::Names& after);
    [[nodiscard]] QString encoderArguments(int encoder) const;
    void changeProxy(const ProxySettings& proxy);

    AppSettings& m_settings;
};
