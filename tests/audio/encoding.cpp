#include "audio/encoding.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstring>

using namespace BASS;

namespace {

constexpr std::chrono::seconds kLimit{20};

} // namespace

void Encoding::onBytes(HENCODE handle, DWORD, const void* data, DWORD size, void* user) {
    auto* const self = static_cast<Encoding*>(user);
    const std::lock_guard lock(self->m_mutex);
    File& file = self->m_files[handle];
    EXPECT_EQ(file.ends, 0) << "bytes behind the end";
    if (size == 0)
        ++file.ends;
    file.bytes.append(static_cast<const char*>(data), static_cast<int>(size));
    self->m_changed.notify_all();
}

void Encoding::onRewrite(
    HENCODE handle, DWORD, const void* data, DWORD size, QWORD offset, void* user) {
    auto* const self = static_cast<Encoding*>(user);
    const std::lock_guard lock(self->m_mutex);
    File& file = self->m_files[handle];
    EXPECT_EQ(file.ends, 0);
    ASSERT_LE(offset + size, static_cast<QWORD>(file.bytes.size()));
    std::memcpy(file.bytes.data() + offset, data, size);
}

bool Encoding::waitForEnd(HENCODE handle) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, kLimit, [&] { return m_files[handle].ends > 0; });
}

bool Encoding::waitForBytes(HENCODE handle, int count) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, kLimit, [&] { return m_files[handle].bytes.size() >= count; });
}

QByteArray Encoding::bytes(HENCODE handle) {
    const std::lock_guard lock(m_mutex);
    return m_files[handle].bytes;
}

int Encoding::ends(HENCODE handle) {
    const std::lock_guard lock(m_mutex);
    return m_files[handle].ends;
}

QString Encoding::file(HENCODE handle, const char* extension) {
    static QTemporaryDir folder;
    static int number = 0;
    const QString path =
        folder.filePath(QStringLiteral("%1.%2").arg(++number).arg(QString::fromLatin1(extension)));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes(handle));
    return path;
}

QByteArray encoderStandIn(const char* steps) {
    qputenv("ENCODER_STEPS", steps);
    return "\"" ENCODER_STAND_IN "\" -b 128 - -";
}

double greatestDifference(const QByteArray& a, const QByteArray& b) {
    double greatest = 0.0;
    for (int at = 0; at + 4 <= std::min(a.size(), b.size()); at += 4) {
        float x = 0;
        float y = 0;
        std::memcpy(&x, a.constData() + at, sizeof x);
        std::memcpy(&y, b.constData() + at, sizeof y);
        greatest = std::max(greatest, static_cast<double>(std::abs(x - y)));
    }
    return greatest;
}
