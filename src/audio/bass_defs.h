#pragma once

// Names and numbers of the audio library's programming interface, as far as the engine uses them.
// Declared here from its public documentation; nothing of that library is needed to build.

#include <cstdint>

namespace BASS {

using DWORD = std::uint32_t;
using QWORD = std::uint64_t;
using HSTREAM = DWORD;
using HSYNC = DWORD;
using HPLUGIN = DWORD;
using HENCODE = DWORD;
using HWMENCODE = DWORD;
using HRECORD = DWORD;

// --- error codes ------------------------------------------------------------------------------
constexpr int BASS_OK = 0;
constexpr int BASS_ERROR_MEM = 1;
constexpr int BASS_ERROR_FILEOPEN = 2;
constexpr int BASS_ERROR_DRIVER = 3;
constexpr int BASS_ERROR_HANDLE = 5;
constexpr int BASS_ERROR_FORMAT = 6;
constexpr int BASS_ERROR_POSITION = 7;
constexpr int BASS_ERROR_INIT = 8;
constexpr int BASS_ERROR_START = 9;
constexpr int BASS_ERROR_ALREADY = 14;
constexpr int BASS_ERROR_ILLTYPE = 19;
constexpr int BASS_ERROR_ILLPARAM = 20;
constexpr int BASS_ERROR_DEVICE = 23;
constexpr int BASS_ERROR_NOPLAY = 24;
constexpr int BASS_ERROR_NOTFILE = 27;
constexpr int BASS_ERROR_NONET = 32;
constexpr int BASS_ERROR_CREATE = 33;
constexpr int BASS_ERROR_NOTAVAIL = 37;
constexpr int BASS_ERROR_DECODE = 38;
constexpr int BASS_ERROR_TIMEOUT = 40;
constexpr int BASS_ERROR_FILEFORM = 41;
constexpr int BASS_ERROR_VERSION = 43;
constexpr int BASS_ERROR_CODEC = 44;
constexpr int BASS_ERROR_ENDED = 45;
constexpr int BASS_ERROR_UNKNOWN = -1;

// --- configuration ----------------------------------------------------------------------------
constexpr DWORD BASS_CONFIG_GVOL_STREAM = 5; ///< 0 to 10000, linear
constexpr DWORD BASS_CONFIG_FLOATDSP = 9;
constexpr DWORD BASS_CONFIG_NET_TIMEOUT = 11; ///< milliseconds until the server has answered
constexpr DWORD BASS_CONFIG_NET_BUFFER = 12;  ///< milliseconds
constexpr DWORD BASS_CONFIG_NET_PREBUF = 15;  ///< per cent
constexpr DWORD BASS_CONFIG_NET_AGENT = 16;   ///< text
constexpr DWORD BASS_CONFIG_NET_PROXY = 17;   ///< text "user:password@host:port"; null: none
constexpr DWORD BASS_CONFIG_NET_PLAYLIST = 21;
constexpr DWORD BASS_CONFIG_DEV_DEFAULT = 36;
constexpr DWORD BASS_CONFIG_NET_READTIMEOUT = 37; ///< milliseconds without a byte
constexpr DWORD BASS_CONFIG_UNICODE = 42;
constexpr DWORD BASS_CONFIG_WMA_PREBUF = 0x10101;

// --- flags ------------------------------------------------------------------------------------
constexpr DWORD BASS_SAMPLE_FLOAT = 0x100;
constexpr DWORD BASS_STREAM_AUTOFREE = 0x40000;
constexpr DWORD BASS_STREAM_DECODE = 0x200000;
constexpr DWORD BASS_STREAM_STATUS = 0x800000; ///< the download callback gets the answer's headers
constexpr DWORD BASS_UNICODE = 0x80000000;     ///< texts are UTF-16, else Latin-1

// --- encoders ---------------------------------------------------------------------------------
constexpr DWORD BASS_ENCODE_NOHEAD = 1;   ///< an external program gets no WAV header
constexpr DWORD BASS_ENCODE_FP_16BIT = 4; ///< an external program gets 16-bit samples
constexpr DWORD BASS_ENCODE_FP_24BIT = 6; ///< FLAC: 24 bits
constexpr DWORD BASS_ENCODE_FP_AUTO = 14; ///< FLAC: as many bits as the source has
constexpr DWORD BASS_ENCODE_PAUSE = 32;   ///< starts paused
constexpr DWORD BASS_WMA_ENCODE_VBR = 0x10000;
constexpr DWORD BASS_WMA_ENCODE_STANDARD = 8192;

// --- channels ---------------------------------------------------------------------------------
constexpr DWORD BASS_ATTRIB_FREQ = 1;
constexpr DWORD BASS_ATTRIB_VOL = 2;      ///< 0.0 to 1.0
constexpr DWORD BASS_ATTRIB_BITRATE = 12; ///< kbit/s
/// Not of the library's own, read only: decibels that the automatic volume adds now.
constexpr DWORD BASS_ATTRIB_AUTO_GAIN = 0x57410001;

constexpr DWORD BASS_ACTIVE_STOPPED = 0;
constexpr DWORD BASS_ACTIVE_PLAYING = 1;
constexpr DWORD BASS_ACTIVE_STALLED = 2;
constexpr DWORD BASS_ACTIVE_PAUSED = 3;

constexpr DWORD BASS_SYNC_END = 2;
constexpr DWORD BASS_SYNC_META = 4;
constexpr DWORD BASS_SYNC_SLIDE = 5;
constexpr DWORD BASS_SYNC_STALL = 6;    ///< data: 0 stalled, 1 resumed
constexpr DWORD BASS_SYNC_DOWNLOAD = 7; ///< the connection has ended; what is buffered still plays
constexpr DWORD BASS_SYNC_FREE = 8;
constexpr DWORD BASS_SYNC_OGG_CHANGE = 12;
constexpr DWORD BASS_SYNC_DEV_FAIL = 14;
constexpr DWORD BASS_SYNC_WMA_CHANGE = 0x10100;
constexpr DWORD BASS_SYNC_WMA_META = 0x10101;
constexpr DWORD BASS_SYNC_HLS_SEGMENT = 0x10300;
constexpr DWORD BASS_SYNC_ONETIME = 0x80000000;

constexpr DWORD BASS_TAG_OGG = 2;  ///< "NAME=value" UTF-8 texts, each zero-terminated, ended by an
                                   ///< empty one; also the texts of timed metadata
constexpr DWORD BASS_TAG_HTTP = 3; ///< header lines, same layout
constexpr DWORD BASS_TAG_ICY = 4;  ///< "icy-name:..." header lines, same layout
constexpr DWORD BASS_TAG_META = 5; ///< the ICY title block that is heard now, zero-terminated

constexpr DWORD BASS_TAG_MP4 = 7; ///< as BASS_TAG_OGG
constexpr DWORD BASS_TAG_WMA = 8; ///< as BASS_TAG_OGG
constexpr DWORD BASS_TAG_HLS_EXTINF =
    0x14000; ///< what the playlist says of the segment, "10.0,Artist - Title" for example

constexpr DWORD BASS_POS_BYTE = 0;

constexpr DWORD BASS_DATA_FFT2048 = 0x80000003; ///< 1024 amplitudes of 2048 frames

constexpr DWORD BASS_FILEPOS_CURRENT = 0;  ///< bytes handed to the decoder
constexpr DWORD BASS_FILEPOS_DOWNLOAD = 1; ///< bytes received, title blocks not counted
constexpr DWORD BASS_FILEPOS_END = 2;
constexpr DWORD BASS_FILEPOS_CONNECTED = 4; ///< 1 while the connection stands
constexpr DWORD BASS_FILEPOS_BUFFER = 5;    ///< bytes waiting in the network buffer
constexpr DWORD BASS_FILEPOS_BUFFERING = 9; ///< per cent still missing before playback goes on

constexpr DWORD BASS_CTYPE_SAMPLE = 1;
constexpr DWORD BASS_CTYPE_RECORD = 2;
constexpr DWORD BASS_CTYPE_STREAM = 0x10000;
constexpr DWORD BASS_CTYPE_STREAM_OGG = 0x10002;
constexpr DWORD BASS_CTYPE_STREAM_MP1 = 0x10003;
constexpr DWORD BASS_CTYPE_STREAM_MP2 = 0x10004;
constexpr DWORD BASS_CTYPE_STREAM_MP3 = 0x10005;
constexpr DWORD BASS_CTYPE_STREAM_AIFF = 0x10006;
constexpr DWORD BASS_CTYPE_STREAM_WMA = 0x10300;
constexpr DWORD BASS_CTYPE_STREAM_WMA_MP3 = 0x10301;
constexpr DWORD BASS_CTYPE_STREAM_FLAC = 0x10900;
constexpr DWORD BASS_CTYPE_STREAM_FLAC_OGG = 0x10901;
constexpr DWORD BASS_CTYPE_STREAM_AAC = 0x10b00;
constexpr DWORD BASS_CTYPE_STREAM_MP4 = 0x10b01;
constexpr DWORD BASS_CTYPE_STREAM_OPUS = 0x11200;
constexpr DWORD BASS_CTYPE_STREAM_WAV = 0x40000;
constexpr DWORD BASS_CTYPE_STREAM_WAV_PCM = 0x50001;
constexpr DWORD BASS_CTYPE_STREAM_WAV_FLOAT = 0x50003;
constexpr DWORD BASS_CTYPE_MUSIC_MOD = 0x20000;
constexpr DWORD BASS_CTYPE_MUSIC_MTM = 0x20001;
constexpr DWORD BASS_CTYPE_MUSIC_S3M = 0x20002;
constexpr DWORD BASS_CTYPE_MUSIC_XM = 0x20003;
constexpr DWORD BASS_CTYPE_MUSIC_IT = 0x20004;
constexpr DWORD BASS_CTYPE_MUSIC_MO3 = 0x00100;

// --- devices ----------------------------------------------------------------------------------
constexpr DWORD BASS_DEVICE_ENABLED = 1;
constexpr DWORD BASS_DEVICE_DEFAULT = 2;
constexpr DWORD BASS_DEVICE_INIT = 4;

struct BASS_DEVICEINFO {
    const char* name;   ///< UTF-8; valid until the next call of the same function
    const char* driver; ///< UTF-8; same life
    DWORD flags;
};

struct BASS_CHANNELINFO {
    DWORD freq;  ///< sample rate in Hz
    DWORD chans; ///< number of channels
    DWORD flags;
    DWORD ctype;   ///< BASS_CTYPE_...
    DWORD origres; ///< bits per sample of the source; 0: not known
};

} // namespace BASS
