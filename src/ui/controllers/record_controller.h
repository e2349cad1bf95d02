#pragma once

#include "recording/recording_types.h"
#include "ui/message.h"

#include <QObject>

#include <functional>
#include <utility>

class Player;
class UiSettings;

/// The engine's dynamic boost, and how the user is asked about it.
struct BoostControl {
    std::function<bool()> isOn;
    std::function<void(bool)> setOn;
    /// Shows the question and calls back with the answer, at once or later; true: yes.
    std::function<void(const QString& question, const std::function<void(bool)>& answered)> ask;
};

/// Starts and ends recordings, and knows what is being recorded.
///
/// *Thread*: GUI. *Owner*: the main window. The objects given outlive it.
class RecordController final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RecordController)

  public:
    RecordController(Player& player, const UiSettings& settings, QObject* parent = nullptr);

    /// True where there is a stream, or one that is being connected, and nothing is recorded.
    [[nodiscard]] bool canStart() const;
    /// Does nothing where nothing plays. A recording that runs goes on, in the mode it has; one
    /// that is being completed is waited for. `schedule` is the name of the task that asks; may be
    /// empty.
    void start(BASS::RecordMode mode, const QString& schedule = {});
    void stop();
    /// The title before the one that is heard goes to a file; a message says where that is not
    /// possible.
    void keepLastTitle();
    [[nodiscard]] bool canKeepLastTitle() const;
    void togglePaused();
    [[nodiscard]] bool isPaused() const;
    /// Dynamic boost distorts what is encoded: the user is asked whether it goes off for as long as
    /// a recording with encoding runs. Without it nothing is asked.
    void setBoostControl(BoostControl control) { m_boost = std::move(control); }
    /// A new file has begun.
    void cutMade(const BASS::Song& song);
    /// Stops a recording, else starts one as the settings say.
    void toggle();
    /// False as soon as the end has been asked for, although the file may still be written to.
    [[nodiscard]] bool isRecording() const;
    /// The stream that is recorded will be left.
    void leaveStream();

    /// Of the recording that runs; else of the last one.
    [[nodiscard]] const BASS::RecordingProgress& progress() const { return m_progress; }
    /// The folder of the file that is being written; else the recording folder.
    [[nodiscard]] QString folderToShow() const;

  signals:
    /// Started, stopped, or the file or its numbers changed.
    void sig_changed();
    void sig_message(const Message& message);

  private:
    void begin();
    [[nodiscard]] BASS::RecordingOptions options(BASS::RecordMode mode) const;
    void start(const BASS::RecordingOptions& options);
    void restoreBoost();
    void recordingChanged(bool isRecording);
    void finished();
    void fileOpened(const QString& path, const BASS::Song& song);
    void progressed(const BASS::RecordingProgress& progress);
    void failed(const BASS::RecordingError& error);

    Player& m_player;
    const UiSettings& m_settings;
    BASS::RecordMode m_mode = BASS::RecordMode::Split; ///< asked for last
    QString m_schedule;
    bool m_isEnding = false; ///< asked to stop, not yet finished
    BoostControl m_boost;
    bool m_isBoostOff = false; ///< by the user's answer, for this recording
    bool m_isAsking = false;   ///< the answer to the question is waited for
    bool m_isPending = false;  ///< to be started when the one that ends has finished
    BASS::RecordingProgress m_progress;
};
