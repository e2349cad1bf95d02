#include "ui/window_presenter.h"

#include "base/log.h"
#include "ui/commands.h"
#include "ui/tray_icon.h"

#include <QEvent>
#include <QGuiApplication>
#include <QTimer>
#include <QWidget>

#include <utility>

WindowPresenter::WindowPresenter(const Parts& parts, QObject* parent)
    : QObject(parent), m_parts(parts), m_tray(new TrayIcon(parts.commands, parts.hasTray, this)) {
    m_parts.window.installEventFilter(this);
    wireCommands();
}

WindowPresenter::~WindowPresenter() = default;

void WindowPresenter::wireCommands() {
    const Commands& commands = m_parts.commands;
    connect(commands.toggleWindow, &QAction::triggered, this, &WindowPresenter::toggle);
    connect(m_tray, &TrayIcon::sig_popUpClicked, this, &WindowPresenter::bringToFront);
    // What these do is seen in the window, which the tray's menu may find hidden.
    QVector<QAction*> seen{commands.openAddress,
                           commands.filter,
                           commands.shortcuts,
                           commands.settings,
                           commands.about};
    seen += commands.pages;
    for (const QAction* command : qAsConst(seen)) {
        connect(command, &QAction::triggered, this, [this] {
            if (m_parts.window.isHidden()) {
                bringToFront();
            }
        });
    }
}

void WindowPresenter::setTrayOptions(const TrayOptions& options) {
    TrayOptions possible = options;
    possible.isShown = options.isShown && m_parts.hasDisplay;
    m_tray->setOptions(possible);
    if (m_parts.window.isHidden() && m_parts.window.testAttribute(Qt::WA_WState_ExplicitShowHide) &&
        !m_tray->canHide()) {
        bringToFront(); // hidden before, and no icon any more to find it by
    }
}

void WindowPresenter::bringToFront() {
    if (!m_parts.hasDisplay) {
        return;
    }
    if (m_parts.window.isMinimized()) {
        // as it was before: perhaps maximised
        m_parts.window.setWindowState(m_parts.window.windowState() & ~Qt::WindowMinimized);
    }
    m_parts.window.show();
    m_parts.window.raise();
    m_parts.window.activateWindow();
}

void WindowPresenter::showAs(ShowMode mode) {
    if (!m_parts.hasDisplay) {
        return;
    }
    if (mode == ShowMode::Minimized) {
        m_parts.window.showMinimized();
    } else {
        bringToFront();
    }
    if (mode == ShowMode::MinimizedToTray) {
        hideToTray();
    }
}

void WindowPresenter::showAtStart() {
    if (m_tray->options().isHiddenAtStart) {
        hideToTray();
    } else {
        m_parts.window.show();
    }
}

void WindowPresenter::hideToTray() {
    if (m_tray->canHide()) {
        m_parts.window.hide();
    } else {
        qCInfo(lcUi, "hideToTray: there is no tray icon, the window is minimised");
        m_parts.window.showMinimized();
    }
}

bool WindowPresenter::isHiddenOnClose() const {
    // The end of the session closes windows too, and means it.
    return m_tray->options().isHiddenOnClose && m_tray->canHide() && !qGuiApp->isSavingSession();
}

void WindowPresenter::toggle() {
    if (m_parts.window.isHidden() || m_parts.window.isMinimized()) {
        bringToFront();
    } else {
        hideToTray();
    }
}

bool WindowPresenter::eventFilter(QObject* watched, QEvent* event) {
    const QWidget& window = m_parts.window;
    const QEvent::Type type = event->type();
    if (type == QEvent::Show || type == QEvent::Hide) {
        m_tray->setWindowShown(!window.isHidden());
        qCInfo(lcUi,
               "window state=%s",
               window.isHidden()      ? "hidden"
               : window.isMinimized() ? "minimised"
                                      : "shown");
    } else if (type == QEvent::WindowStateChange && window.isMinimized() &&
               m_tray->options().isHiddenOnMinimize && m_tray->canHide()) {
        QTimer::singleShot(0, &m_parts.window, &QWidget::hide); // not within the change itself
    }
    if (type == QEvent::Show || type == QEvent::Hide || type == QEvent::WindowStateChange) {
        const bool isWatched = !window.isHidden() && !window.isMinimized();
        if (std::exchange(m_isWatched, isWatched) != isWatched)
            emit sig_watchedChanged(isWatched);
    }
    return QObject::eventFilter(watched, event);
}
