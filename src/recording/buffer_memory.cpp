#include "recording/buffer_memory.h"

#include "base/log.h"

namespace BASS {

BufferMemory::BufferMemory(qint64 bytes, const QString& name)
    : m_data(static_cast<char*>(std::malloc(static_cast<std::size_t>(bytes)))), m_size(bytes) {
    if (isValid())
        qCInfo(lcRecording).nospace().noquote()
            << "CRecording::Record CreateFileMapping name=" << name << " size=" << bytes;
    else
        qCWarning(lcRecording).noquote() << "Could not create file mapping object " << name;
}

} // namespace BASS
