#include "audio/bass_stub/stub_state.h"

// The add-ons that make streams and files: one library each, with BASS_STUB_... saying which.

using namespace bass_stub;

#define BASS_STUB_URL(name)                                                                        \
    BASS_STUB_FUNCTION(Dword)                                                                      \
    name(const void* url, Dword offset, Dword flags, DownloadProc proc, void* user) {              \
        return createUrl(#name, textOf(url, flags) + " " + list(offset, flags), proc, user);       \
    }

#define BASS_STUB_FILE(name)                                                                       \
    BASS_STUB_FUNCTION(Dword)                                                                      \
    name(int memory, const void* file, Qword offset, Qword length, Dword flags) {                  \
        return createUrl(#name,                                                                    \
                         textOf(file, flags) + " " + list(memory, offset, length, flags),          \
                         nullptr,                                                                  \
                         nullptr);                                                                 \
    }

#ifdef BASS_STUB_AAC
BASS_STUB_URL(BASS_AAC_StreamCreateURL)
BASS_STUB_FILE(BASS_AAC_StreamCreateFile)
BASS_STUB_FILE(BASS_MP4_StreamCreateFile)
#endif

#ifdef BASS_STUB_FLAC
BASS_STUB_URL(BASS_FLAC_StreamCreateURL)
BASS_STUB_FILE(BASS_FLAC_StreamCreateFile)
#endif

#ifdef BASS_STUB_OPUS
BASS_STUB_URL(BASS_OPUS_StreamCreateURL)
BASS_STUB_FILE(BASS_OPUS_StreamCreateFile)
#endif

#ifdef BASS_STUB_HLS
BASS_STUB_FUNCTION(Dword)
BASS_HLS_StreamCreateURL(const void* url, Dword flags, DownloadProc proc, void* user) {
    return createUrl(
        "BASS_HLS_StreamCreateURL", textOf(url, flags) + " " + list(flags), proc, user);
}
BASS_STUB_FILE(BASS_HLS_StreamCreateFile)
#endif

#ifdef BASS_STUB_WMA
BASS_STUB_FILE(BASS_WMA_StreamCreateFile)

BASS_STUB_FUNCTION(const Dword*)
BASS_WMA_EncodeGetRates(Dword freq, Dword chans, Dword flags) {
    static constexpr Dword rates[] = {64000, 128000, 0};
    return began("BASS_WMA_EncodeGetRates", list(freq, chans, flags)) ? rates : nullptr;
}

BASS_STUB_FUNCTION(Dword)
BASS_WMA_EncodeOpenFile(Dword freq, Dword chans, Dword flags, Dword bitrate, const void* file) {
    const std::string arguments = list(freq, chans, flags, bitrate) + " " + textOf(file, flags);
    return began("BASS_WMA_EncodeOpenFile", arguments) ? newHandle() : 0;
}

BASS_STUB_FUNCTION(int) BASS_WMA_EncodeWrite(Dword handle, const void* data, Dword length) {
    const std::string bytes(static_cast<const char*>(data), length);
    return began("BASS_WMA_EncodeWrite", list(handle, length) + " " + bytes) ? 1 : 0;
}

BASS_STUB_FUNCTION(int) BASS_WMA_EncodeClose(Dword handle) {
    return began("BASS_WMA_EncodeClose", list(handle)) ? 1 : 0;
}
#endif

#ifdef BASS_STUB_FX
BASS_STUB_FUNCTION(Dword) BASS_FX_GetVersion() {
    return 0x02040C01;
}
#endif
