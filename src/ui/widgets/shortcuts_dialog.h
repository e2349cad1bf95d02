#pragma once

#include <QAction>
#include <QDialog>
#include <QVector>

/// Every command that has keys, with its keys.
class ShortcutsDialog final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ShortcutsDialog)

  public:
    explicit ShortcutsDialog(const QVector<QAction*>& commands, QWidget* parent = nullptr);
};
