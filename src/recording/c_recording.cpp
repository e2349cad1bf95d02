#include "recording/c_recording.h"

#include "base/log.h"
#include "platform/file_sync.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace BASS {
namespace {

constexpr int kGatherBytes = 65536;
/// Syncs until the file is looked for again: it may be removed or moved away while it is written.
constexpr unsigned kLookForEvery = 8;

QString translated(const char* text) {
    return QCoreApplication::translate("BASS::CRecording", text);
}

QString failed(const char* reason) {
    return translated(QT_TRANSLATE_NOOP("BASS::CRecording", "Recording failed")) +
           QStringLiteral(" - ") + translated(reason);
}

} // namespace

QString recordingErrorText(RecordingErrorKind kind) {
    switch (kind) {
    case RecordingErrorKind::Internal:
        return translated(QT_TRANSLATE_NOOP("BASS::CRecording", "Internal Error"));
    case RecordingErrorKind::MissingEncoder:
        return failed(QT_TRANSLATE_NOOP("BASS::CRecording", "Missing encoder"));
    case RecordingErrorKind::CannotCreateFile:
        return translated(QT_TRANSLATE_NOOP("BASS::CRecording",
                                            "Recording failed: Unable to create output file"));
    case RecordingErrorKind::CannotWrite:
        return failed(QT_TRANSLATE_NOOP("BASS::CRecording", "Unable to write to disk"));
    case RecordingErrorKind::EncoderStopped:
        return failed(QT_TRANSLATE_NOOP("BASS::CRecording", "Encoder has stopped working"));
    case RecordingErrorKind::Library:
        break;
    }
    return translated(QT_TRANSLATE_NOOP("BASS::CRecording", "Unknown Error"));
}

QString libraryRecordingErrorText(const QString& libraryText, const QString& detail) {
    return detail.isEmpty() ? libraryText : libraryText + QStringLiteral(" (%1)").arg(detail);
}

CRecording::CRecording() : m_file(std::make_unique<QFile>()) {}

CRecording::~CRecording() {
    close();
}

bool CRecording::open(const QString& path) {
    close();
    m_failure.reset();
    m_written = 0;
    m_wasPutBack = false;
    m_file->setFileName(path);
    return openNew() || fail(RecordingErrorKind::CannotCreateFile, m_file->errorString());
}

bool CRecording::openNew() {
    const auto mode = QIODevice::ReadWrite | QIODevice::NewOnly | QIODevice::Unbuffered;
    QDir().mkpath(QFileInfo(m_file->fileName()).absolutePath());
    return m_file->open(mode);
}

void CRecording::close() {
    if (!m_file->isOpen())
        return;
    flush();
    if (!m_failure && !syncFile(*m_file))
        qCWarning(lcRecording) << "CRecording::close sync failed path=" << path();
    m_file->close();
    if (m_written == 0)
        m_file->remove();
}

bool CRecording::append(const std::uint8_t* data, std::size_t size) {
    if (m_failure || !m_file->isOpen())
        return false;
    m_gathered.append(reinterpret_cast<const char*>(data), static_cast<int>(size));
    m_pieces.push_back(m_gathered.size());
    return m_gathered.size() < kGatherBytes || flush();
}

bool CRecording::flush() {
    if (m_failure || m_gathered.isEmpty())
        return !m_failure;
    qint64 done = 0;
    while (done < m_gathered.size()) {
        const qint64 count = m_file->write(m_gathered.constData() + done, m_gathered.size() - done);
        if (count <= 0)
            break;
        done += count;
    }
    const bool isWhole = done == m_gathered.size();
    const QString reason = m_file->errorString();
    if (!isWhole) {
        // a frame that is there in part only would make a player complain: cut back to a whole one
        const auto after = std::upper_bound(m_pieces.begin(), m_pieces.end(), done);
        done = after == m_pieces.begin() ? 0 : *(after - 1);
        m_file->resize(m_written + done);
    }
    m_written += done;
    m_gathered.clear();
    m_pieces.clear();
    return isWhole || fail(RecordingErrorKind::CannotWrite, reason);
}

bool CRecording::sync() {
    if (!flush())
        return false;
    const bool isLookedFor = m_syncs++ % kLookForEvery == 0;
    if (isLookedFor && !QFileInfo::exists(m_file->fileName()) && !putBack())
        return fail(RecordingErrorKind::CannotWrite, m_file->errorString());
    return syncFile(*m_file) || fail(RecordingErrorKind::CannotWrite, qt_error_string());
}

/// The open handle still has the bytes: a new file of the same name gets them.
bool CRecording::putBack() {
    qCWarning(lcRecording) << "CRecording::putBack file has vanished path=" << path();
    if (m_wasPutBack)
        return false;
    m_wasPutBack = true;
    const auto old = std::exchange(m_file, std::make_unique<QFile>(path()));
    if (!openNew() || !old->seek(0))
        return false;
    qint64 copied = 0;
    while (copied < m_written) {
        const QByteArray block = old->read(std::min<qint64>(kGatherBytes, m_written - copied));
        if (block.isEmpty() || m_file->write(block) != block.size())
            return false;
        copied += block.size();
    }
    return true;
}

bool CRecording::rename(const QString& path) {
    if (!flush() || QFileInfo::exists(path))
        return false;
    const QString old = m_file->fileName();
    m_file->close();
    QDir().mkpath(QFileInfo(path).absolutePath());
    const bool isMoved = QFile::rename(old, path);
    m_file->setFileName(isMoved ? path : old);
    const auto mode = QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered;
    if (!m_file->open(mode) || !m_file->seek(m_written))
        fail(RecordingErrorKind::CannotWrite, m_file->errorString());
    return isMoved;
}

bool CRecording::rewriteStart(const std::uint8_t* data, std::size_t size) {
    return rewrite(0, data, size);
}

bool CRecording::rewrite(qint64 offset, const std::uint8_t* data, std::size_t size) {
    if (!flush())
        return false;
    const auto bytes = static_cast<qint64>(size);
    const bool isDone = m_file->seek(offset) &&
                        m_file->write(reinterpret_cast<const char*>(data), bytes) == bytes &&
                        m_file->seek(m_written);
    return isDone || fail(RecordingErrorKind::CannotWrite, m_file->errorString());
}

bool CRecording::truncate(qint64 size) {
    if (!flush())
        return false;
    if (!m_file->resize(size) || !m_file->seek(size))
        return fail(RecordingErrorKind::CannotWrite, m_file->errorString());
    m_written = size;
    return true;
}

bool CRecording::fail(RecordingErrorKind kind, const QString& detail) {
    if (!m_failure)
        m_failure = RecordingError{kind, recordingErrorText(kind), detail};
    qCWarning(lcRecording) << "CRecording::Record File Error:" << detail << "path=" << path();
    return false;
}

} // namespace BASS
