#pragma once

#include <QtGlobal>

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#ifdef BASS_STUB_STATE
#define BASS_STUB_API Q_DECL_EXPORT
#else
#define BASS_STUB_API Q_DECL_IMPORT
#endif

/// Stands in for the closed audio library and its add-ons: libraries of their file names that write
/// down every call and answer as told. What they are told lies here, in a library of its own that
/// the test links too. Any thread, under the mutex.
namespace bass_stub {

using Dword = std::uint32_t;
using Qword = std::uint64_t;
using DownloadProc = void(BASS_CALL*)(const void*, Dword, void*);
using SyncProc = void(BASS_CALL*)(Dword sync, Dword channel, Dword data, void* user);
using DspProc = void(BASS_CALL*)(Dword dsp, Dword channel, void*, Dword length, void* user);
using EncodeProc = void(BASS_CALL*)(Dword, Dword channel, const void*, Dword length, void* user);
using EncodeProcEx =
    void(BASS_CALL*)(Dword, Dword channel, const void*, Dword length, Qword offset, void* user);
using NotifyProc = void(BASS_CALL*)(Dword encoder, Dword status, void* user);

struct Sync {
    Dword handle;
    Dword channel;
    Dword type;
    Qword param;
    SyncProc proc;
    void* user;
};

struct Encoder {
    Dword handle;
    Dword channel;
    EncodeProc proc;
    EncodeProcEx procEx;
    void* user;
    NotifyProc notify = nullptr;
    void* notifyUser = nullptr;
    bool isActive = true;
};

struct State {
    std::mutex mutex;
    std::vector<std::string> calls;        ///< "BASS_Init -1 44100 0"
    std::map<std::string, Qword> answers;  ///< by function, in place of the usual
    std::map<std::string, int> failures;   ///< by function: it fails with this code
    std::map<Dword, std::string> tags;     ///< by type; lists with their zeros
    std::map<Dword, std::string> texts;    ///< what SetConfigPtr's pointers point to now
    std::map<Dword, const void*> pointers; ///< by option
    DownloadProc download = nullptr;
    void* downloadUser = nullptr;
    DspProc dsp = nullptr;
    void* dspUser = nullptr;
    std::vector<Sync> syncs;
    std::vector<Encoder> encoders;
    /// What an encoder still hands out when it is stopped with its queue.
    std::string queued;
    Dword nextHandle = 100;
    int error = 0;
};

BASS_STUB_API State& state();

/// Writes the call down. False: it is told to fail.
BASS_STUB_API bool began(const std::string& function, const std::string& arguments = {});
/// The answer that was asked for, else the usual one.
BASS_STUB_API Qword answer(const std::string& function, Qword usual);
BASS_STUB_API Dword newHandle();
/// "UTF-16:..." with the Unicode flag, else "8 bit:..."; in UTF-8.
BASS_STUB_API std::string textOf(const void* text, Dword flags);
BASS_STUB_API Dword createUrl(const std::string& function,
                              const std::string& arguments,
                              DownloadProc proc,
                              void* user);
BASS_STUB_API Dword startEncoder(const std::string& function,
                                 const std::string& arguments,
                                 const Encoder& encoder);

inline std::string list() {
    return {};
}

/// Numbers with blanks between them.
template <class T, class... More>
std::string list(T first, More... more) {
    const std::string rest = list(more...);
    return std::to_string(first) + (rest.empty() ? "" : " " + rest);
}

} // namespace bass_stub

#define BASS_STUB_FUNCTION(result) extern "C" Q_DECL_EXPORT result BASS_CALL
