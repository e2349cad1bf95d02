#include "ui/pages/recordings_page.h"

#include "ui/folder_opener.h"
#include "ui/models/recordings_model.h"
#include "ui/ui_settings.h"
#include "ui/widgets/row_list_view.h"

#include <QAction>
#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>

namespace {

ListPage::Texts texts() {
    return {RecordingsPage::tr("Recordings"),
            RecordingsPage::tr("Filter the recordings"),
            RecordingsPage::tr("Recordings"),
            RecordingsPage::tr("Your recordings appear here.\n\nPlay a station, then press the red "
                               "button or Ctrl+R."),
            RecordingsPage::tr("No recording has all these words.")};
}

} // namespace

RecordingsPage::RecordingsPage(const UiSettings& settings, FolderOpener& opener, QWidget* parent)
    : ListPage(texts(), RowDelegate::Lines::Two, parent), m_settings(settings), m_opener(opener),
      m_model(new RecordingsModel(this)) {
    setModel(m_model);
    QAction* folder = makeAction(tr("Open the folder"), QStringLiteral("folder"), {});
    QAction* file = makeAction(
        tr("Open the file"), QStringLiteral("play"), QKeySequence(Qt::CTRL + Qt::Key_Return));
    QAction* copy = makeAction(tr("Copy the file's path"), QStringLiteral("copy"), {});
    QAction* again =
        makeAction(tr("Read the folder again"), QStringLiteral("retry"), QKeySequence::Refresh);
    addPageAction(again);
    connect(folder, &QAction::triggered, this, [this] { openFolderOf(currentRow()); });
    connect(file, &QAction::triggered, this, &RecordingsPage::playFile);
    connect(again, &QAction::triggered, this, &RecordingsPage::refresh);
    const auto copyPath = [this] {
        if (currentRow() >= 0) {
            QGuiApplication::clipboard()->setText(m_model->entryAt(currentRow()).path);
        }
    };
    connect(copy, &QAction::triggered, this, copyPath);
    connect(view(), &RowListView::sig_copyRequested, this, copyPath);
    connect(view(), &RowListView::sig_opened, this, [this](const QModelIndex& index) {
        openFolderOf(rowOf(index));
    });

    m_soon.setSingleShot(true);
    m_soon.setInterval(300);
    connect(
        &m_soon, &QTimer::timeout, this, [this] { m_model->scan(m_settings.recordingFolder()); });
}

/// What nobody sees is read when it is shown: a recording may go on for weeks.
void RecordingsPage::refresh() {
    if (isVisible())
        m_soon.start();
}

void RecordingsPage::showEvent(QShowEvent* event) {
    ListPage::showEvent(event);
    refresh();
}

void RecordingsPage::openFolderOf(int row) {
    if (row >= 0) {
        m_opener.openFolder(QFileInfo(m_model->entryAt(row).path).absolutePath());
    }
}

void RecordingsPage::playFile() {
    if (currentRow() >= 0) {
        m_opener.openFile(m_model->entryAt(currentRow()).path);
    }
}
