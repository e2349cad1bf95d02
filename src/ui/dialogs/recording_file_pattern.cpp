#include "ui/dialogs/recording_file_pattern.h"

#include "ui/dialogs/form_fields.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <array>

namespace {

/// In the order of the editor; an empty text: the backslash.
struct Placeholder {
    const char* text;
    const char* description;
};

constexpr std::array<Placeholder, 12> kPlaceholders{
    {{"%title%", QT_TRANSLATE_NOOP("RecordingFilePattern", "Station name")},
     {"%country%", QT_TRANSLATE_NOOP("RecordingFilePattern", "Country")},
     {"%state%", QT_TRANSLATE_NOOP("RecordingFilePattern", "Country state")},
     {"%city%", QT_TRANSLATE_NOOP("RecordingFilePattern", "City")},
     {"%schedule%", QT_TRANSLATE_NOOP("RecordingFilePattern", "Scheduled task name")},
     {"%date%", QT_TRANSLATE_NOOP("RecordingFilePattern", "Date Format")},
     {"%time%", QT_TRANSLATE_NOOP("RecordingFilePattern", "Time Format")},
     {"%track_or_title%", QT_TRANSLATE_NOOP("RecordingFilePattern", "Track or Title")},
     {"%artist%", QT_TRANSLATE_NOOP("RecordingFilePattern", "Song/Track artist")},
     {"%song_title%", QT_TRANSLATE_NOOP("RecordingFilePattern", "Song/Track title")},
     {"%comment%", QT_TRANSLATE_NOOP("RecordingFilePattern", "Any comment found")},
     {"\\", QT_TRANSLATE_NOOP("RecordingFilePattern", "Folder")}}};

constexpr std::array<const char*, 5> kPresets{
    "%title%\\%title%_%date%_%time%",
    "%title%\\%track%",
    "%title%\\%date%_%time%",
    "%title%\\%title% %track% %country% %date% %time%",
    "%title%\\%title% %track% %state% %date% %time%",
};

constexpr std::array<const char*, 8> kDateFormats{"MMMM dd dddd yyyy",
                                                  "dd MMMM dddd yyyy",
                                                  "dd.MMM.yyyy",
                                                  "dd.MM.yy",
                                                  "ddd.MMM.yyyy",
                                                  "MM.dd.yy",
                                                  "MMM.ddd.yyyy",
                                                  "MMM.dd.yyyy"};
constexpr std::array<const char*, 4> kTimeFormats{"hh.mm", "hh.mm.ss", "h.mm AP", "h.mm.ss AP"};
const auto kUsualDate = QStringLiteral("dd.MMM.yyyy");
const auto kUsualTime = QStringLiteral("h.mm.ss AP");

template <std::size_t Count>
void addFormats(QComboBox* box, const std::array<const char*, Count>& formats) {
    for (const char* format : formats) {
        box->addItem(QString::fromLatin1(format), QString::fromLatin1(format));
    }
}

/// One that a hand has written into the settings stays on offer.
void chooseFormat(QComboBox* box, const QString& format, const QString& usual) {
    const QString wanted = format.isEmpty() ? usual : format;
    if (box->findData(wanted) < 0) {
        box->addItem(wanted, wanted);
    }
    box->setCurrentIndex(box->findData(wanted));
}

} // namespace

RecordingFilePattern::RecordingFilePattern(const Choice& choice, QWidget* parent)
    : QDialog(parent), m_choice(choice), m_pattern(new QLineEdit(this)),
      m_placeholders(new QListWidget(this)), m_output(new QLabel(this)) {
    setWindowTitle(tr("File Pattern"));
    setObjectName(QStringLiteral("recordingFilePattern"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(makePattern());
    layout->addWidget(makePlaceholders(), 1);
    layout->addWidget(buttons);
    fill(choice.names);
    connect(m_pattern, &QLineEdit::textChanged, this, &RecordingFilePattern::showExample);
    for (QComboBox* box : {m_date, m_time}) {
        connect(box,
                QOverload<int>::of(&QComboBox::currentIndexChanged),
                this,
                &RecordingFilePattern::showExample);
    }
    showExample();
    m_pattern->setFocus();
    resize(560, sizeHint().height());
}

QWidget* RecordingFilePattern::makePattern() {
    auto* part = new QWidget;
    auto* form = new QFormLayout(part);
    form->setContentsMargins(0, 0, 0, 0);
    m_pattern->setObjectName(QStringLiteral("pattern"));
    m_pattern->setAccessibleName(m_choice.isSplit ? tr("File Pattern (Splitting)")
                                                  : tr("File Pattern (No Splitting)"));
    form->addRow(m_choice.isSplit ? tr("File &Pattern (Splitting):")
                                  : tr("File &Pattern (No Splitting):"),
                 m_pattern);
    m_output->setObjectName(QStringLiteral("testOutput"));
    m_output->setTextFormat(Qt::PlainText);
    m_output->setWordWrap(true);
    m_output->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    form->addRow(tr("Test Output"), m_output);
    m_presets = addField<QComboBox>(form, "presets", tr("&Copy from presets:"));
    m_presets->addItem(QString());
    for (const char* preset : kPresets) {
        m_presets->addItem(QString::fromLatin1(preset));
    }
    connect(m_presets, QOverload<int>::of(&QComboBox::activated), this, [this](int index) {
        if (index > 0) {
            m_pattern->setText(m_presets->itemText(index));
        }
    });
    m_date = addField<QComboBox>(form, "dateFormat", tr("&Date Format:"));
    addFormats(m_date, kDateFormats);
    m_time = addField<QComboBox>(form, "timeFormat", tr("&Time Format:"));
    addFormats(m_time, kTimeFormats);
    if (!m_choice.settings.pattern.isEmpty()) {
        auto* copy = new QPushButton(tr("Copy from &settings"));
        copy->setObjectName(QStringLiteral("copyFromSettings"));
        connect(copy, &QPushButton::clicked, this, [this] { fill(m_choice.settings); });
        form->addRow(QString(), copy);
    }
    return part;
}

QWidget* RecordingFilePattern::makePlaceholders() {
    auto* part = new QWidget;
    auto* layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    m_placeholders->setObjectName(QStringLiteral("placeholders"));
    m_placeholders->setAccessibleName(tr("Placeholders"));
    for (const Placeholder& placeholder : kPlaceholders) {
        auto* item =
            new QListWidgetItem(QStringLiteral("%1 - %2").arg(QString::fromLatin1(placeholder.text),
                                                              tr(placeholder.description)),
                                m_placeholders);
        item->setData(Qt::UserRole, QString::fromLatin1(placeholder.text));
    }
    m_placeholders->setCurrentRow(0);
    auto* insert = new QPushButton(tr("&Insert at the cursor"));
    insert->setObjectName(QStringLiteral("insertPlaceholder"));
    insert->setAutoDefault(false);
    connect(insert, &QPushButton::clicked, this, &RecordingFilePattern::insertPlaceholder);
    connect(m_placeholders,
            &QListWidget::itemDoubleClicked,
            this,
            &RecordingFilePattern::insertPlaceholder);
    layout->addWidget(m_placeholders, 1);
    layout->addWidget(insert, 0, Qt::AlignLeft);
    return part;
}

void RecordingFilePattern::insertPlaceholder() {
    if (const QListWidgetItem* item = m_placeholders->currentItem()) {
        m_pattern->insert(item->data(Qt::UserRole).toString());
    }
}

void RecordingFilePattern::fill(const RecordingPreferences::Names& names) {
    m_pattern->setText(names.pattern);
    chooseFormat(m_date, names.dateFormat, kUsualDate);
    chooseFormat(m_time, names.timeFormat, kUsualTime);
}

RecordingPreferences::Names RecordingFilePattern::names() const {
    return {m_pattern->text(), m_date->currentData().toString(), m_time->currentData().toString()};
}

QString RecordingFilePattern::example(const RecordingPreferences::Names& names, bool isSplit) {
    BASS::FileNameContext context;
    context.station = {
        tr("Harbour Jazz"), tr("Germany"), tr("Hamburg"), tr("Hamburg"), tr("Evening")};
    context.song = BASS::songFromTrack(tr("The Lamplighters - Slow Boat"));
    context.song.comment = tr("live");
    context.dateFormat = names.dateFormat;
    context.timeFormat = names.timeFormat;
    context.isSplit = isSplit;
    context.now = QDateTime::currentDateTime();
    return QDir::toNativeSeparators(
        BASS::relativeRecordingPath(names.pattern, context, QStringLiteral("mp3")));
}

void RecordingFilePattern::showExample() {
    const bool isUsable = !m_pattern->text().trimmed().isEmpty();
    const QString text = isUsable ? example(names(), m_choice.isSplit) : QString();
    m_output->setText(text);
    m_output->setAccessibleName(tr("Test Output") + QStringLiteral(": ") + text);
    m_pattern->setAccessibleDescription(text);
    m_ok->setEnabled(isUsable);
}
