#pragma once

#include "engine/sound_options.h"
#include "recording/recording_types.h"
#include "stations/station.h"
#include "ui/preferences.h"
#include "ui/theme/theme.h"
#include "ui/tray_options.h"
#include "ui/widgets/peak_meter.h"

#include <QByteArray>
#include <QString>

/// The preferences that the window reads and writes.
///
/// *Thread*: GUI. *Owner*: main().
class UiSettings {
  public:
    virtual ~UiSettings() = default;

    /// 0 to 100.
    [[nodiscard]] virtual int volume() const = 0;
    virtual void setVolume(int percent) = 0;

    [[nodiscard]] virtual ThemeChoice theme() const = 0;
    virtual void setTheme(ThemeChoice choice) = 0;

    /// As QWidget::saveGeometry gives it; empty: not known.
    [[nodiscard]] virtual QByteArray windowGeometry(const QString& window) const = 0;
    virtual void setWindowGeometry(const QString& window, const QByteArray& geometry) = 0;

    /// Index of the page shown last; -1: not known.
    [[nodiscard]] virtual int lastPage() const = 0;
    virtual void setLastPage(int index) = 0;

    /// The language's file, "German.lng"; a new one is in force from the next start on.
    [[nodiscard]] virtual QString languageFile() const = 0;
    virtual void setLanguageFile(const QString& file) = 0;

    [[nodiscard]] virtual TrayOptions trayOptions() const = 0;

    [[nodiscard]] virtual Preferences preferences() const = 0;
    /// Stores what differs between the two, and nothing else.
    virtual void changePreferences(const Preferences& before, const Preferences& after) = 0;

    /// How this station sounds; without a station the general way.
    [[nodiscard]] virtual BASS::SoundOptions sound(const BASS::StationRecord& station) const = 0;
    /// Keeps it: the equalizer for this station alone where the options say so.
    virtual void setSound(const BASS::StationRecord& station, const BASS::SoundOptions& sound) = 0;
    virtual void forgetStationEqualizer(const BASS::StationRecord& station) = 0;
    [[nodiscard]] virtual PeakMeterLook peakMeter() const = 0;

    [[nodiscard]] virtual bool askOnExitIfRecording() const = 0;
    [[nodiscard]] virtual bool autoPlayOnStart() const = 0;
    [[nodiscard]] virtual bool advancedScheduling() const = 0;

    /// False: it makes one file.
    [[nodiscard]] virtual bool isRecordButtonSplitting() const = 0;
    [[nodiscard]] virtual bool isPauseButtonShown() const = 0;
    /// Absolute.
    [[nodiscard]] virtual QString recordingFolder() const = 0;
    /// Everything that a recording of this station needs; FromSettings is resolved.
    [[nodiscard]] virtual BASS::RecordingOptions
    recordingOptions(BASS::RecordMode mode,
                     const BASS::StationRecord& station,
                     const QString& schedule) const = 0;
};
