#include "audio/bass_stub/stub_state.h"

#include <algorithm>

// The encoding add-ons: one library each, with BASS_STUB_... saying which.

using namespace bass_stub;

#ifdef BASS_STUB_ENC
namespace {

/// Works on a copy, so that a callback may call back.
void withEncoder(Dword handle, void (*change)(Encoder&)) {
    const std::lock_guard lock(state().mutex);
    for (Encoder& encoder : state().encoders) {
        if (encoder.handle == handle)
            change(encoder);
    }
}

Encoder copyOf(Dword handle) {
    const std::lock_guard lock(state().mutex);
    const auto found = std::find_if(state().encoders.begin(),
                                    state().encoders.end(),
                                    [handle](const Encoder& e) { return e.handle == handle; });
    return found == state().encoders.end() ? Encoder{} : *found;
}

} // namespace

BASS_STUB_FUNCTION(Dword)
BASS_Encode_Start(Dword channel, const void* line, Dword flags, EncodeProc proc, void* user) {
    return startEncoder("BASS_Encode_Start",
                        textOf(line, flags) + " " + list(flags),
                        {0, channel, proc, nullptr, user});
}

BASS_STUB_FUNCTION(Dword) BASS_Encode_IsActive(Dword handle) {
    return copyOf(handle).isActive && copyOf(handle).handle != 0 ? 1 : 0;
}

BASS_STUB_FUNCTION(int) BASS_Encode_SetPaused(Dword handle, int isPaused) {
    return began("BASS_Encode_SetPaused", list(handle, isPaused)) ? 1 : 0;
}

BASS_STUB_FUNCTION(int) BASS_Encode_SetChannel(Dword handle, Dword channel) {
    return began("BASS_Encode_SetChannel", list(handle, channel)) ? 1 : 0;
}

BASS_STUB_FUNCTION(int) BASS_Encode_SetNotify(Dword handle, NotifyProc proc, void* user) {
    const std::lock_guard lock(state().mutex);
    for (Encoder& encoder : state().encoders) {
        if (encoder.handle == handle) {
            encoder.notify = proc;
            encoder.notifyUser = user;
        }
    }
    return 1;
}

/// As the real one with a queue: the rest comes out, then the encoder is gone, which is told from
/// inside the call.
BASS_STUB_FUNCTION(int) BASS_Encode_StopEx(Dword handle, int queue) {
    if (!began("BASS_Encode_StopEx", list(handle, queue)))
        return 0;
    const Encoder encoder = copyOf(handle);
    const std::string rest = queue != 0 ? state().queued : std::string();
    const auto length = static_cast<Dword>(rest.size());
    if (!rest.empty() && encoder.proc != nullptr)
        encoder.proc(handle, encoder.channel, rest.data(), length, encoder.user);
    withEncoder(handle, [](Encoder& stopped) { stopped.isActive = false; });
    constexpr Dword kFreed = 0x10002;
    if (encoder.notify != nullptr)
        encoder.notify(handle, kFreed, encoder.notifyUser);
    return 1;
}
#endif

#ifdef BASS_STUB_ENC_MP3
BASS_STUB_FUNCTION(Dword)
BASS_Encode_MP3_Start(Dword channel, const void* text, Dword flags, EncodeProcEx proc, void* user) {
    return startEncoder("BASS_Encode_MP3_Start",
                        textOf(text, flags) + " " + list(flags),
                        {0, channel, nullptr, proc, user});
}
#endif

#ifdef BASS_STUB_ENC_OGG
BASS_STUB_FUNCTION(Dword)
BASS_Encode_OGG_Start(Dword channel, const void* text, Dword flags, EncodeProc proc, void* user) {
    return startEncoder("BASS_Encode_OGG_Start",
                        textOf(text, flags) + " " + list(flags),
                        {0, channel, proc, nullptr, user});
}
#endif

#ifdef BASS_STUB_ENC_FLAC
BASS_STUB_FUNCTION(Dword)
BASS_Encode_FLAC_Start(
    Dword channel, const void* text, Dword flags, EncodeProcEx proc, void* user) {
    return startEncoder("BASS_Encode_FLAC_Start",
                        textOf(text, flags) + " " + list(flags),
                        {0, channel, nullptr, proc, user});
}
#endif
