#pragma once

#include "engine/engine_types.h"
#include "recording/recording_types.h"

#include <QString>

#include <chrono>

// The sentences of the player bar. Pure functions; translatable.

/// "Playing", "Connecting...", ...
QString stateText(PlayState state);

/// "MP3 - 128 kbit/s - Stereo - 44.1 kHz", of what is known; may be empty.
QString streamText(const StreamInfo& info);

/// "1:02:03" or "4:05".
QString durationText(std::chrono::milliseconds duration);

/// "2.3 MB" in the user's locale.
QString sizeText(qint64 bytes);

/// "room for 3:04:05", or for days.
QString remainingText(std::chrono::seconds remaining);

/// "4:05, 3.7 MB, 3 tracks, room for 3:04:05": of the open file and the session so far.
QString recordingText(const BASS::RecordingProgress& progress);

/// The whole text of an error, with the operating system's reason where there is one.
QString recordingErrorText(const BASS::RecordingError& error);

/// True where "stop" has something to stop.
bool isActive(PlayState state);
