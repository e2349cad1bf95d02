#include "ui/state_text.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace {

struct StateText {
    Q_DECLARE_TR_FUNCTIONS(StateText)
};

} // namespace

QString stateText(PlayState state) {
    switch (state) {
    case PlayState::Stopped:
        return StateText::tr("Stopped");
    case PlayState::Connecting:
        return StateText::tr("Connecting…");
    case PlayState::Playing:
        return StateText::tr("Playing");
    case PlayState::Stalled:
        return StateText::tr("Waiting for data…");
    case PlayState::Reconnecting:
        return StateText::tr("Connection lost. Reconnecting…");
    case PlayState::Paused:
        return StateText::tr("Paused");
    }
    return {};
}

QString streamText(const StreamInfo& info) {
    QStringList parts;
    if (!info.format.isEmpty()) {
        parts.append(info.format);
    }
    if (info.bitrate > 0) {
        parts.append(StateText::tr("%1 kbit/s").arg(info.bitrate));
    }
    if (info.channels == 1) {
        parts.append(StateText::tr("Mono"));
    } else if (info.channels == 2) {
        parts.append(StateText::tr("Stereo"));
    }
    if (info.sampleRate > 0) {
        parts.append(
            StateText::tr("%1 kHz").arg(QLocale().toString(info.sampleRate / 1000.0, 'g', 4)));
    }
    return parts.join(QStringLiteral(" · "));
}

QString durationText(std::chrono::milliseconds duration) {
    const qint64 seconds = std::chrono::duration_cast<std::chrono::seconds>(duration).count();
    const QLatin1Char zero('0');
    if (seconds >= 3600) {
        return QStringLiteral("%1:%2:%3")
            .arg(seconds / 3600)
            .arg(seconds / 60 % 60, 2, 10, zero)
            .arg(seconds % 60, 2, 10, zero);
    }
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, zero);
}

QString sizeText(qint64 bytes) {
    return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}

QString remainingText(std::chrono::seconds remaining) {
    constexpr qint64 kDay = 24 * 3600;
    constexpr qint64 kMostDays = 9999;
    if (remaining.count() >= 2 * kDay) {
        const qint64 days = std::min<qint64>(remaining.count() / kDay, kMostDays);
        return StateText::tr("room for %1 days").arg(days); // two at least
    }
    return StateText::tr("room for %1").arg(durationText(remaining));
}

QString recordingText(const BASS::RecordingProgress& progress) {
    // Without a translation file the source text is shown as it is, so one and many are two.
    const QString tracks = progress.files == 1
                               ? StateText::tr("1 track")
                               : StateText::tr("%n tracks", nullptr, progress.files);
    QStringList parts{durationText(progress.fileDuration), sizeText(progress.fileBytes), tracks};
    if (progress.remaining.count() >= 0) {
        parts << remainingText(progress.remaining);
    }
    return parts.join(QStringLiteral(" · "));
}

QString recordingErrorText(const BASS::RecordingError& error) {
    if (error.detail.isEmpty()) {
        return error.message;
    }
    return QStringLiteral("%1 (%2)").arg(error.message, error.detail);
}

bool isActive(PlayState state) {
    return state != PlayState::Stopped;
}
