#include "ui/dialogs/settings_dialog.h"

#include "ui/announcer.h"
#include "ui/dialogs/encoding_settings_page.h"
#include "ui/dialogs/form_fields.h"
#include "ui/dialogs/playing_settings_page.h"
#include "ui/dialogs/recording_settings_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kFirstProxyPort = 8080;
constexpr int kTabsWidth = 600; ///< a path or a pattern is read without scrolling

} // namespace

SettingsDialog::SettingsDialog(const Preferences& preferences,
                               const QVector<Language>& languages,
                               const AudioDevices& devices,
                               QWidget* parent)
    : QDialog(parent), m_applied(preferences), m_tabs(new QTabWidget(this)),
      m_playing(new PlayingSettingsPage(devices)), m_recording(new RecordingSettingsPage),
      m_encoding(new EncodingSettingsPage), m_note(new QLabel(this)) {
    setWindowTitle(tr("Settings"));
    setObjectName(QStringLiteral("settingsDialog"));
    m_tabs->setAccessibleName(tr("Groups of settings"));
    m_tabs->addTab(makeGeneral(languages), tr("&General"));
    m_tabs->addTab(makeTray(), tr("&Tray"));
    m_tabs->addTab(m_playing, tr("&Playing"));
    m_tabs->addTab(m_recording, tr("&Recording"));
    m_tabs->addTab(m_encoding, tr("Encoding"));
    m_tabs->addTab(makeNetwork(), tr("&Network"));
    // every group is seen at once: none hides behind the bar's arrows
    m_tabs->setMinimumWidth(std::max(m_tabs->tabBar()->sizeHint().width(), kTabsWidth));
    m_note->setObjectName(QStringLiteral("settingsNote"));
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->hide();

    auto* buttons = new QDialogButtonBox(
        QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply, this);
    m_apply = buttons->button(QDialogButtonBox::Apply);
    connect(buttons, &QDialogButtonBox::accepted, this, &SettingsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_apply, &QPushButton::clicked, this, &SettingsDialog::apply);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    layout->addWidget(m_note);
    layout->addWidget(buttons);
    fill(preferences);
    m_applied = this->preferences(); // numbers out of range are shown as the nearest that is in
    watchChanges();
    enableParts();
}

QWidget* SettingsDialog::makeGeneral(const QVector<Language>& languages) {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* form = new QFormLayout;
    layout->addLayout(form);
    m_language = addField<QComboBox>(form, "language", tr("&Language:"));
    for (const Language& language : languages) {
        m_language->addItem(language.name, language.file);
    }
    m_language->setEnabled(!languages.isEmpty());
    m_theme = addField<QComboBox>(form, "theme", tr("The&me:"));
    m_theme->addItem(tr("As the system"), themeToText(ThemeChoice::System));
    m_theme->addItem(tr("Light"), themeToText(ThemeChoice::Light));
    m_theme->addItem(tr("Dark"), themeToText(ThemeChoice::Dark));
    m_autoPlay = addCheck(layout, "autoPlay", tr("Play the last &station when Wavelark starts"));
    m_ask = addCheck(layout, "askOnExit", tr("&Ask before quitting while a recording runs"));
    m_instances = addCheck(layout, "instances", tr("Let several &instances run side by side"));
    m_logFile = addCheck(layout, "logFile", tr("Keep a log &file"));
    layout->addStretch();
    return page;
}

QWidget* SettingsDialog::makeTray() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    m_tray = addCheck(layout, "trayIcon", tr("&Show an icon in the tray"));
    m_persistent = addCheck(layout, "trayPersistent", tr("Also while the &window is shown"));
    m_atStart = addCheck(layout, "trayAtStart", tr("Start &hidden in the tray"));
    m_onClose = addCheck(layout, "trayOnClose", tr("&Closing the window hides it in the tray"));
    m_onMinimize = addCheck(layout, "trayOnMinimize", tr("&Minimising hides it in the tray"));
    m_clickMutes = addCheck(layout, "trayClickMutes", tr("The middle mouse &button mutes"));
    m_toolTip = addCheck(layout, "trayToolTip", tr("The too&l tip tells station and title"));
    m_popups = addCheck(layout, "trayPopups", tr("Sh&ow messages while the window is hidden"));
    layout->addStretch();
    return page;
}

QWidget* SettingsDialog::makeNetwork() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    m_useProxy = addCheck(layout, "useProxy", tr("&Use a proxy"));
    auto* form = new QFormLayout;
    layout->addLayout(form);
    m_proxyHost = addField<QLineEdit>(form, "proxyHost", tr("&Server:"));
    m_proxyPort = addNumber(form, "proxyPort", tr("P&ort:"), 1, 65535);
    m_proxyUser = addField<QLineEdit>(form, "proxyUser", tr("Us&er name:"));
    m_proxyPassword = addField<QLineEdit>(form, "proxyPassword", tr("Pass&word:"));
    m_proxyPassword->setEchoMode(QLineEdit::Password);
    layout->addWidget(quietText(
        tr("The password is kept as it is in the settings file. Without a proxy of its own "
           "Wavelark uses the one of the system.")));
    layout->addStretch();
    return page;
}

void SettingsDialog::fill(const Preferences& preferences) {
    choose(m_language, preferences.languageFile);
    choose(m_theme, themeToText(preferences.theme));
    m_autoPlay->setChecked(preferences.isAutoPlaying);
    m_ask->setChecked(preferences.isAskingOnExit);
    m_instances->setChecked(preferences.areMultipleInstancesAllowed);
    m_logFile->setChecked(preferences.isLogFileKept);
    const TrayOptions& tray = preferences.tray;
    m_tray->setChecked(tray.isShown);
    m_persistent->setChecked(tray.isPersistent);
    m_onClose->setChecked(tray.isHiddenOnClose);
    m_onMinimize->setChecked(tray.isHiddenOnMinimize);
    m_atStart->setChecked(tray.isHiddenAtStart);
    m_clickMutes->setChecked(tray.isMutedByClick);
    m_toolTip->setChecked(tray.isToolTipUpdated);
    m_popups->setChecked(tray.hasPopups);
    m_playing->fill(preferences);
    m_recording->fill(preferences.recording);
    m_encoding->fill(preferences.recording);
    fillProxy(preferences.proxy);
}

void SettingsDialog::fillProxy(const ProxySettings& proxy) {
    m_useProxy->setChecked(proxy.isInForce());
    m_proxyHost->setText(proxy.host);
    const int port = proxy.port.toInt();
    m_proxyPort->setValue(port > 0 ? port : kFirstProxyPort);
    m_proxyUser->setText(proxy.user);
    m_proxyPassword->setText(proxy.password);
}

Preferences SettingsDialog::preferences() const {
    Preferences now;
    // A language whose file is gone stays what it is until another one is chosen.
    now.languageFile = m_language->currentIndex() < 0 ? m_applied.languageFile
                                                      : m_language->currentData().toString();
    now.theme = themeFromText(m_theme->currentData().toString());
    now.isAutoPlaying = m_autoPlay->isChecked();
    now.isAskingOnExit = m_ask->isChecked();
    now.areMultipleInstancesAllowed = m_instances->isChecked();
    now.isLogFileKept = m_logFile->isChecked();
    now.tray.isShown = m_tray->isChecked();
    now.tray.isPersistent = m_persistent->isChecked();
    now.tray.isHiddenOnClose = m_onClose->isChecked();
    now.tray.isHiddenOnMinimize = m_onMinimize->isChecked();
    now.tray.isHiddenAtStart = m_atStart->isChecked();
    now.tray.isMutedByClick = m_clickMutes->isChecked();
    now.tray.isToolTipUpdated = m_toolTip->isChecked();
    now.tray.hasPopups = m_popups->isChecked();
    m_playing->read(now);
    now.recording = m_applied.recording;
    m_recording->read(now.recording);
    m_encoding->read(now.recording);
    now.proxy = {m_proxyHost->text().trimmed(),
                 QString::number(m_proxyPort->value()),
                 m_proxyUser->text(),
                 m_proxyPassword->text(),
                 !m_useProxy->isChecked()};
    return now;
}

void SettingsDialog::watchChanges() {
    const auto changed = [this] {
        m_apply->setEnabled(true);
        m_note->hide();
    };
    for (QLineEdit* field : findChildren<QLineEdit*>()) {
        connect(field, &QLineEdit::textChanged, this, changed);
    }
    for (QSpinBox* box : findChildren<QSpinBox*>()) {
        connect(box, QOverload<int>::of(&QSpinBox::valueChanged), this, changed);
    }
    for (QComboBox* box : findChildren<QComboBox*>()) {
        connect(box, QOverload<int>::of(&QComboBox::currentIndexChanged), this, changed);
    }
    for (QCheckBox* box : findChildren<QCheckBox*>()) {
        connect(box, &QCheckBox::toggled, this, changed);
    }
    connect(m_recording, &RecordingSettingsPage::sig_changed, this, changed);
    connect(m_tray, &QCheckBox::toggled, this, &SettingsDialog::enableParts);
    connect(m_useProxy, &QCheckBox::toggled, this, &SettingsDialog::enableParts);
    m_apply->setEnabled(false);
}

void SettingsDialog::enableParts() {
    for (QWidget* part :
         {m_persistent, m_onClose, m_onMinimize, m_atStart, m_clickMutes, m_toolTip, m_popups}) {
        part->setEnabled(m_tray->isChecked());
    }
    for (QWidget* part : {static_cast<QWidget*>(m_proxyHost),
                          static_cast<QWidget*>(m_proxyPort),
                          static_cast<QWidget*>(m_proxyUser),
                          static_cast<QWidget*>(m_proxyPassword)}) {
        part->setEnabled(m_useProxy->isChecked());
    }
}

bool SettingsDialog::apply() {
    const Preferences now = preferences();
    const QString fault = preferencesFault(now);
    const bool isLate = fault.isEmpty() && isRestartNeeded(m_applied, now);
    if (fault.isEmpty()) {
        emit sig_applied(m_applied, now);
        m_applied = now;
        m_apply->setEnabled(false);
    }
    const QString text =
        isLate ? tr("Some of it is in force when Wavelark starts the next time.") : fault;
    m_note->setText(text);
    m_note->setVisible(!text.isEmpty());
    if (!text.isEmpty()) {
        announce(m_note, text, fault.isEmpty() ? Urgency::Polite : Urgency::Alert);
    }
    return fault.isEmpty();
}

void SettingsDialog::accept() {
    if (!m_apply->isEnabled() || apply()) {
        QDialog::accept();
    }
}
