#include "audio/bass/bass_library.h"
#include "audio/bass/bass_text.h"

namespace BASS {

namespace {
using Kind = BassEncoders::Kind;
}

HENCODE BassLibrary::Encode_MP3_Start(
    DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) {
    return startEncoder(Kind::Mp3, {handle, options, flags, proc, user});
}

HENCODE BassLibrary::Encode_OGG_Start(
    DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) {
    return startEncoder(Kind::Ogg, {handle, options, flags, proc, user});
}

HENCODE BassLibrary::Encode_FLAC_Start(
    DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) {
    return startEncoder(Kind::Flac, {handle, options, flags, proc, user});
}

HENCODE BassLibrary::Encode_Start(
    DWORD handle, const void* commandLine, DWORD flags, ENCODEPROC* proc, void* user) {
    return startEncoder(Kind::Program, {handle, commandLine, flags, proc, user});
}

HENCODE BassLibrary::Encode_StartAs(DWORD handle,
                                    const void* commandLine,
                                    const ProgramInput& input,
                                    DWORD flags,
                                    ENCODEPROC* proc,
                                    void* user) {
    BASS_CHANNELINFO info{};
    if (!ChannelGetInfo(handle, &info))
        return 0;
    const bool isSame = (input.rate == 0 || input.rate == info.freq) &&
                        (input.channels == 0 || input.channels == info.chans);
    if (isSame)
        return Encode_Start(handle, commandLine, flags, proc, user);
    fail(BASS_ERROR_FORMAT); // better no file than one at the wrong speed
    return 0;
}

HENCODE BassLibrary::startEncoder(Kind kind, const EncoderArguments& arguments) {
    if (arguments.proc == nullptr) {
        fail(BASS_ERROR_ILLPARAM);
        return 0;
    }
    const std::u16string text =
        arguments.text != nullptr ? wideText(arguments.text, arguments.flags) : std::u16string();
    return m_encoders.start(
        {kind, arguments.handle, text, arguments.flags, arguments.proc, arguments.user});
}

HENCODE BassLibrary::Encode_AAC_Start(DWORD /*handle*/,
                                      const void* /*options*/,
                                      DWORD /*flags*/,
                                      ENCODEPROC* /*proc*/,
                                      void* /*user*/) {
    fail(BASS_ERROR_NOTAVAIL);
    return 0;
}

HENCODE BassLibrary::Encode_WMA_Start(DWORD /*handle*/,
                                      const void* /*options*/,
                                      DWORD /*flags*/,
                                      ENCODEPROC* /*proc*/,
                                      void* /*user*/) {
    fail(BASS_ERROR_NOTAVAIL);
    return 0;
}

DWORD BassLibrary::Encode_IsActive(DWORD handle) {
    return m_encoders.isActive(handle);
}

bool BassLibrary::Encode_SetPaused(HENCODE handle, bool isPaused) {
    return m_bass.EncodeSetPaused(handle, isPaused ? 1 : 0) != 0;
}

bool BassLibrary::Encode_StopEx(DWORD handle, bool queue) {
    return m_encoders.stop(handle, queue);
}

bool BassLibrary::Encode_SetChannel(HENCODE handle, DWORD channel) {
    return m_encoders.setChannel(handle, channel);
}

HENCODE BassLibrary::Encode_CutAt(
    HENCODE old, QWORD /*position*/, DWORD delayMs, ENCODEPROC* proc, void* user) {
    return m_encoders.cutAt(old, delayMs, proc, user);
}

const DWORD* BassLibrary::WMA_EncodeGetRates(DWORD freq, DWORD chans, DWORD flags) {
    return m_bass.WmaEncodeGetRates(freq, chans, flags);
}

HWMENCODE BassLibrary::WMA_EncodeOpenFile(
    DWORD freq, DWORD chans, DWORD flags, DWORD bitrate, const void* file) {
    if (file == nullptr) {
        fail(BASS_ERROR_ILLPARAM);
        return 0;
    }
    const std::u16string path = widePath(file, flags);
    return m_bass.WmaEncodeOpenFile(freq, chans, flags | BASS_UNICODE, bitrate, path.c_str());
}

bool BassLibrary::WMA_EncodeWrite(HWMENCODE handle, const void* buffer, DWORD length) {
    return m_bass.WmaEncodeWrite(handle, buffer, length) != 0;
}

bool BassLibrary::WMA_EncodeClose(HWMENCODE handle) {
    return m_bass.WmaEncodeClose(handle) != 0;
}

} // namespace BASS
