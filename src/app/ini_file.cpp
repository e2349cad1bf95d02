#include "app/ini_file.h"

#include "app/ini_codec.h"
#include "base/atomic_file.h"
#include "base/file_lock.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

#include <filesystem>

namespace {
QString shown(const QString& path) {
    return QDir::toNativeSeparators(path);
}

/// Snapshot and the bytes it was made of.
struct Loaded {
    IniSnapshot snapshot;
    QByteArray bytes;
};

Loaded unreadable(const QString& reason) {
    Loaded result;
    result.snapshot.state = IniState::Unreadable;
    result.snapshot.problem = reason;
    return result;
}

Loaded load(const QString& path) {
    Loaded result;
    // The stamp comes first: a change in between makes the next look read again.
    result.snapshot.stamp = fileStamp(path);
    if (!QFileInfo::exists(path))
        return result;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable(file.errorString());
    result.bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return unreadable(file.errorString());

    const IniHealth health = checkIni(result.bytes);
    result.snapshot.state = health == IniHealth::Good ? IniState::Good : IniState::Damaged;
    if (health == IniHealth::Garbage)
        result.bytes.clear();
    if (health == IniHealth::Faulty)
        result.bytes = goodIniLines(result.bytes);
    Result<QVariantMap> values = parseIni(result.bytes);
    if (!values)
        return unreadable(values.error());
    result.snapshot.values = values.value();
    return result;
}

/// Everything that is still known, the changes last.
QVariantMap
rescued(const IniSnapshot& damaged, const QVariantMap& changes, const QVariantMap& lastGood) {
    QVariantMap all = lastGood;
    for (auto it = damaged.values.begin(); it != damaged.values.end(); ++it)
        all.insert(it.key(), it.value());
    for (auto it = changes.begin(); it != changes.end(); ++it)
        all.insert(it.key(), it.value());
    return all;
}

Status writeIni(const QString& path, const QByteArray& bytes) {
    const bool isNew = !QFileInfo::exists(path);
    Status written = replaceFile(path, bytes);
    // It holds a proxy's password as plain text.
    if (written && isNew)
        QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    return written;
}
} // namespace

FileStamp fileStamp(const QString& path) {
    const std::filesystem::path file(path.toStdU16String());
    std::error_code failed;
    FileStamp stamp;
    const auto bytes = std::filesystem::file_size(file, failed);
    if (failed)
        return {};
    stamp.bytes = static_cast<qint64>(bytes);
    const auto changed = std::filesystem::last_write_time(file, failed);
    if (!failed)
        stamp.changed = static_cast<qint64>(changed.time_since_epoch().count());
    return stamp;
}

IniSnapshot loadIni(const QString& path) {
    return load(path).snapshot;
}

Result<IniMerge>
mergeIni(const QString& path, const QVariantMap& changes, const QVariantMap& lastGood) {
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        return Error{QCoreApplication::translate("Settings", "Cannot create the folder %1")
                         .arg(shown(folder))};
    QLockFile lock(path + QStringLiteral(".lock"));
    if (!takeFileLock(lock))
        return Error{QCoreApplication::translate("Settings", "Cannot write to the folder %1")
                         .arg(shown(folder))};

    Loaded current = load(path);
    if (current.snapshot.state == IniState::Unreadable)
        return Error{current.snapshot.problem};
    IniMerge merge;
    QVariantMap wanted = changes;
    if (current.snapshot.state == IniState::Damaged) {
        Result<QString> aside = setAside(path);
        if (!aside)
            return Error{aside.error()};
        merge.setAsidePath = aside.value();
        wanted = rescued(current.snapshot, changes, lastGood);
        current = Loaded();
    }

    Result<QByteArray> bytes = changeIni(current.bytes, wanted);
    if (!bytes)
        return Error{bytes.error()};
    if (bytes.value() != current.bytes) {
        Status written = writeIni(path, bytes.value());
        if (!written)
            return Error{written.error()};
    }
    Result<QVariantMap> values = parseIni(bytes.value());
    if (!values)
        return Error{values.error()};
    merge.snapshot = {IniState::Good, values.value(), fileStamp(path), QString()};
    return merge;
}
