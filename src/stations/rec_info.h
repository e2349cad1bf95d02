#pragma once

#include <QString>

namespace BASS {

/// A station's own recording options, as schedules and favorites keep them. A plain value; what is
/// empty or 0 leaves the settings in force.
struct RecInfo {
    /// How the splitting mode is kept; the numbers are stored.
    enum class Mode { FromSettings = 0, Splitting = 1, NoSplitting = 2 };

    bool isEnabled = false;      ///< nothing below counts without it
    bool hasOwnFormat = false;   ///< recFolder, recFormat and recDateFormat count
    bool hasOwnEncoding = false; ///< recType, recParams and isSameKept count
    bool isOverwriting = false;  ///< "Overwrite same file"
    bool isSameKept = true;      ///< "Do not encode if stream type and bitrate are the same"
    Mode recMode = Mode::FromSettings;
    QString recFolder;
    QString recFormat;     ///< a file pattern, for the mode in use
    QString recDateFormat; ///< Qt date format
    int recType = 0;       ///< encoder code
    QString recParams;     ///< the encoder's argument string
    int splitDelaySecs = 0;
};

} // namespace BASS
