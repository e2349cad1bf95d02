#include "base/atomic_file.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QSaveFile>

namespace {
Error fileError(const char* what, const QString& path, const QString& reason) {
    return Error{QCoreApplication::translate("AtomicFile", what) +
                 QStringLiteral(" %1: %2").arg(path, reason)};
}
} // namespace

Status replaceFile(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fileError(QT_TRANSLATE_NOOP("AtomicFile", "Cannot write"), path, file.errorString());
    if (file.write(bytes) != bytes.size() || !file.commit())
        return fileError(QT_TRANSLATE_NOOP("AtomicFile", "Cannot save"), path, file.errorString());
    return Done{};
}

Result<QString> setAside(const QString& path) {
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    for (int n = 0; n < 100; ++n) {
        const QString target = n == 0 ? QStringLiteral("%1.damaged-%2").arg(path, stamp)
                                      : QStringLiteral("%1.damaged-%2-%3").arg(path, stamp).arg(n);
        if (QFile::exists(target))
            continue;
        QFile file(path);
        if (file.rename(target))
            return target;
        return fileError(
            QT_TRANSLATE_NOOP("AtomicFile", "Cannot set aside"), path, file.errorString());
    }
    return fileError(
        QT_TRANSLATE_NOOP("AtomicFile", "Cannot set aside"), path, QStringLiteral("no free name"));
}
