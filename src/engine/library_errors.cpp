#include "engine/library_errors.h"

#include <QCoreApplication>

#include <array>

namespace BASS {
namespace {

struct ErrorRow {
    int code;
    const char* name;
    const char* text;
};

// The blank after "device." and the spelling of the last row have always been so and stay. The
// second row with 37 is never reached: the first one wins.
constexpr std::array kErrors{
    ErrorRow{1, "BASS_ERROR_MEM", QT_TRANSLATE_NOOP("BASS::CBass", "Memory error")},
    ErrorRow{2, "BASS_ERROR_FILEOPEN", QT_TRANSLATE_NOOP("BASS::CBass", "Can't open the file")},
    ErrorRow{
        3, "BASS_ERROR_DRIVER", QT_TRANSLATE_NOOP("BASS::CBass", "Can't find a free/valid driver")},
    ErrorRow{
        4, "BASS_ERROR_BUFLOST", QT_TRANSLATE_NOOP("BASS::CBass", "The sample buffer was lost")},
    ErrorRow{5, "BASS_ERROR_HANDLE", QT_TRANSLATE_NOOP("BASS::CBass", "Invalid handle")},
    ErrorRow{6, "BASS_ERROR_FORMAT", QT_TRANSLATE_NOOP("BASS::CBass", "Unsupported sample format")},
    ErrorRow{
        7, "BASS_ERROR_POSITION", QT_TRANSLATE_NOOP("BASS::CBass", "Invalid playback position")},
    ErrorRow{8,
             "BASS_ERROR_INIT",
             QT_TRANSLATE_NOOP("BASS::CBass", "BASS_Init was not successfully called")},
    ErrorRow{9,
             "BASS_ERROR_START",
             QT_TRANSLATE_NOOP("BASS::CBass", "BASS_Start was not successfully called")},
    ErrorRow{14,
             "BASS_ERROR_ALREADY",
             QT_TRANSLATE_NOOP("BASS::CBass", "Already using the requested device. ")},
    ErrorRow{18, "BASS_ERROR_NOCHAN", QT_TRANSLATE_NOOP("BASS::CBass", "Can't get a free channel")},
    ErrorRow{19,
             "BASS_ERROR_ILLTYPE",
             QT_TRANSLATE_NOOP("BASS::CBass", "An illegal type was specified")},
    ErrorRow{20,
             "BASS_ERROR_ILLPARAM",
             QT_TRANSLATE_NOOP("BASS::CBass", "An illegal parameter was specified")},
    ErrorRow{21, "BASS_ERROR_NO3D", QT_TRANSLATE_NOOP("BASS::CBass", "No 3D support")},
    ErrorRow{22, "BASS_ERROR_NOEAX", QT_TRANSLATE_NOOP("BASS::CBass", "No EAX support")},
    ErrorRow{23, "BASS_ERROR_DEVICE", QT_TRANSLATE_NOOP("BASS::CBass", "Illegal device number")},
    ErrorRow{24, "BASS_ERROR_NOPLAY", QT_TRANSLATE_NOOP("BASS::CBass", "Not playing")},
    ErrorRow{25, "BASS_ERROR_FREQ", QT_TRANSLATE_NOOP("BASS::CBass", "Illegal sample rate")},
    ErrorRow{27,
             "BASS_ERROR_NOTFILE",
             QT_TRANSLATE_NOOP("BASS::CBass", "The stream is not a file stream")},
    ErrorRow{
        29, "BASS_ERROR_NOHW", QT_TRANSLATE_NOOP("BASS::CBass", "No hardware voices available")},
    ErrorRow{31,
             "BASS_ERROR_EMPTY",
             QT_TRANSLATE_NOOP("BASS::CBass", "The MOD music has no sequence data")},
    ErrorRow{32,
             "BASS_ERROR_NONET",
             QT_TRANSLATE_NOOP("BASS::CBass", "No internet connection could be opened")},
    ErrorRow{33, "BASS_ERROR_CREATE", QT_TRANSLATE_NOOP("BASS::CBass", "Couldn't create the file")},
    ErrorRow{34, "BASS_ERROR_NOFX", QT_TRANSLATE_NOOP("BASS::CBass", "Effects are not available")},
    ErrorRow{37,
             "BASS_ERROR_NOTAVAIL",
             QT_TRANSLATE_NOOP("BASS::CBass", "Requested data is not available")},
    ErrorRow{38,
             "BASS_ERROR_DECODE",
             QT_TRANSLATE_NOOP("BASS::CBass", "The channel is a decoding channel")},
    ErrorRow{39,
             "BASS_ERROR_DX",
             QT_TRANSLATE_NOOP("BASS::CBass", "Sufficient DirectX version is not installed")},
    ErrorRow{40, "BASS_ERROR_TIMEOUT", QT_TRANSLATE_NOOP("BASS::CBass", "Connection timed out")},
    ErrorRow{
        41, "BASS_ERROR_FILEFORM", QT_TRANSLATE_NOOP("BASS::CBass", "Unsupported file format")},
    ErrorRow{42, "BASS_ERROR_SPEAKER", QT_TRANSLATE_NOOP("BASS::CBass", "Unavailable speaker")},
    ErrorRow{43,
             "BASS_ERROR_VERSION",
             QT_TRANSLATE_NOOP("BASS::CBass", "Invalid BASS version (used by add-ons)")},
    ErrorRow{44,
             "BASS_ERROR_CODEC",
             QT_TRANSLATE_NOOP("BASS::CBass", "Codec is not available/supported")},
    ErrorRow{1001,
             "BASS_ERROR_WMA",
             QT_TRANSLATE_NOOP("BASS::CBass",
                               "The Windows Media modules (v9 or above) are not installed.")},
    ErrorRow{37,
             "BASS_ERROR_NOTAVAIL",
             QT_TRANSLATE_NOOP(
                 "BASS::CBass",
                 "No codec could be found to support the requested sample format and bitrate.")},
    ErrorRow{12, "BASS_ERROR_NOCD", QT_TRANSLATE_NOOP("BASS::CBass", "No CD fouind in the drive")},
    ErrorRow{-1, "BASS_ERROR_UNKNOWN", QT_TRANSLATE_NOOP("BASS::CBass", "Unknown Library Error")},
};

const ErrorRow& rowFor(int code) {
    for (const ErrorRow& row : kErrors) {
        if (row.code == code)
            return row;
    }
    return kErrors.back();
}

struct TypeRow {
    DWORD ctype;
    const char* name;
};

constexpr std::array kTypes{
    TypeRow{BASS_CTYPE_SAMPLE, "Sample channel"},
    TypeRow{BASS_CTYPE_RECORD, "Recording Channel"},
    TypeRow{BASS_CTYPE_MUSIC_MO3, "MO3 Format"},
    TypeRow{BASS_CTYPE_STREAM, "User sample stream"},
    TypeRow{BASS_CTYPE_STREAM_OGG, "OGG"},
    TypeRow{BASS_CTYPE_STREAM_MP1, "MP1"},
    TypeRow{BASS_CTYPE_STREAM_MP3, "MP3"},
    TypeRow{BASS_CTYPE_STREAM_AIFF, "Audio IFF"},
    TypeRow{BASS_CTYPE_STREAM_WMA, "WMA"},
    TypeRow{BASS_CTYPE_STREAM_WMA_MP3, "WMA"},
    TypeRow{BASS_CTYPE_STREAM_FLAC, "FLAC"},
    TypeRow{BASS_CTYPE_STREAM_FLAC_OGG, "FLAC Ogg"},
    TypeRow{BASS_CTYPE_STREAM_AAC, "AAC"},
    TypeRow{BASS_CTYPE_MUSIC_MOD, "Generic MOD Format Music"},
    TypeRow{BASS_CTYPE_MUSIC_MTM, "MultiTracker Format Music"},
    TypeRow{BASS_CTYPE_MUSIC_S3M, "ScreamTracker 3 Format Music"},
    TypeRow{BASS_CTYPE_MUSIC_XM, "FastTracker 2 Format Music"},
    TypeRow{BASS_CTYPE_MUSIC_IT, "Impulse Tracker Format Music"},
    TypeRow{BASS_CTYPE_STREAM_WAV, "WAVE"},
    TypeRow{BASS_CTYPE_STREAM_WAV_PCM, "PCM WAVE"},
    TypeRow{BASS_CTYPE_STREAM_WAV_FLOAT, "PCM WAVE(float)"},
};

} // namespace

QString libraryErrorText(int code) {
    return QCoreApplication::translate("BASS::CBass", rowFor(code).text);
}

QString libraryErrorName(int code) {
    return QLatin1String(rowFor(code).name);
}

QString channelTypeName(DWORD ctype) {
    if (ctype == BASS_CTYPE_STREAM_MP4)
        return QStringLiteral("%1 (%2)").arg(QStringLiteral("AAC"), QStringLiteral("MP4"));
    for (const TypeRow& row : kTypes) {
        if (row.ctype == ctype)
            return QLatin1String(row.name);
    }
    return {};
}

QString channelCountName(DWORD channels) {
    if (channels == 1)
        return QCoreApplication::translate("BASS::CBass", "Mono");
    return channels == 2 ? QCoreApplication::translate("BASS::CBass", "Stereo") : QString();
}

} // namespace BASS
