#include "ui/models/recordings_model.h"

#include "ui/models/list_roles.h"
#include "ui/state_text.h"
#include "ui/widgets/tool_tip.h"

#include <QDir>
#include <QDirIterator>
#include <QLocale>

#include <algorithm>

namespace {

const QStringList& audioNames() {
    static const QStringList names{QStringLiteral("*.mp3"),
                                   QStringLiteral("*.aac"),
                                   QStringLiteral("*.m4a"),
                                   QStringLiteral("*.ogg"),
                                   QStringLiteral("*.oga"),
                                   QStringLiteral("*.opus"),
                                   QStringLiteral("*.flac"),
                                   QStringLiteral("*.wma"),
                                   QStringLiteral("*.wav"),
                                   QStringLiteral("*.mp4"),
                                   QStringLiteral("*.webm"),
                                   QStringLiteral("*.ts")};
    return names;
}

bool isNewer(const RecordingEntry& a, const RecordingEntry& b) {
    return a.modified != b.modified ? a.modified > b.modified : a.path < b.path;
}

bool isSameFile(const RecordingEntry& a, const RecordingEntry& b) {
    return a.path == b.path;
}

} // namespace

QVector<RecordingEntry> scanRecordings(const QString& folder, int limit) {
    QVector<RecordingEntry> rows;
    const QDir root(folder);
    QDirIterator files(folder, audioNames(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        const QFileInfo file = files.fileInfo();
        const QString group = root.relativeFilePath(file.absolutePath());
        rows.append({file.absoluteFilePath(),
                     file.completeBaseName(),
                     group == QLatin1String(".") ? QString() : group,
                     file.size(),
                     file.lastModified()});
    }
    std::sort(rows.begin(), rows.end(), isNewer);
    if (rows.size() > limit) {
        rows.resize(limit);
    }
    return rows;
}

RecordingsModel::RecordingsModel(QObject* parent) : QAbstractListModel(parent) {}

RecordingsModel::~RecordingsModel() = default;

void RecordingsModel::scan(const QString& folder) {
    m_folder = folder;
    if (m_isScanning) {
        m_isAgainWanted = true;
    } else {
        begin();
    }
}

void RecordingsModel::begin() {
    m_isScanning = true;
    m_reader.post([this, folder = m_folder] {
        const QVector<RecordingEntry> rows = scanRecordings(folder, kMaxFiles);
        // The destructor waits for this function, so that `this` is alive here; a call that is
        // still queued when it dies is dropped.
        QMetaObject::invokeMethod(
            this, [this, rows] { take(rows); }, Qt::QueuedConnection);
    });
}

void RecordingsModel::take(const QVector<RecordingEntry>& rows) {
    m_isScanning = false;
    // Usually nothing or a few files in front are new: selection and scroll position stay then.
    const int added = rows.size() - m_rows.size();
    const bool isSameTail =
        added >= 0 &&
        std::equal(rows.cbegin() + added, rows.cend(), m_rows.cbegin(), m_rows.cend(), isSameFile);
    if (isSameTail) {
        if (added > 0) {
            beginInsertRows({}, 0, added - 1);
            m_rows = rows;
            endInsertRows();
        }
        m_rows = rows;
        if (!rows.isEmpty()) {
            emit dataChanged(index(0), index(rows.size() - 1));
        }
    } else {
        beginResetModel();
        m_rows = rows;
        endResetModel();
    }
    emit sig_scanned();
    if (m_isAgainWanted) {
        m_isAgainWanted = false;
        begin();
    }
}

int RecordingsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rows.size();
}

QVariant RecordingsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_rows.size()) {
        return {};
    }
    const RecordingEntry& entry = m_rows.at(index.row());
    const QString date = QLocale().toString(entry.modified, QLocale::ShortFormat);
    switch (role) {
    case Qt::DisplayRole:
        return entry.name;
    case SecondLineRole:
        return entry.group.isEmpty() ? date : QStringLiteral("%1 · %2").arg(entry.group, date);
    case TrailingRole:
        return sizeText(entry.bytes);
    case Qt::ToolTipRole:
        return plainToolTip(QDir::toNativeSeparators(entry.path));
    case FilterRole:
        return QStringLiteral("%1 %2").arg(entry.name, entry.group);
    case Qt::AccessibleTextRole:
        return QStringLiteral("%1, %2, %3").arg(entry.name, date, sizeText(entry.bytes));
    default:
        return {};
    }
}
