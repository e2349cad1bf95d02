#include "e2e/hostile_bytes.h"

#include "support/media_tools.h"

#include <algorithm>
#include <map>

namespace {

QByteArray
encoded(int number, int sampleRate, int channels, const QStringList& codec, const char* container) {
    static std::map<QString, QByteArray> cache;
    const QString key = QStringLiteral("%1 %2 %3 %4")
                            .arg(number)
                            .arg(sampleRate)
                            .arg(channels)
                            .arg(QLatin1String(container));
    QByteArray& result = cache[key];
    if (result.isEmpty())
        result = media::encodeTone(
            {300 * number,
             kToneSeconds,
             QStringList{QStringLiteral("-ac"), QString::number(channels)} + codec,
             QString::fromLatin1(container),
             {},
             sampleRate});
    return result;
}

} // namespace

QByteArray head(const QList<QByteArray>& lines) {
    return "HTTP/1.1 200 OK\r\n" + lines.join("\r\n") + (lines.isEmpty() ? "\r\n" : "\r\n\r\n");
}

QByteArray mp3Head(const QList<QByteArray>& more) {
    return head(QList<QByteArray>{"Content-Type: audio/mpeg"} + more);
}

QByteArray mp3(int number, int sampleRate, int channels) {
    static const QStringList codec{QStringLiteral("-c:a"),
                                   QStringLiteral("libmp3lame"),
                                   QStringLiteral("-b:a"),
                                   QStringLiteral("64k")};
    return encoded(number, sampleRate, channels, codec, "mp3");
}

QByteArray adts(int number, int sampleRate, int channels) {
    static const QStringList codec{QStringLiteral("-c:a"),
                                   QStringLiteral("aac"),
                                   QStringLiteral("-b:a"),
                                   QStringLiteral("64k")};
    return encoded(number, sampleRate, channels, codec, "adts");
}

QByteArray withBlocks(const QByteArray& audio, int metaint, const QList<QByteArray>& blocks) {
    QByteArray result;
    int number = 0;
    for (int at = 0; at < audio.size(); at += metaint) {
        const QByteArray part = audio.mid(at, metaint);
        result += part;
        if (part.size() < metaint)
            break;
        const QByteArray text = blocks.value(number++);
        const int units = std::min(255, (text.size() + 15) / 16);
        result += static_cast<char>(units);
        result += text.left(units * 16).leftJustified(units * 16, '\0');
    }
    return result;
}

QByteArray titled(const QByteArray& title) {
    return "StreamTitle='" + title + "';";
}

QByteArray noise(int count) {
    QByteArray result;
    result.reserve(count);
    quint32 state = 1;
    for (int n = 0; n < count; ++n) {
        state = state * 1664525U + 1013904223U;
        result += static_cast<char>(state >> 24);
    }
    return result;
}

QByteArray chunked(const QByteArray& body, int size) {
    QByteArray result;
    for (int at = 0; at < body.size(); at += size) {
        const QByteArray part = body.mid(at, size);
        result += QByteArray::number(part.size(), 16) + "\r\n" + part + "\r\n";
    }
    return result;
}
