#include "recording/stream_header_keeper.h"

namespace BASS {

void StreamHeaderKeeper::reset() {
    m_state = State::Starting;
    m_header.clear();
}

void StreamHeaderKeeper::push(const char*, qsizetype) {}

} // namespace BASS
