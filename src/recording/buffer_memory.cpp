#include "recording/buffer_memory.h"

#include "base/log.h"

#include <utility>

namespace BASS {

BufferMemory::BufferMemory(qint64 bytes, const QString& name) {
    qCInfo(lcRecording).nospace().noquote()
        << "CRecording::Record CreateFileMapping name=" << name << " size=" << bytes;
    Result<NamedMapping> made = NamedMapping::create(name, bytes);
    if (made)
        m_mapping.emplace(std::move(made.value()));
    else
        qCWarning(lcRecording).noquote() << made.error();
}

} // namespace BASS
