#pragma once

#include "support/test_station.h"

#include <QStringList>

#include <vector>

/// One station that does what none should, and what the program must make of it.
struct HostileRow {
    const char* what;
    StationScript script;
    const char* said; ///< printed at the latest when all has been served
    /// The recordings' names in order, each as often as there are files of it; empty: there is
    /// nothing to record.
    QStringList titles;
    QByteArray bytes;     ///< of the stream, as the recordings hold them; empty: not compared
    double seconds = 0.0; ///< of the recordings when decoded; 0: not compared
    const char* path = "/station";
};

/// Title blocks, metaint, headers, redirects, transfer codings, ends.
std::vector<HostileRow> hostileAnswers();
/// Frames and containers that are cut, changed, mixed up or no audio at all.
std::vector<HostileRow> hostileAudio();
/// Playlists and segments.
std::vector<HostileRow> hostilePlaylists();
