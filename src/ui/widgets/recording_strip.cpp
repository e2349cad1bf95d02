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

RecordingStrip::RecordingStrip(const Actions& actions, QWidget* parent)
    : QWidget(parent), m_dot(new QLabel(this)),
      m_file(new ElidedLabel(ElidedLabel::Tone::Strong, this)),
      m_numbers(new ElidedLabel(ElidedLabel::Tone::Quiet, this)), m_folder(new QToolButton(this)),
      m_pause(new QToolButton(this)) {
    setObjectName(QStringLiteral("recordingStrip"));
    m_file->setObjectName(QStringLiteral("recordingFile"));
    m_numbers->setObjectName(QStringLiteral("recordingNumbers"));
    setUpButton(m_folder, actions.openFolder, "openRecordingFolder");
    setUpButton(m_pause, actions.pause, "pauseRecording");
    m_pause->hide();
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
    layout->addWidget(m_pause);
    layout->addWidget(m_folder);
}

void RecordingStrip::setUpButton(QToolButton* button, QAction* action, const char* name) {
    button->setObjectName(QLatin1String(name));
    button->setDefaultAction(action);
    button->setAccessibleName(action->text());
    button->setFocusPolicy(Qt::StrongFocus);
    button->setMinimumSize(34, 34);
}

void RecordingStrip::setPauseButtonShown(bool isShown) {
    m_pause->setVisible(isShown);
}

void RecordingStrip::showProgress(const BASS::RecordingProgress& progress, bool isPaused) {
    const QString name = QFileInfo(progress.path).fileName();
    m_file->setFullText(isPaused                  ? tr("Recording paused: %1").arg(name)
                        : progress.path.isEmpty() ? tr("Recording starts with the first data…")
                                                  : tr("Recording: %1").arg(name));
    m_numbers->setFullText(recordingText(progress));
    m_pause->setAccessibleName(m_pause->defaultAction()->text());
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
