#include "platform/named_mapping.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>

namespace {
Error failure(const char* step, int code) {
    return Error{QStringLiteral("%1 %2: %3")
                     .arg(QLatin1String(step), QString::number(code), qt_error_string(code))};
}
} // namespace

Result<NamedMapping> NamedMapping::create(const QString& name, qint64 bytes) {
    constexpr char kNoObject[] = "Could not create file mapping object";
    if (bytes < 1 || name.isEmpty() || name.size() > 200 || name.contains(QLatin1Char('\\')) ||
        name.contains(QLatin1Char('/')))
        return failure(kNoObject, EINVAL);
    // The kernel takes at most 249 bytes and the name serves only those who look.
    const int memory = memfd_create(name.toUtf8().left(249).constData(), MFD_CLOEXEC);
    if (memory < 0)
        return failure(kNoObject, errno);
    if (ftruncate(memory, bytes) != 0) {
        const int code = errno;
        close(memory);
        return failure(kNoObject, code);
    }
    void* view = mmap(
        nullptr, static_cast<std::size_t>(bytes), PROT_READ | PROT_WRITE, MAP_SHARED, memory, 0);
    const int code = errno;
    close(memory); // the view holds it
    if (view == MAP_FAILED)
        return failure("Could not create view of mapped file", code);
    NamedMapping mapping;
    mapping.m_data = static_cast<char*>(view);
    mapping.m_bytes = bytes;
    return mapping;
}

NamedMapping::~NamedMapping() {
    if (m_data != nullptr)
        munmap(m_data, static_cast<std::size_t>(m_bytes));
}
