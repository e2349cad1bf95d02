#include "platform/named_mapping.h"

#include <windows.h>

namespace {
Error failure(const char* step, DWORD code) {
    return Error{QStringLiteral("%1 %2: %3")
                     .arg(QLatin1String(step), QString::number(code), qt_error_string(int(code)))};
}
} // namespace

Result<NamedMapping> NamedMapping::create(const QString& name, qint64 bytes) {
    constexpr char kNoObject[] = "Could not create file mapping object";
    if (bytes < 1 || name.isEmpty() || name.size() > 200 || name.contains(QLatin1Char('\\')) ||
        name.contains(QLatin1Char('/')))
        return failure(kNoObject, ERROR_INVALID_PARAMETER);
    const HANDLE object = CreateFileMappingW(INVALID_HANDLE_VALUE,
                                             nullptr,
                                             PAGE_READWRITE,
                                             static_cast<DWORD>(bytes >> 32),
                                             static_cast<DWORD>(bytes & 0xffffffff),
                                             reinterpret_cast<const wchar_t*>(name.utf16()));
    const DWORD code = GetLastError();
    if (object == nullptr)
        return failure(kNoObject, code);
    if (code == ERROR_ALREADY_EXISTS) { // another one's buffer: two writers would mix their audio
        CloseHandle(object);
        return failure(kNoObject, code);
    }
    void* view = MapViewOfFile(object, FILE_MAP_ALL_ACCESS, 0, 0, static_cast<SIZE_T>(bytes));
    if (view == nullptr) {
        const DWORD viewCode = GetLastError();
        CloseHandle(object);
        return failure("Could not create view of mapped file", viewCode);
    }
    NamedMapping mapping;
    mapping.m_data = static_cast<char*>(view);
    mapping.m_bytes = bytes;
    mapping.m_handle = reinterpret_cast<qintptr>(object);
    return mapping;
}

NamedMapping::~NamedMapping() {
    if (m_data == nullptr)
        return;
    UnmapViewOfFile(m_data);
    CloseHandle(reinterpret_cast<HANDLE>(m_handle));
}
