#pragma once

#include "ui/tray_options.h"

#include <QObject>
#include <QSystemTrayIcon>

#include <functional>
#include <memory>

class Commands;
class QMenu;

/// What a click on the icon does.
enum class TrayAct { None, ToggleWindow, ToggleMute };

/// A double click comes after a single one, which has done it already. Pure.
TrayAct trayActFor(QSystemTrayIcon::ActivationReason reason, const TrayOptions& options);

/// The program's icon in the tray, with a menu that reaches every command.
///
/// *Thread*: GUI. *Owner*: the main window; the commands outlive it. *Life*: without a tray the
/// object stays and shows nothing; the icon appears when a tray does. setOptions() comes first.
class TrayIcon final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TrayIcon)

  public:
    /// `isAvailable` says whether there is a tray now.
    TrayIcon(const Commands& commands, std::function<bool()> isAvailable, QObject* parent);
    ~TrayIcon() override;

    void setOptions(const TrayOptions& options);
    [[nodiscard]] const TrayOptions& options() const { return m_options; }

    /// True where a window that is hidden can be found again.
    [[nodiscard]] bool canHide() const { return m_options.isShown && m_isAvailable(); }
    void setWindowShown(bool isShown);
    /// What is heard; both may be empty.
    void showHeard(const QString& station, const QString& song);

    /// A message for a person who does not see the window.
    void popUp(const QString& text);

    [[nodiscard]] bool isVisible() const { return m_icon.isVisible(); }
    [[nodiscard]] QString toolTip() const { return m_icon.toolTip(); }
    [[nodiscard]] QMenu& menu() const { return *m_menu; }

  public slots:
    void clicked(QSystemTrayIcon::ActivationReason reason);

  signals:
    /// The message that popped up was clicked.
    void sig_popUpClicked();

  private:
    void update();

    const Commands& m_commands;
    const std::function<bool()> m_isAvailable;
    TrayOptions m_options;
    std::unique_ptr<QMenu> m_menu; // a menu of no window: it lives when the window is hidden
    QSystemTrayIcon m_icon;
    QString m_heard;
    bool m_isWindowShown = false;
};
