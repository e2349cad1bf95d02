#include "ui/widgets/shortcuts_dialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

QString plainText(const QAction* action) {
    return action->text().remove(QLatin1Char('&'));
}

void addRow(QStandardItemModel* model, const QString& keys, const QString& text) {
    model->appendRow({new QStandardItem(text), new QStandardItem(keys)});
}

} // namespace

ShortcutsDialog::ShortcutsDialog(const QVector<QAction*>& commands, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(tr("Keyboard shortcuts"));
    auto* model = new QStandardItemModel(0, 2, this);
    model->setHorizontalHeaderLabels({tr("Command"), tr("Keys")});
    addRow(model, tr("Space"), tr("Play or stop, outside of text fields"));
    for (const QAction* command : commands) {
        if (!command->shortcut().isEmpty()) {
            addRow(
                model, command->shortcut().toString(QKeySequence::NativeText), plainText(command));
        }
    }
    addRow(model, tr("Enter"), tr("Open the current row of a list"));
    addRow(model,
           QKeySequence(Qt::Key_Delete).toString(QKeySequence::NativeText),
           tr("Remove the current row from the played stations"));
    addRow(model, tr("Down"), tr("On the record button: show the ways to record"));

    auto* table = new QTreeView(this);
    table->setModel(model);
    table->setRootIsDecorated(false);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setAccessibleName(tr("Keyboard shortcuts"));
    table->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    table->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    table->header()->setStretchLastSection(false);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(table);
    layout->addWidget(buttons);
    resize(460, 480);
}
