#pragma once

#include <QString>

namespace BASS {

/// What a station says of itself in the headers of its answer. Empty or 0: not said.
struct StreamHeaders {
    QString name;
    QString genre;
    QString website;
    QString description;
    QString contentType;
    int bitrate = 0; ///< kbit/s
};

/// Reads "icy-...", "ice-...", "content-type" and "icy-description" lines, names without regard to
/// case. `list`: lines, each zero-terminated, ended by an empty one; null is answered with nothing
/// said.
StreamHeaders parseStreamHeaders(const char* list);

} // namespace BASS
