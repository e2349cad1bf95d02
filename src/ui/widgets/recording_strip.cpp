#include "ui/widgets/recording_strip.h"

#include "ui/state_text.h"
#include "ui/theme/icons.h"
#include "ui/theme/theme.h"
#include "ui/widgets/elided_label.h"

#include <QAction>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int kNarrow = 520;

} // namespace

RecordingStrip::RecordingStrip(QAction* openFolder, QWidget* parent)
    : QWidget(parent), m_dot(new QLabel(this)),
      m_file(new ElidedLabel(ElidedLabel::Tone::Strong, this)),
      m_numbers(new ElidedLabel(ElidedLabel::Tone::Quiet, this)), m_folder(new QToolButton(this)) {
    setObjectName(QStringLiteral("recordingStrip"));
    m_file->setObjectName(QStringLiteral("recordingFile"));
    m_numbers->setObjectName(QStringLiteral("recordingNumbers"));
    m_folder->setObjectName(QStringLiteral("openRecordingFolder"));
    m_folder->setDefaultAction(openFolder);
    m_folder->setText(openFolder->text());
    m_folder->setAccessibleName(openFolder->text());
    m_folder->setFocusPolicy(Qt::StrongFocus);
    m_folder->setMinimumSize(34, 34);
    updateDot();

    auto* texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addWidget(m_file);
    texts->addWidget(m_numbers);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(14, 6, 12, 6);
    layout->setSpacing(10);
    layout->addWidget(m_dot);
    layout->addLayout(texts, 1);
    layout->addWidget(m_folder);
}

void RecordingStrip::showProgress(const BASS::RecordingProgress& progress) {
    m_file->setFullText(progress.path.isEmpty()
                            ? tr("Recording starts with the first data…")
                            : tr("Recording: %1").arg(QFileInfo(progress.path).fileName()));
    m_numbers->setFullText(recordingText(progress));
}

void RecordingStrip::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_folder->setToolButtonStyle(width() < kNarrow ? Qt::ToolButtonIconOnly
                                                   : Qt::ToolButtonTextBesideIcon);
}

void RecordingStrip::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Accents& accents = accentsFor(palette());
    painter.fillRect(rect(), accents.errorBack);
    painter.fillRect(0, 0, 4, height(), accents.recording);
}

void RecordingStrip::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        updateDot();
    }
}

void RecordingStrip::updateDot() {
    m_dot->setPixmap(icon(QStringLiteral("record"), IconTone::Recording).pixmap(QSize(20, 20)));
}
