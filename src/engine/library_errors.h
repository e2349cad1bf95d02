#pragma once

#include "audio/bass_defs.h"

#include <QString>

namespace BASS {

/// The library's own words for an error code; the first row of the table with the code wins, any
/// other code is "Unknown Library Error". Any thread.
QString libraryErrorText(int code);

/// The code's symbolic name, "BASS_ERROR_UNKNOWN" for codes without one.
QString libraryErrorName(int code);

/// How a channel type is called before the user; empty for types without a name.
QString channelTypeName(DWORD ctype);

/// "Mono", "Stereo", or empty.
QString channelCountName(DWORD channels);

} // namespace BASS
