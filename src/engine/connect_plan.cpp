#include "engine/connect_plan.h"

#include <QCoreApplication>
#include <QUrl>

#include <array>

namespace BASS {

bool isLocalAddress(const QString& address) {
    return !address.contains(QLatin1String("://")) ||
           address.startsWith(QLatin1String("file://")) ||
           address.startsWith(QLatin1String("FILE://"));
}

bool isRecordingDevice(const QString& address) {
    return address == QLatin1String("RecordingDevice");
}

QString localPath(const QString& address) {
    if (!address.startsWith(QLatin1String("file://"), Qt::CaseInsensitive))
        return address;
    const QString path = QUrl(address).toLocalFile();
    constexpr int kSchemeLength = 7;
    return path.isEmpty() ? address.mid(kSchemeLength) : path;
}

QString rewrittenAddress(const QString& address) {
    QString result = address;
    result.replace(QLatin1String("icyx://"), QLatin1String("http://"));
    result.replace(QLatin1String("icy://"), QLatin1String("http://"));
    return result;
}

AddressOptions addressOptions(const QString& address) {
    AddressOptions result{address, false, {}};
    const int mark = address.indexOf(QLatin1Char('#'));
    if (mark < 0)
        return result;
    const QStringList items = address.mid(mark + 1).split(QLatin1Char('&'));
    for (const QString& item : items) {
        const QString name = item.section(QLatin1Char('='), 0, 0);
        const QString value = item.section(QLatin1Char('='), 1);
        if (name == QLatin1String("parse_playlist"))
            result.isPlaylistChecked = value == QLatin1String("true");
        else if (name == QLatin1String("user_agent"))
            result.userAgent = QUrl::fromPercentEncoding(value.toUtf8());
        else
            return result; // a fragment of the address's own
    }
    result.address = address.left(mark);
    return result;
}

bool isDirectoryAddress(const QString& address) {
    return address.contains(QLatin1String("station_rr.php?station_id=")) ||
           address.contains(QLatin1String("radiostations_api.php"));
}

QString directoryAnswer(const QByteArray& answer) {
    QByteArray text = answer;
    text.replace('\r', QByteArray());
    if (!text.startsWith("http://") && !text.startsWith("https://"))
        return {};
    return QString::fromUtf8(text.left(text.indexOf('\n'))).trimmed();
}

StreamKind kindFor(const QString& declaredFormat, const QString& address) {
    const QString format = declaredFormat.toUpper();
    const auto has = [&address](const char* part) { return address.contains(QLatin1String(part)); };
    const auto is = [&format](const char* name) { return format == QLatin1String(name); };
    if (is("M4A") || has(".m4a"))
        return StreamKind::Mp4;
    // a declared OGG holds even where the address speaks of flac
    if (is("FLAC") || (!is("OGG") && has("flac")))
        return StreamKind::Flac;
    if (is("M3U8") || has(".m3u8"))
        return StreamKind::Hls;
    if (is("OPUS") || has(".opus"))
        return StreamKind::Opus;
    if (is("AAC") || has(".aac"))
        return StreamKind::Generic;
    if (is("WMA") || has("mms://") || has(".wma") || has("rtsp://"))
        return StreamKind::Wma;
    return StreamKind::Generic;
}

QVector<StreamKind> fallbacksFor(const QString& address, const QString& httpMessage) {
    if (httpMessage.contains(QLatin1String("404")))
        return {};
    if (address.endsWith(QLatin1String(".mp3")))
        return {StreamKind::Wma};
    return {StreamKind::Mp4, StreamKind::Flac, StreamKind::Wma};
}

QString ordinalWord(int number) {
    static constexpr std::array kWords{
        QT_TRANSLATE_NOOP("BASS::Stream", "first"),
        QT_TRANSLATE_NOOP("BASS::Stream", "second"),
        QT_TRANSLATE_NOOP("BASS::Stream", "third"),
        QT_TRANSLATE_NOOP("BASS::Stream", "fourth"),
        QT_TRANSLATE_NOOP("BASS::Stream", "fifth"),
        QT_TRANSLATE_NOOP("BASS::Stream", "sixth"),
        QT_TRANSLATE_NOOP("BASS::Stream", "seventh"),
        QT_TRANSLATE_NOOP("BASS::Stream", "eighth"),
        QT_TRANSLATE_NOOP("BASS::Stream", "ninth"),
        QT_TRANSLATE_NOOP("BASS::Stream", "tenth"),
    };
    if (number < 1 || number > static_cast<int>(kWords.size()))
        return QString::number(number);
    return QCoreApplication::translate("BASS::Stream",
                                       kWords[static_cast<std::size_t>(number - 1)]);
}

QString withoutCredentials(const QString& address) {
    QUrl url(address);
    if (url.userInfo().isEmpty())
        return address;
    url.setUserInfo(QString());
    return url.toString();
}

} // namespace BASS
