#pragma once

#include <QMap>
#include <QString>

/// What the settings dialog shows and changes of recordings. A plain value.
struct RecordingPreferences {
    /// How files are called; the formats are Qt's.
    struct Names {
        QString pattern;
        QString dateFormat;
        QString timeFormat;
    };

    QString folder; ///< native separators; empty: the standard folder
    Names split;
    Names noSplit;
    bool isSplit = true;  ///< what the record button does
    int splitMinutes = 0; ///< length of the parts of what is not split by titles; 0: one file
    int splitDelayMs = 0; ///< from a title to its cut; negative: before it
    bool isOverwriting = false;
    bool isMp3ByteExact = false;
    bool isM4aUsed = true; ///< for AAC streams
    bool isPauseShown = false;
    bool hasBuffer = false;
    int bufferMegabytes = 16;

    // Encoding
    int encoder = 0;   ///< code; 0: the stream's own data
    int bitrate = 196; ///< kbit/s, or a quality; 0: not set
    int mode = 0;      ///< BASS::EncoderMode
    bool isSameKept = true;
    bool isOriginalRemoved = true;
    QMap<int, QString> arguments; ///< by code, for the external programs; none: not told

    // Tags and lists
    bool hasTags = true;
    bool hasTrackList = false;
    QString trackListFormat = QStringLiteral("m3u"); ///< or "cue", "txt"
    bool isTrackListDated = true;
    bool isTitleListKept = false;
};
