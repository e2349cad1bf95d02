#pragma once

#include "ui/pages/list_page.h"

#include <QTimer>

class FolderOpener;
class RecordController;
class RecordingsModel;
class UiSettings;

/// The files in the recording folder, of this and earlier sessions.
class RecordingsPage final : public ListPage {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RecordingsPage)

  public:
    RecordingsPage(const UiSettings& settings, FolderOpener& opener, QWidget* parent);

    /// Reads the folder soon; many requests in a short time are joined.
    void refresh();

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void openFolderOf(int row);
    void playFile();

    const UiSettings& m_settings;
    FolderOpener& m_opener;
    RecordingsModel* m_model;
    QTimer m_soon;
};
