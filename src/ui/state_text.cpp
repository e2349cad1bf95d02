#include "ui/state_text.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

namespace {

QString text(const char* source) {
    return QCoreApplication::translate("StateText", source);
}

} // namespace

QString stateText(PlayState state) {
    switch (state) {
    case PlayState::Stopped:
        return text("Stopped");
    case PlayState::Connecting:
        return text("Connecting…");
    case PlayState::Playing:
        return text("Playing");
    case PlayState::Stalled:
        return text("Waiting for data…");
    case PlayState::Reconnecting:
        return text("Connection lost. Reconnecting…");
    case PlayState::Paused:
        return text("Paused");
    }
    return {};
}

QString streamText(const StreamInfo& info) {
    QStringList parts;
    if (!info.format.isEmpty()) {
        parts.append(info.format);
    }
    if (info.bitrate > 0) {
        parts.append(text("%1 kbit/s").arg(info.bitrate));
    }
    if (info.channels == 1) {
        parts.append(text("Mono"));
    } else if (info.channels == 2) {
        parts.append(text("Stereo"));
    }
    if (info.sampleRate > 0) {
        parts.append(text("%1 kHz").arg(QLocale().toString(info.sampleRate / 1000.0, 'g', 4)));
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

QString recordingText(const BASS::RecordingProgress& progress) {
    // Without a translation file the source text is shown as it is, so one and many are two.
    const QString tracks =
        progress.files == 1
            ? text("1 track")
            : QCoreApplication::translate("StateText", "%n tracks", nullptr, progress.files);
    const QStringList parts{
        durationText(progress.fileDuration), sizeText(progress.fileBytes), tracks};
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
