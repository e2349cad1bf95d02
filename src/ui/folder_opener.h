#pragma once

#include "ui/message.h"

#include <QObject>
#include <QUrl>

#include <functional>

/// Shows folders and files in the programs that the desktop has for them.
///
/// *Thread*: GUI. *Owner*: the main window.
class FolderOpener final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FolderOpener)

  public:
    using OpenUrl = std::function<bool(const QUrl&)>;

    explicit FolderOpener(OpenUrl openUrl, QObject* parent = nullptr);

    /// The folder is made where it is missing.
    void openFolder(const QString& folder);
    void openFile(const QString& path);

  signals:
    void sig_message(const Message& message);

  private:
    OpenUrl m_openUrl;
};
