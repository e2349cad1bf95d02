#include "ui/controllers/command_line_controller.h"

#include "base/log.h"
#include "stations/played_stations.h"
#include "ui/controllers/end_action_timer.h"
#include "ui/controllers/play_controller.h"
#include "ui/controllers/record_controller.h"
#include "ui/controllers/volume_controller.h"
#include "ui/player.h"
#include "ui/state_text.h"
#include "ui/ui_settings.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace {

BASS::RecordMode recordMode(RecordAction action) {
    switch (action) {
    case RecordAction::Record:
        return BASS::RecordMode::FromSettings;
    case RecordAction::Split:
        return BASS::RecordMode::Split;
    case RecordAction::NoSplit:
        return BASS::RecordMode::NoSplit;
    case RecordAction::None:
        break;
    }
    return BASS::RecordMode::None;
}

} // namespace

CommandLineController::CommandLineController(const Parts& parts, Later later, QObject* parent)
    : QObject(parent), m_parts(parts), m_later(std::move(later)) {}

bool CommandLineController::carryOut(const CommandRecord& command) {
    if (command.isEmpty()) {
        emit sig_bringToFrontRequested();
        updateTaskBarLater();
        return false;
    }
    if (isRunningAlready(command)) {
        qCInfo(lcUi).noquote() << "Schedule is already running" << *command.id;
        emit sig_message(
            {Message::Kind::Information, tr("Schedule is already running now"), {}, {}});
        return true;
    }
    if (command.isMuteOnStart) {
        qCInfo(lcUi) << "ProcessArgs MuteVolume is on";
        m_parts.volume.setMuted(true);
    }
    if (command.duration) {
        m_parts.endAction.start(std::chrono::seconds(*command.duration),
                                command.endAction.value_or(EndAction::StopPlaying));
    }
    const bool isStarted = startStation(command);
    startLater(command);
    emit sig_showWindow(command.show);
    if (command.show != ShowMode::Minimized) {
        updateTaskBarLater();
    }
    return isStarted;
}

void CommandLineController::updateTaskBarLater() {
    m_later(1000ms, [this] { emit sig_taskBarUpdateRequested(); });
}

bool CommandLineController::isRunningAlready(const CommandRecord& command) const {
    if (!command.id || command.id->isEmpty() || !m_parts.settings.advancedScheduling() ||
        !isActive(m_parts.player.playState())) {
        return false;
    }
    return *command.id == m_parts.player.station().stationId || *command.id == m_runningId;
}

bool CommandLineController::findStation(const CommandRecord& command,
                                        BASS::StationRecord& station) {
    if (command.stationId) {
        const auto& known = m_parts.played.stations();
        const auto found = std::find_if(known.cbegin(), known.cend(), [&command](const auto& s) {
            return s.stationId == *command.stationId;
        });
        if (found != known.cend()) {
            station = *found;
            return true;
        }
        if (!command.url) {
            refuse(tr("The station with the id %1 is not known here. Start it by its address, with "
                      "/url=.")
                       .arg(*command.stationId));
        }
    }
    if (!command.url || command.url->trimmed().isEmpty()) {
        return false;
    }
    if (*command.url == QLatin1String("RecordingDevice")) {
        station = PlayController::recordingDevice(command.name.value_or(QString()));
        return true;
    }
    station =
        m_parts.play.stationForAddress(command.url->trimmed(), command.name.value_or(QString()));
    return true;
}

bool CommandLineController::startStation(const CommandRecord& command) {
    BASS::StationRecord station;
    const bool isFound = findStation(command, station);
    if (isFound) {
        if (isActive(m_parts.player.playState())) {
            m_parts.play.stop();
        }
        m_runningId = command.id.value_or(QString());
        m_parts.play.play(station);
    }
    const BASS::RecordMode mode = recordMode(command.recordAction);
    if (mode != BASS::RecordMode::None) {
        // With an id it is a schedule that asks, and the name is its own.
        m_parts.record.start(mode, command.id ? command.name.value_or(QString()) : QString());
    }
    return isFound;
}

void CommandLineController::startLater(const CommandRecord& command) {
    if (command.isStartLast) {
        m_later(1000ms, [this] { m_parts.play.playLast(); });
    }
    if (command.isPlayLast && !isActive(m_parts.player.playState()) &&
        !m_parts.settings.autoPlayOnStart()) {
        m_later(2000ms, [this] {
            if (!isActive(m_parts.player.playState())) { // nothing was started meanwhile
                emit sig_connectLastStationRequested();
            }
        });
    }
    if (command.isRestart) {
        m_later(500ms, [this] { emit sig_bringToFrontRequested(); });
    }
}

void CommandLineController::refuse(const QString& text) {
    emit sig_message({Message::Kind::Error, text, {}, {}});
}
