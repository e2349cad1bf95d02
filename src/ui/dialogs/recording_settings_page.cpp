#include "ui/dialogs/recording_settings_page.h"

#include "ui/dialogs/form_fields.h"
#include "ui/dialogs/recording_file_pattern.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {

constexpr int kMostBufferMegabytes = 1024;
constexpr int kMostDelayMs = 60000;

} // namespace

RecordingSettingsPage::RecordingSettingsPage(QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    layout->addLayout(form);
    addFolder(form);
    addNames(form, m_split, true);
    addNames(form, m_noSplit, false);
    addPieces(form);
    addChecks(layout);
    addBuffer(layout);
    layout->addStretch();
}

void RecordingSettingsPage::addFolder(QFormLayout* form) {
    m_folder = new QLineEdit;
    m_folder->setObjectName(QStringLiteral("recordingFolder"));
    m_folder->setAccessibleName(tr("Recording folder"));
    auto* button = new QPushButton(tr("&Browse…"));
    button->setObjectName(QStringLiteral("browse"));
    button->setAccessibleName(tr("Choose the recording folder"));
    connect(button, &QPushButton::clicked, this, &RecordingSettingsPage::browse);
    auto* row = new QHBoxLayout;
    row->addWidget(m_folder, 1);
    row->addWidget(button);
    auto* label = new QLabel(tr("&Folder:"));
    label->setBuddy(m_folder);
    form->addRow(label, row);
}

void RecordingSettingsPage::addNames(QFormLayout* form, NameFields& fields, bool isSplit) {
    const QString name =
        isSplit ? tr("File names, one file per track") : tr("File names, one file in all");
    fields.pattern = new QLineEdit;
    fields.pattern->setObjectName(isSplit ? QStringLiteral("patternSplit")
                                          : QStringLiteral("patternNoSplit"));
    fields.pattern->setAccessibleName(name);
    auto* edit = new QPushButton(tr("Edit…"));
    edit->setObjectName(isSplit ? QStringLiteral("editSplit") : QStringLiteral("editNoSplit"));
    edit->setAccessibleName(tr("Edit: %1").arg(name));
    connect(edit, &QPushButton::clicked, this, [this, &fields, isSplit] {
        editNames(fields, isSplit);
    });
    auto* row = new QHBoxLayout;
    row->addWidget(fields.pattern, 1);
    row->addWidget(edit);
    auto* label = new QLabel(isSplit ? tr("File names, one file per trac&k:")
                                     : tr("File names, one file in &all:"));
    label->setBuddy(fields.pattern);
    form->addRow(label, row);
}

void RecordingSettingsPage::addPieces(QFormLayout* form) {
    m_mode = addField<QComboBox>(form, "recordButton", tr("The record b&utton makes:"));
    m_mode->addItem(tr("One file per track"), true);
    m_mode->addItem(tr("One file in all"), false);
    m_minutes = addNumber(form, "splitMinutes", tr("One file in all, part&s of:"), 0, 24 * 60);
    m_minutes->setSuffix(tr(" min", "minutes"));
    m_minutes->setSpecialValueText(tr("Not parted"));
    m_delay = addNumber(form, "splitDelay", tr("&Delay of cuts:"), -kMostDelayMs, kMostDelayMs);
    m_delay->setSingleStep(100);
    m_delay->setSuffix(tr(" ms", "milliseconds"));
    m_delay->setToolTip(tr("For stations that send their titles too early; below zero: too late."));
    m_delay->setAccessibleDescription(m_delay->toolTip());
}

void RecordingSettingsPage::addChecks(QVBoxLayout* layout) {
    m_overwrite = addCheck(layout, "overwrite", tr("&Overwrite same file"));
    m_byteExact =
        addCheck(layout, "byteExact", tr("Cut MP3 to the b&yte, without what a clean start needs"));
    m_m4a = addCheck(layout, "m4a", tr("Write AAC streams as M&4A files"));
    m_pause = addCheck(layout, "pauseButton", tr("Sho&w a pause button while recording"));
}

void RecordingSettingsPage::addBuffer(QVBoxLayout* layout) {
    m_noBuffer = addCheck(layout, "noBuffer", tr("Do not use\nrecording buffer"));
    auto* form = new QFormLayout;
    layout->addLayout(form);
    m_bufferSize =
        addNumber(form, "recordingBuffer", tr("Buffer size (MB)"), 1, kMostBufferMegabytes);
    form->addRow(quietText(tr("A recording buffer means the recording will not start from the "
                              "point the recording was started")));
    connect(m_noBuffer, &QCheckBox::toggled, m_bufferSize, &QWidget::setDisabled);
}

void RecordingSettingsPage::fill(const RecordingPreferences& preferences) {
    m_folder->setText(preferences.folder);
    m_split.names = preferences.split;
    m_split.pattern->setText(preferences.split.pattern);
    m_noSplit.names = preferences.noSplit;
    m_noSplit.pattern->setText(preferences.noSplit.pattern);
    choose(m_mode, preferences.isSplit);
    m_minutes->setValue(preferences.splitMinutes);
    m_delay->setValue(preferences.splitDelayMs);
    m_overwrite->setChecked(preferences.isOverwriting);
    m_byteExact->setChecked(preferences.isMp3ByteExact);
    m_m4a->setChecked(preferences.isM4aUsed);
    m_pause->setChecked(preferences.isPauseShown);
    m_noBuffer->setChecked(!preferences.hasBuffer);
    m_bufferSize->setValue(preferences.bufferMegabytes);
    m_bufferSize->setDisabled(!preferences.hasBuffer);
}

void RecordingSettingsPage::read(RecordingPreferences& preferences) const {
    preferences.folder = m_folder->text().trimmed();
    preferences.split = m_split.names;
    preferences.split.pattern = m_split.pattern->text();
    preferences.noSplit = m_noSplit.names;
    preferences.noSplit.pattern = m_noSplit.pattern->text();
    preferences.isSplit = m_mode->currentData().toBool();
    preferences.splitMinutes = m_minutes->value();
    preferences.splitDelayMs = m_delay->value();
    preferences.isOverwriting = m_overwrite->isChecked();
    preferences.isMp3ByteExact = m_byteExact->isChecked();
    preferences.isM4aUsed = m_m4a->isChecked();
    preferences.isPauseShown = m_pause->isChecked();
    preferences.hasBuffer = !m_noBuffer->isChecked();
    preferences.bufferMegabytes = m_bufferSize->value();
}

void RecordingSettingsPage::editNames(NameFields& fields, bool isSplit) {
    RecordingFilePattern::Choice choice;
    choice.names = fields.names;
    choice.names.pattern = fields.pattern->text();
    choice.isSplit = isSplit;
    auto* editor = new RecordingFilePattern(choice, this);
    editor->setAttribute(Qt::WA_DeleteOnClose);
    connect(editor, &QDialog::accepted, this, [this, editor, &fields] {
        const RecordingPreferences::Names names = editor->names();
        const bool hasNewFormats = names.dateFormat != fields.names.dateFormat ||
                                   names.timeFormat != fields.names.timeFormat;
        fields.names = names;
        fields.pattern->setText(names.pattern);
        if (hasNewFormats)
            emit sig_changed();
    });
    editor->open();
}

void RecordingSettingsPage::browse() {
    const QString folder = QFileDialog::getExistingDirectory(
        this, tr("Choose the recording folder"), QDir::fromNativeSeparators(m_folder->text()));
    if (!folder.isEmpty()) {
        m_folder->setText(QDir::toNativeSeparators(folder));
    }
}
