#include "ui/dialogs/settings_dialog.h"

#include "ui/announcer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

constexpr int kFirstProxyPort = 8080;

/// A field with its label, by which a screen reader calls it.
template <typename Field>
Field* addField(QFormLayout* form, const char* name, const QString& label) {
    auto* field = new Field;
    field->setObjectName(QLatin1String(name));
    field->setAccessibleName(QString(label).remove(QLatin1Char('&')).remove(QLatin1Char(':')));
    form->addRow(label, field);
    return field;
}

QSpinBox*
addNumber(QFormLayout* form, const char* name, const QString& label, int least, int most) {
    auto* box = addField<QSpinBox>(form, name, label);
    box->setRange(least, most);
    return box;
}

QLabel* quietText(const QString& text) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

void choose(QComboBox* box, const QVariant& data) {
    const int index = box->findData(data, Qt::UserRole, Qt::MatchFixedString);
    box->setCurrentIndex(index);
}

} // namespace

SettingsDialog::SettingsDialog(const Preferences& preferences,
                               const QVector<Language>& languages,
                               const QStringList& devices,
                               QWidget* parent)
    : QDialog(parent), m_applied(preferences), m_tabs(new QTabWidget(this)),
      m_note(new QLabel(this)) {
    setWindowTitle(tr("Settings"));
    setObjectName(QStringLiteral("settingsDialog"));
    m_tabs->setAccessibleName(tr("Groups of settings"));
    m_tabs->addTab(makeGeneral(languages), tr("&General"));
    m_tabs->addTab(makeTray(), tr("&Tray"));
    m_tabs->addTab(makePlaying(devices), tr("&Playing"));
    m_tabs->addTab(makeRecording(), tr("&Recording"));
    m_tabs->addTab(makeNetwork(), tr("&Network"));
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

QCheckBox* SettingsDialog::addCheck(QVBoxLayout* layout, const char* name, const QString& text) {
    auto* box = new QCheckBox(text);
    box->setObjectName(QLatin1String(name));
    layout->addWidget(box);
    return box;
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

QWidget* SettingsDialog::makePlaying(const QStringList& devices) {
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    m_device = addField<QComboBox>(form, "outputDevice", tr("O&utput device:"));
    fillDevices(devices);
    m_fadeIn = addNumber(form, "fadeIn", tr("Fade &in:"), 0, 30);
    m_fadeOut = addNumber(form, "fadeOut", tr("Fade &out:"), 0, 30);
    m_buffer = addNumber(form, "buffer", tr("&Buffer:"), 500, 60000);
    m_buffer->setSingleStep(500);
    m_attempts = addNumber(form, "attempts", tr("&Attempts to connect:"), 1, 20);
    for (QSpinBox* box : {m_fadeIn, m_fadeOut}) {
        box->setSuffix(tr(" s", "seconds"));
    }
    m_buffer->setSuffix(tr(" ms", "milliseconds"));
    form->addRow(quietText(tr("A larger buffer bridges longer gaps of the network. Changes are in "
                              "force from the next station on.")));
    m_peakMeter = new QCheckBox(tr("Show the peak &meter"));
    m_peakMeter->setObjectName(QStringLiteral("peakMeterShown"));
    form->addRow(m_peakMeter);
    return page;
}

/// A chosen device that is not there now stays the choice.
void SettingsDialog::fillDevices(const QStringList& devices) {
    const QString& chosen = m_applied.outputDevice;
    m_device->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed); // names may be long
    m_device->addItem(tr("As the system"), QString());
    for (const QString& device : devices) {
        m_device->addItem(device, device);
    }
    if (!chosen.isEmpty() && !devices.contains(chosen)) {
        m_device->addItem(tr("%1 (not there now)").arg(chosen), chosen);
    }
}

QWidget* SettingsDialog::makeRecording() {
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    m_folder = new QLineEdit;
    m_folder->setObjectName(QStringLiteral("recordingFolder"));
    m_folder->setAccessibleName(tr("Recording folder"));
    auto* browseButton = new QPushButton(tr("&Browse…"));
    browseButton->setObjectName(QStringLiteral("browse"));
    browseButton->setAccessibleName(tr("Choose the recording folder"));
    connect(browseButton, &QPushButton::clicked, this, &SettingsDialog::browse);
    auto* row = new QHBoxLayout;
    row->addWidget(m_folder, 1);
    row->addWidget(browseButton);
    auto* label = new QLabel(tr("&Folder:"));
    label->setBuddy(m_folder);
    form->addRow(label, row);
    m_patternSplit =
        addField<QLineEdit>(form, "patternSplit", tr("File names, one file per trac&k:"));
    m_patternNoSplit =
        addField<QLineEdit>(form, "patternNoSplit", tr("File names, one file in &all:"));
    form->addRow(quietText(tr("A backslash begins a folder. %1 stands for the station, %2 for the "
                              "track. Also possible: %3.")
                               .arg(QStringLiteral("%title%"),
                                    QStringLiteral("%track%"),
                                    QStringLiteral("%artist%, %song_title%, %date%, %time%, "
                                                   "%country%, %city%, %schedule%"))));
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
    m_fadeIn->setValue(preferences.fadeInSeconds);
    m_fadeOut->setValue(preferences.fadeOutSeconds);
    m_buffer->setValue(preferences.bufferMs);
    m_attempts->setValue(preferences.attempts);
    m_device->setCurrentIndex(m_device->findData(preferences.outputDevice));
    m_peakMeter->setChecked(preferences.isPeakMeterShown);
    m_folder->setText(preferences.recordingFolder);
    m_patternSplit->setText(preferences.patternSplit);
    m_patternNoSplit->setText(preferences.patternNoSplit);
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
    now.fadeInSeconds = m_fadeIn->value();
    now.fadeOutSeconds = m_fadeOut->value();
    now.bufferMs = m_buffer->value();
    now.attempts = m_attempts->value();
    now.outputDevice = m_device->currentData().toString();
    now.isPeakMeterShown = m_peakMeter->isChecked();
    now.recordingFolder = m_folder->text().trimmed();
    now.patternSplit = m_patternSplit->text();
    now.patternNoSplit = m_patternNoSplit->text();
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

void SettingsDialog::browse() {
    const QString folder = QFileDialog::getExistingDirectory(
        this, tr("Choose the recording folder"), QDir::fromNativeSeparators(m_folder->text()));
    if (!folder.isEmpty()) {
        m_folder->setText(QDir::toNativeSeparators(folder));
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
