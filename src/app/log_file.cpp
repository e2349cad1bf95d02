#include "app/log_file.h"

#include "platform/file_sync.h"

#include <QFile>
#include <QFileInfo>
#include <QLockFile>

LogFile::LogFile(QString path, qint64 fullBytes)
    : m_path(std::move(path)), m_fullBytes(fullBytes) {}

QString LogFile::kept(int n) const {
    return QStringLiteral("%1.%2").arg(m_path).arg(n);
}

bool LogFile::append(const QByteArray& lines) {
    rotateIfFull();
    // Opened anew each time: another process may have put the file aside.
    return appendTo(m_path, lines);
}

void LogFile::rotateIfFull() {
    if (QFileInfo(m_path).size() < m_fullBytes)
        return;
    QLockFile lock(m_path + QStringLiteral(".lock"));
    if (!lock.tryLock(0))
        return; // another process is at it
    if (QFileInfo(m_path).size() < m_fullBytes)
        return;
    QFile::remove(kept(kKept));
    for (int n = kKept - 1; n >= 1; --n)
        QFile::rename(kept(n), kept(n + 1));
    QFile::rename(m_path, kept(1));
}
