#include "audio/bass/bass_function.h"

#include "base/log.h"

namespace BASS {
namespace {
thread_local int ownError = BASS_OK;
} // namespace

int ownBassError() {
    return ownError;
}

void setOwnBassError(int code) {
    ownError = code;
}

BassFunctionEntry::BassFunctionEntry(std::vector<BassFunctionEntry*>& table,
                                     BassFile file,
                                     const char* name,
                                     BassNeed need)
    : m_file(file), m_name(name), m_need(need) {
    table.push_back(this);
}

void BassFunctionEntry::refuse() const {
    setOwnBassError(BASS_ERROR_NOTAVAIL);
    if (!m_isReported.exchange(true))
        qCWarning(lcAudio, "function not available name=%s", m_name);
}

} // namespace BASS
