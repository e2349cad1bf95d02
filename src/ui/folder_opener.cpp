#include "ui/folder_opener.h"

#include <QDir>
#include <QFileInfo>

FolderOpener::FolderOpener(OpenUrl openUrl, QObject* parent)
    : QObject(parent), m_openUrl(std::move(openUrl)) {}

void FolderOpener::openFolder(const QString& folder) {
    const QString shown = QDir::toNativeSeparators(folder);
    if (!QDir().mkpath(folder)) {
        emit sig_message({Message::Kind::Error,
                          tr("The folder %1 does not exist and cannot be made. Choose another "
                             "recording folder, or give yourself the right to write there.")
                              .arg(shown),
                          {},
                          {}});
    } else if (!m_openUrl(QUrl::fromLocalFile(folder))) {
        emit sig_message(
            {Message::Kind::Error,
             tr("No program of this computer shows folders. The folder is %1.").arg(shown),
             {},
             {}});
    }
}

void FolderOpener::openFile(const QString& path) {
    const QString shown = QDir::toNativeSeparators(path);
    if (!QFileInfo::exists(path)) {
        emit sig_message(
            {Message::Kind::Error, tr("The file %1 is not there any more.").arg(shown), {}, {}});
    } else if (!m_openUrl(QUrl::fromLocalFile(path))) {
        emit sig_message(
            {Message::Kind::Error, tr("No program of this computer opens %1.").arg(shown), {}, {}});
    }
}
