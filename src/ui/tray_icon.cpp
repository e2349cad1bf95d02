#include "ui/tray_icon.h"

#include "ui/commands.h"
#include "ui/main_menu.h"
#include "ui/theme/icons.h"

#include <QMenu>

TrayAct trayActFor(QSystemTrayIcon::ActivationReason reason, const TrayOptions& options) {
    if (reason == QSystemTrayIcon::Trigger) {
        return TrayAct::ToggleWindow;
    }
    const bool isMuting = reason == QSystemTrayIcon::MiddleClick && options.isMutedByClick;
    return isMuting ? TrayAct::ToggleMute : TrayAct::None;
}

TrayIcon::TrayIcon(const Commands& commands, std::function<bool()> isAvailable, QObject* parent)
    : QObject(parent), m_commands(commands), m_isAvailable(std::move(isAvailable)),
      m_menu(std::make_unique<QMenu>()) {
    m_menu->setObjectName(QStringLiteral("trayMenu"));
    fillTrayMenu(*m_menu, commands);
    m_icon.setIcon(applicationIcon());
    m_icon.setContextMenu(m_menu.get());
    connect(&m_icon, &QSystemTrayIcon::activated, this, &TrayIcon::clicked);
    connect(&m_icon, &QSystemTrayIcon::messageClicked, this, &TrayIcon::sig_popUpClicked);
}

TrayIcon::~TrayIcon() = default;

void TrayIcon::setOptions(const TrayOptions& options) {
    m_options = options;
    update();
}

void TrayIcon::setWindowShown(bool isShown) {
    m_isWindowShown = isShown;
    m_commands.toggleWindow->setText(isShown ? tr("&Hide the window") : tr("&Show the window"));
    update();
}

void TrayIcon::showHeard(const QString& station, const QString& song) {
    QStringList lines{station, song};
    lines.removeAll(QString());
    m_heard = lines.join(QLatin1Char('\n'));
    update();
}

void TrayIcon::popUp(const QString& text) {
    if (m_options.hasPopups && canHide()) {
        m_icon.showMessage(QStringLiteral("Wavelark"), text, applicationIcon());
    }
}

void TrayIcon::clicked(QSystemTrayIcon::ActivationReason reason) {
    switch (trayActFor(reason, m_options)) {
    case TrayAct::ToggleWindow:
        m_commands.toggleWindow->trigger();
        break;
    case TrayAct::ToggleMute:
        m_commands.mute->trigger();
        break;
    case TrayAct::None:
        break;
    }
}

void TrayIcon::update() {
    const bool isHeardShown = m_options.isToolTipUpdated && !m_heard.isEmpty();
    m_icon.setToolTip(isHeardShown ? m_heard : QStringLiteral("Wavelark"));
    m_icon.setVisible(m_options.isShown && (m_options.isPersistent || !m_isWindowShown));
    m_commands.toggleWindow->setEnabled(canHide() || !m_isWindowShown);
}
