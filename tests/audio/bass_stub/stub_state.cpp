#include "audio/bass_stub/stub_state.h"

#include <QString>

namespace bass_stub {

State& state() {
    static State only;
    return only;
}

bool began(const std::string& function, const std::string& arguments) {
    const std::lock_guard lock(state().mutex);
    state().calls.push_back(arguments.empty() ? function : function + " " + arguments);
    const auto failure = state().failures.find(function);
    const bool isFailing = failure != state().failures.end();
    state().error = isFailing ? failure->second : 0;
    return !isFailing;
}

Qword answer(const std::string& function, Qword usual) {
    const std::lock_guard lock(state().mutex);
    const auto found = state().answers.find(function);
    return found == state().answers.end() ? usual : found->second;
}

Dword newHandle() {
    const std::lock_guard lock(state().mutex);
    return ++state().nextHandle;
}

std::string textOf(const void* text, Dword flags) {
    constexpr Dword kUnicode = 0x80000000;
    if (text == nullptr)
        return "null";
    if ((flags & kUnicode) == 0)
        return "8 bit:" + std::string(static_cast<const char*>(text));
    return "UTF-16:" + QString::fromUtf16(static_cast<const char16_t*>(text)).toStdString();
}

Dword createUrl(const std::string& function,
                const std::string& arguments,
                DownloadProc proc,
                void* user) {
    if (!began(function, arguments))
        return 0;
    const Dword handle = newHandle();
    const std::lock_guard lock(state().mutex);
    state().download = proc;
    state().downloadUser = user;
    return handle;
}

Dword startEncoder(const std::string& function,
                   const std::string& arguments,
                   const Encoder& encoder) {
    if (!began(function, list(encoder.channel) + " " + arguments))
        return 0;
    const Dword handle = newHandle();
    const std::lock_guard lock(state().mutex);
    state().encoders.push_back(encoder);
    state().encoders.back().handle = handle;
    return handle;
}

} // namespace bass_stub
