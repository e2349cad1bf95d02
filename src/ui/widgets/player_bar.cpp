#include "ui/widgets/player_bar.h"

#include "ui/announcer.h"
#include "ui/commands.h"
#include "ui/state_text.h"
#include "ui/theme/icons.h"
#include "ui/theme/theme.h"
#include "ui/theme/wavelark_style.h"
#include "ui/widgets/elided_label.h"
#include "ui/widgets/menu_tool_button.h"
#include "ui/widgets/peak_meter.h"
#include "ui/widgets/recording_strip.h"

#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>
#include <QVBoxLayout>

namespace {

constexpr int kNarrow = 600;
constexpr QSize kIcon(22, 22);

void setFlag(QWidget* button, const char* property, bool value) {
    if (button->property(property).toBool() != value) {
        button->setProperty(property, value);
        button->update();
    }
}

} // namespace

PlayerBar::PlayerBar(const Commands& commands, QWidget* parent)
    : QFrame(parent), m_picture(new QLabel(this)),
      m_station(new ElidedLabel(ElidedLabel::Tone::Quiet, this)),
      m_title(new ElidedLabel(ElidedLabel::Tone::Strong, this)),
      m_status(new ElidedLabel(ElidedLabel::Tone::Quiet, this)), m_elapsed(new QLabel(this)),
      m_play(new QToolButton(this)), m_pause(new QToolButton(this)), m_live(new QToolButton(this)),
      m_record(new MenuToolButton(this)), m_meter(new PeakMeter(this)),
      m_mute(new QToolButton(this)), m_volume(new QSlider(Qt::Horizontal, this)),
      m_percent(new QLabel(this)),
      m_strip(new RecordingStrip({commands.openRecordingFolder, commands.recordPause}, this)) {
    setObjectName(QStringLiteral("playerBar"));
    makeTexts();
    makeButtons(commands);
    makeVolume();
    layOut();
    showRecording({});
    showHeard({});
}

void PlayerBar::makeTexts() {
    m_picture->setPixmap(applicationIcon().pixmap(QSize(48, 48)));
    m_picture->setFixedSize(48, 48);
    m_station->setObjectName(QStringLiteral("stationText"));
    m_title->setObjectName(QStringLiteral("titleText"));
    m_status->setObjectName(QStringLiteral("statusText"));
    m_elapsed->setObjectName(QStringLiteral("elapsedText"));
    m_elapsed->setForegroundRole(QPalette::PlaceholderText);
}

void PlayerBar::makeButtons(const Commands& commands) {
    m_play->setObjectName(QStringLiteral("playButton"));
    m_play->setFixedSize(44, 44);
    m_play->setProperty(WavelarkStyle::kFilledProperty, true);
    connect(m_play, &QToolButton::clicked, commands.playStop, &QAction::trigger);

    const QPair<QToolButton*, QAction*> shifts[] = {{m_pause, commands.pause},
                                                    {m_live, commands.goLive}};
    for (const auto& [button, action] : shifts) {
        button->setDefaultAction(action);
        button->setToolButtonStyle(Qt::ToolButtonIconOnly);
        button->setFixedSize(36, 36);
    }
    m_pause->setObjectName(QStringLiteral("pauseButton"));
    m_live->setObjectName(QStringLiteral("liveButton"));
    // the buttons beside it must not move away under the mouse
    QSizePolicy policy = m_live->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_live->setSizePolicy(policy);
    m_live->hide();

    auto* menu = new QMenu(m_record);
    menu->addActions({commands.recordSplit, commands.recordNoSplit, commands.recordSingleSong});
    menu->addAction(commands.recordKeepLast);
    menu->addSeparator();
    menu->addActions({commands.recordPause, commands.recordStop, commands.openRecordingFolder});
    m_record->setObjectName(QStringLiteral("recordButton"));
    m_record->setMenu(menu);
    m_record->setFixedSize(68, 44);
    m_record->setProperty(WavelarkStyle::kRaisedProperty, true);
    m_record->setAccessibleDescription(tr("The Down key shows the ways to record"));
    connect(m_record, &QToolButton::clicked, commands.recordToggle, &QAction::trigger);

    m_mute->setObjectName(QStringLiteral("muteButton"));
    m_mute->setFixedSize(36, 36);
    connect(m_mute, &QToolButton::clicked, commands.mute, &QAction::trigger);
    for (QToolButton* button :
         {m_play, m_pause, m_live, static_cast<QToolButton*>(m_record), m_mute}) {
        button->setFocusPolicy(Qt::StrongFocus);
        button->setIconSize(kIcon);
    }
}

void PlayerBar::makeVolume() {
    m_volume->setObjectName(QStringLiteral("volumeSlider"));
    m_volume->setRange(0, 100);
    m_volume->setPageStep(10);
    m_volume->setMaximumWidth(150);
    m_volume->setAccessibleName(tr("Volume"));
    m_percent->setForegroundRole(QPalette::PlaceholderText);
    m_percent->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_percent->setFixedWidth(m_percent->fontMetrics().horizontalAdvance(QStringLiteral("100 %")) +
                             2);
    connect(m_volume, &QSlider::valueChanged, this, &PlayerBar::sig_volumeMoved);
}

void PlayerBar::layOut() {
    auto* status = new QHBoxLayout;
    status->setSpacing(8);
    status->addWidget(m_status, 1);
    status->addWidget(m_elapsed);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(1);
    texts->addStretch(1);
    texts->addWidget(m_title);
    texts->addWidget(m_station);
    texts->addLayout(status);
    texts->addStretch(1);
    auto* heard = new QHBoxLayout;
    heard->setSpacing(12);
    heard->addWidget(m_picture);
    heard->addLayout(texts, 1);

    auto* controls = new QHBoxLayout;
    controls->setSpacing(6);
    controls->addWidget(m_play);
    controls->addWidget(m_pause);
    controls->addWidget(m_live);
    controls->addWidget(m_record);
    controls->addSpacing(4);
    controls->addWidget(m_meter);
    controls->addStretch(1);
    controls->addWidget(m_mute);
    controls->addWidget(m_volume, 2);
    controls->addWidget(m_percent);

    m_row = new QBoxLayout(QBoxLayout::LeftToRight);
    m_row->setContentsMargins(12, 10, 12, 10);
    m_row->setSpacing(10);
    m_row->addLayout(heard, 1);
    m_row->addLayout(controls);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 1, 0, 0);
    all->setSpacing(0);
    all->addWidget(m_strip);
    all->addLayout(m_row);
}

void PlayerBar::showHeard(const Heard& heard) {
    const bool isNewState = heard.state != m_heard.state;
    if (isNewState) {
        m_statusLine.clear();
    }
    m_heard = heard;
    m_meter->setRunning(heard.state == PlayState::Playing);
    const bool isIdle = heard.state == PlayState::Stopped && heard.station.isEmpty();
    const QString first = heard.title.isEmpty() ? heard.station : heard.title;
    m_title->setFullText(isIdle ? tr("Nothing is playing") : first);
    m_station->setFullText(heard.title.isEmpty() ? QString() : heard.station);
    m_station->setVisible(!heard.title.isEmpty());
    m_live->setVisible(heard.stream.behindLiveMs > 0);
    for (QToolButton* button : {m_pause, m_live}) {
        button->setAccessibleName(button->text().remove(QLatin1Char('&')));
    }
    updateStatus();
    if (isNewState || m_play->icon().isNull()) { // told several times a second
        updateButtons();
    }
}

void PlayerBar::updateButtons() {
    const bool isPlaying = isActive(m_heard.state);
    const QString command = isPlaying ? tr("Stop") : tr("Play");
    m_play->setIcon(
        icon(isPlaying ? QStringLiteral("stop") : QStringLiteral("play"), IconTone::OnAccent));
    m_play->setToolTip(tr("%1 (Space)").arg(command));
    m_play->setAccessibleName(command);
    m_record->setEnabled(isPlaying || m_strip->isVisibleTo(this));
}

void PlayerBar::showStatusLine(const QString& text) {
    m_statusLine = text;
    updateStatus();
}

void PlayerBar::updateStatus() {
    QString text = m_statusLine.isEmpty() || m_heard.state == PlayState::Playing
                       ? stateText(m_heard.state)
                       : m_statusLine;
    const std::chrono::milliseconds behind(m_heard.stream.behindLiveMs);
    constexpr std::chrono::seconds kShown(1);
    if (behind >= kShown) {
        text = QStringLiteral("%1 · %2").arg(text, tr("%1 behind live").arg(durationText(behind)));
    }
    const QString stream = streamText(m_heard.stream);
    if (m_heard.state == PlayState::Playing && !stream.isEmpty()) {
        text = QStringLiteral("%1 · %2").arg(text, stream);
    }
    m_status->setFullText(text);
}

void PlayerBar::showElapsed(std::chrono::milliseconds elapsed) {
    m_elapsed->setText(elapsed.count() > 0 ? durationText(elapsed) : QString());
}

void PlayerBar::setPauseButtonShown(bool isShown) {
    m_strip->setPauseButtonShown(isShown);
}

void PlayerBar::showRecording(const Recorded& recorded) {
    const bool isRecording = recorded.isRecording;
    m_strip->setVisible(isRecording);
    if (isRecording) {
        m_strip->showProgress(recorded.progress, recorded.isPaused);
    }
    const QString command = isRecording            ? tr("Stop recording")
                            : recorded.isSplitting ? tr("Record with splitting")
                                                   : tr("Record without splitting");
    m_record->setIcon(isRecording ? icon(QStringLiteral("record-stop"), IconTone::OnAccent)
                                  : icon(QStringLiteral("record"), IconTone::Recording));
    m_record->setToolTip(tr("%1 (Ctrl+R)").arg(command));
    m_record->setAccessibleName(command);
    m_record->setEnabled(isRecording || isActive(m_heard.state));
    setFlag(m_record, WavelarkStyle::kRecordingProperty, isRecording);
}

void PlayerBar::showVolume(int percent, bool isMuted) {
    const QSignalBlocker blocker(m_volume);
    m_volume->setValue(percent);
    m_percent->setText(isMuted ? tr("off") : tr("%1 %").arg(percent));
    const QString command = isMuted ? tr("Unmute") : tr("Mute");
    m_mute->setIcon(icon(isMuted ? QStringLiteral("muted") : QStringLiteral("volume")));
    m_mute->setToolTip(tr("%1 (Ctrl+M)").arg(command));
    m_mute->setAccessibleName(command);
    m_volume->setAccessibleDescription(isMuted ? tr("Muted") : QString());
}

void PlayerBar::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    const bool isNarrow = width() < kNarrow;
    m_volume->setMinimumWidth(isNarrow ? 70 : 110);
    m_row->setDirection(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void PlayerBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.fillRect(0, 0, width(), 1, accentsFor(palette()).line);
}
