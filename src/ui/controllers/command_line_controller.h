#pragma once

#include "app/command_line.h"
#include "ui/message.h"

#include <QObject>

#include <chrono>
#include <functional>

class EndActionTimer;
class PlayController;
class Player;
class RecordController;
class UiSettings;
class VolumeController;

namespace BASS {
class PlayedStations;
struct StationRecord;
} // namespace BASS

/// Carries out a command line, the program's own or one that another instance has handed over.
///
/// *Thread*: GUI. *Owner*: the main window. The objects given outlive it.
class CommandLineController final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CommandLineController)

  public:
    struct Parts {
        Player& player;
        PlayController& play;
        RecordController& record;
        VolumeController& volume;
        EndActionTimer& endAction;
        const BASS::PlayedStations& played;
        const UiSettings& settings;
    };
    /// Calls a function after a time.
    using Later = std::function<void(std::chrono::milliseconds, std::function<void()>)>;

    CommandLineController(const Parts& parts, Later later, QObject* parent = nullptr);

    /// True where a station was started, or would have been but runs already.
    bool carryOut(const CommandRecord& command);

  signals:
    void sig_showWindow(ShowMode mode);
    void sig_bringToFrontRequested();
    void sig_taskBarUpdateRequested();
    void sig_connectLastStationRequested();
    void sig_message(const Message& message);

  private:
    [[nodiscard]] bool isRunningAlready(const CommandRecord& command) const;
    [[nodiscard]] bool findStation(const CommandRecord& command, BASS::StationRecord& station);
    bool startStation(const CommandRecord& command);
    void startLater(const CommandRecord& command);
    void updateTaskBarLater();
    void refuse(const QString& text);

    Parts m_parts;
    Later m_later;
    QString m_runningId; ///< "/id=" of the command that is carried out
};
