#include "audio/bass_stub/stub_state.h"

// The library itself. Built in variants: BASS_STUB_VERSION, BASS_STUB_WITHOUT_SLIDE.

using namespace bass_stub;

#ifndef BASS_STUB_VERSION
#define BASS_STUB_VERSION 0x02041101
#endif

namespace {

int truth(const char* function, const std::string& arguments = {}) {
    return began(function, arguments) ? static_cast<int>(answer(function, 1)) : 0;
}

Dword number(const char* function, const std::string& arguments, Dword usual) {
    return began(function, arguments) ? static_cast<Dword>(answer(function, usual)) : ~Dword{0};
}

Qword position(const char* function, const std::string& arguments, Qword usual) {
    return began(function, arguments) ? answer(function, usual) : ~Qword{0};
}

struct ChannelInfo {
    Dword freq, chans, flags, ctype, origres, plugin, sample;
    const char* filename;
};

struct DeviceInfo {
    const char* name;
    const char* driver;
    Dword flags;
};

} // namespace

// --- session

BASS_STUB_FUNCTION(Dword) BASS_GetVersion() {
    return BASS_STUB_VERSION;
}

BASS_STUB_FUNCTION(int) BASS_ErrorGetCode() {
    return state().error;
}

BASS_STUB_FUNCTION(int)
BASS_Init(int device, Dword freq, Dword flags, void* window, const void* driver) {
    const bool isPlain = window == nullptr && driver == nullptr;
    return truth("BASS_Init", list(device, freq, flags) + (isPlain ? "" : " and more"));
}

BASS_STUB_FUNCTION(int) BASS_Free() {
    return truth("BASS_Free");
}

BASS_STUB_FUNCTION(int) BASS_SetDevice(Dword device) {
    return truth("BASS_SetDevice", list(device));
}

BASS_STUB_FUNCTION(Dword) BASS_GetDevice() {
    return number("BASS_GetDevice", {}, 1);
}

BASS_STUB_FUNCTION(int) BASS_GetDeviceInfo(Dword device, DeviceInfo* info) {
    if (truth("BASS_GetDeviceInfo", list(device)) == 0)
        return 0;
    *info = {"Lautsprecher \xC3\xBC", "driver", 3};
    return 1;
}

BASS_STUB_FUNCTION(int) BASS_SetConfig(Dword option, Dword value) {
    return truth("BASS_SetConfig", list(option, value));
}

BASS_STUB_FUNCTION(Dword) BASS_GetConfig(Dword option) {
    return number("BASS_GetConfig", list(option), 5);
}

BASS_STUB_FUNCTION(int) BASS_SetConfigPtr(Dword option, const void* value) {
    const Dword plain = option & 0x7FFFFFFF;
    const std::string text = textOf(value, option);
    if (truth("BASS_SetConfigPtr", list(plain) + " " + text) == 0)
        return 0;
    const std::lock_guard lock(state().mutex);
    state().pointers[plain] = value;
    return 1;
}

BASS_STUB_FUNCTION(Dword) BASS_PluginLoad(const void* file, Dword flags) {
    return began("BASS_PluginLoad", textOf(file, flags)) ? newHandle() : 0;
}

// --- streams

BASS_STUB_FUNCTION(Dword)
BASS_StreamCreateURL(const void* url, Dword offset, Dword flags, DownloadProc proc, void* user) {
    return createUrl(
        "BASS_StreamCreateURL", textOf(url, flags) + " " + list(offset, flags), proc, user);
}

BASS_STUB_FUNCTION(Dword)
BASS_StreamCreateFile(int memory, const void* file, Qword offset, Qword length, Dword flags) {
    return createUrl("BASS_StreamCreateFile",
                     textOf(file, flags) + " " + list(memory, offset, length, flags),
                     nullptr,
                     nullptr);
}

BASS_STUB_FUNCTION(int) BASS_StreamFree(Dword handle) {
    return truth("BASS_StreamFree", list(handle));
}

BASS_STUB_FUNCTION(Qword) BASS_StreamGetFilePosition(Dword handle, Dword mode) {
    return position("BASS_StreamGetFilePosition", list(handle, mode), 40000);
}

// --- channels

BASS_STUB_FUNCTION(int) BASS_ChannelPlay(Dword handle, int restart) {
    return truth("BASS_ChannelPlay", list(handle, restart));
}

BASS_STUB_FUNCTION(int) BASS_ChannelPause(Dword handle) {
    return truth("BASS_ChannelPause", list(handle));
}

BASS_STUB_FUNCTION(int) BASS_ChannelStop(Dword handle) {
    return truth("BASS_ChannelStop", list(handle));
}

BASS_STUB_FUNCTION(Dword) BASS_ChannelIsActive(Dword handle) {
    return number("BASS_ChannelIsActive", list(handle), 1);
}

BASS_STUB_FUNCTION(int) BASS_ChannelGetInfo(Dword handle, ChannelInfo* info) {
    if (truth("BASS_ChannelGetInfo", list(handle)) == 0)
        return 0;
    *info = {44100, 2, 0x100, 0x10005, 0x10018, 7, 8, "name"};
    return 1;
}

BASS_STUB_FUNCTION(const char*) BASS_ChannelGetTags(Dword handle, Dword tags) {
    began("BASS_ChannelGetTags", list(handle, tags));
    const std::lock_guard lock(state().mutex);
    const auto found = state().tags.find(tags);
    return found == state().tags.end() ? nullptr : found->second.c_str();
}

BASS_STUB_FUNCTION(Dword) BASS_ChannelFlags(Dword handle, Dword flags, Dword mask) {
    constexpr Dword kLooped = 4;
    return truth("BASS_ChannelFlags", list(handle, flags, mask)) != 0 ? kLooped : ~Dword{0};
}

BASS_STUB_FUNCTION(int) BASS_ChannelSetAttribute(Dword handle, Dword attribute, float value) {
    return truth("BASS_ChannelSetAttribute", list(handle, attribute, value));
}

BASS_STUB_FUNCTION(int) BASS_ChannelGetAttribute(Dword handle, Dword attribute, float* value) {
    *value = 0.25F;
    return truth("BASS_ChannelGetAttribute", list(handle, attribute));
}

#ifndef BASS_STUB_WITHOUT_SLIDE
BASS_STUB_FUNCTION(int)
BASS_ChannelSlideAttribute(Dword handle, Dword attribute, float value, Dword time) {
    return truth("BASS_ChannelSlideAttribute", list(handle, attribute, value, time));
}
#endif

BASS_STUB_FUNCTION(int) BASS_ChannelIsSliding(Dword handle, Dword attribute) {
    return truth("BASS_ChannelIsSliding", list(handle, attribute));
}

BASS_STUB_FUNCTION(Dword)
BASS_ChannelSetSync(Dword handle, Dword type, Qword param, SyncProc proc, void* user) {
    if (!began("BASS_ChannelSetSync", list(handle, type, param)))
        return 0;
    const Dword sync = newHandle();
    const std::lock_guard lock(state().mutex);
    state().syncs.push_back({sync, handle, type, param, proc, user});
    return sync;
}

BASS_STUB_FUNCTION(Dword)
BASS_ChannelSetDSP(Dword handle, DspProc proc, void* user, int priority) {
    if (!began("BASS_ChannelSetDSP", list(handle, priority)))
        return 0;
    const std::lock_guard lock(state().mutex);
    state().dsp = proc;
    state().dspUser = user;
    return 77;
}

BASS_STUB_FUNCTION(int) BASS_ChannelRemoveSync(Dword handle, Dword sync) {
    return truth("BASS_ChannelRemoveSync", list(handle, sync));
}

BASS_STUB_FUNCTION(Qword) BASS_ChannelGetPosition(Dword handle, Dword mode) {
    return position("BASS_ChannelGetPosition", list(handle, mode), 1000);
}

BASS_STUB_FUNCTION(int) BASS_ChannelSetPosition(Dword handle, Qword value, Dword mode) {
    return truth("BASS_ChannelSetPosition", list(handle, value, mode));
}

BASS_STUB_FUNCTION(Qword) BASS_ChannelGetLength(Dword handle, Dword mode) {
    return position("BASS_ChannelGetLength", list(handle, mode), Qword{1} << 40);
}

BASS_STUB_FUNCTION(double) BASS_ChannelBytes2Seconds(Dword handle, Qword bytes) {
    began("BASS_ChannelBytes2Seconds", list(handle, bytes));
    return static_cast<double>(bytes) / 1000.0;
}

BASS_STUB_FUNCTION(Qword) BASS_ChannelSeconds2Bytes(Dword handle, double seconds) {
    began("BASS_ChannelSeconds2Bytes", list(handle, seconds));
    return static_cast<Qword>(seconds * 1000.0);
}

BASS_STUB_FUNCTION(int) BASS_ChannelLock(Dword handle, int isLocked) {
    return truth("BASS_ChannelLock", list(handle, isLocked));
}

BASS_STUB_FUNCTION(Dword) BASS_ChannelGetLevel(Dword handle) {
    return number("BASS_ChannelGetLevel", list(handle), 0x40002000);
}

BASS_STUB_FUNCTION(Dword) BASS_ChannelGetData(Dword handle, float* bins, Dword form) {
    bins[1023] = 0.25F;
    return number("BASS_ChannelGetData", list(handle, form), 4096);
}
