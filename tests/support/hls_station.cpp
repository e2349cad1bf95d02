#include "support/hls_station.h"

#include "audio/frame_header.h"
#include "support/tool_run.h"

#include <QDir>
#include <QElapsedTimer>
#include <QMutex>
#include <QTemporaryDir>

#include <algorithm>

struct HlsStation::State {
    HlsScript script;
    QElapsedTimer clock;
    mutable QMutex mutex; ///< guards the paths
    QList<QByteArray> paths;
    QByteArray whole; ///< all pieces end to end

    [[nodiscard]] int newest() const {
        const int count = script.pieces.size();
        if (!script.isLive)
            return count - 1;
        const double seconds = static_cast<double>(clock.elapsed()) / 1000.0 * script.speed;
        const int number = script.window - 1 + static_cast<int>(seconds / script.pieces[0].seconds);
        return script.freezesAt < 0 ? number : std::min(number, script.freezesAt - 1);
    }
    [[nodiscard]] const HlsPiece& piece(int number) const {
        return script.pieces[number % script.pieces.size()];
    }
    [[nodiscard]] qint64 offset(int number) const {
        qint64 result = 0;
        for (int n = 0; n < number; ++n)
            result += script.pieces[n].bytes.size();
        return result;
    }

    [[nodiscard]] QByteArray playlist() const;
    [[nodiscard]] QByteArray answer(const QByteArray& request);
    [[nodiscard]] QByteArray encrypted(int number) const;
};

namespace {

QByteArray
page(const QByteArray& body, const QByteArray& request, const QByteArray& type, bool knowsRanges) {
    const int at = knowsRanges ? request.indexOf("Range: bytes=") : -1;
    QByteArray part = body;
    if (at >= 0) {
        const QByteArray range = request.mid(at + 13, request.indexOf('\r', at) - at - 13);
        const int from = range.left(range.indexOf('-')).toInt();
        const QByteArray to = range.mid(range.indexOf('-') + 1);
        part = body.mid(from, to.isEmpty() ? -1 : to.toInt() - from + 1);
    }
    return QByteArray(at >= 0 ? "HTTP/1.1 206 Partial Content" : "HTTP/1.1 200 OK") +
           "\r\nContent-Type: " + type + "\r\nContent-Length: " + QByteArray::number(part.size()) +
           "\r\n\r\n" + part;
}

QByteArray hexNumber(int number) {
    return QByteArray::number(number, 16).rightJustified(32, '0');
}

} // namespace

QByteArray HlsStation::State::playlist() const {
    const int last = newest();
    const int first = script.isLive ? std::max(0, last + 1 - script.window) : 0;
    QByteArray text = "#EXTM3U\r\n#EXT-X-VERSION:6\r\n#EXT-X-TARGETDURATION:" +
                      QByteArray::number(script.target) +
                      "\r\n#EXT-X-MEDIA-SEQUENCE:" + QByteArray::number(first) + "\r\n";
    if (!script.key.isEmpty())
        text += "#EXT-X-KEY:METHOD=AES-128,URI=\"key\"\r\n";
    QByteArray map;
    for (int n = first; n <= last; ++n) {
        const HlsPiece& next = piece(n);
        const int index = n % script.pieces.size();
        if (next.breaksOff || (index == 0 && n > 0))
            text += "#EXT-X-DISCONTINUITY\r\n";
        if (next.map != map && !next.map.isEmpty())
            text += "#EXT-X-MAP:URI=\"map/" + QByteArray::number(index) + "\"\r\n";
        map = next.map;
        text += "#EXTINF:" + QByteArray::number(next.seconds) + "," + next.info + "\r\n";
        if (script.isRanged)
            text += "#EXT-X-BYTERANGE:" + QByteArray::number(next.bytes.size()) + "@" +
                    QByteArray::number(offset(index)) + "\r\nwhole\r\n";
        else
            text += "segment/" + QByteArray::number(n) + "?a b\r\n";
    }
    return script.isLive ? text : text + "#EXT-X-ENDLIST\r\n";
}

QByteArray HlsStation::State::encrypted(int number) const {
    return runTool(QStringLiteral("openssl"),
                   {QStringLiteral("enc"),
                    QStringLiteral("-aes-128-cbc"),
                    QStringLiteral("-K"),
                    QString::fromLatin1(script.key.toHex()),
                    QStringLiteral("-iv"),
                    QString::fromLatin1(hexNumber(number))},
                   piece(number).bytes)
        .out;
}

QByteArray HlsStation::State::answer(const QByteArray& request) {
    const QByteArray path = request.mid(4, request.indexOf(" HTTP/") - 4);
    {
        const QMutexLocker lock(&mutex);
        paths.append(path);
    }
    const QByteArray name = path.left(path.indexOf('?'));
    const int number = name.mid(name.lastIndexOf('/') + 1).toInt();
    if (path == "/live.m3u8")
        return page(playlist(), request, "application/vnd.apple.mpegurl", false);
    if (path == "/master.m3u8")
        return page("#EXTM3U\n#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"a\",NAME=\"x\",DEFAULT=YES,"
                    "URI=\"live.m3u8\"\n#EXT-X-STREAM-INF:BANDWIDTH=900000,RESOLUTION=1x1,AUDIO="
                    "\"a\"\nvideo.m3u8\n",
                    request,
                    "application/vnd.apple.mpegurl",
                    false);
    if (path == "/key")
        return page(script.key, request, "application/octet-stream", false);
    if (path == "/whole")
        return page(whole, request, "video/mp2t", script.knowsRanges);
    if (path.startsWith("/map/"))
        return page(piece(number).map, request, "video/mp4", script.knowsRanges);
    if (path.startsWith("/segment/") && !script.missing.contains(number))
        return page(script.key.isEmpty() ? piece(number).bytes : encrypted(number),
                    request,
                    "video/mp2t",
                    script.knowsRanges);
    return "HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\n\r\nnope";
}

HlsStation::HlsStation(const HlsScript& script) : m_state(std::make_shared<State>()) {
    m_state->script = script;
    m_state->clock.start();
    for (const HlsPiece& piece : script.pieces)
        m_state->whole += piece.bytes;
    StationScript pages;
    pages.page = [state = m_state](const QByteArray& request) { return state->answer(request); };
    m_station.setScript(pages);
    m_station.listen();
}

QString HlsStation::url(const QString& path) const {
    return m_station.url(path);
}

QList<QByteArray> HlsStation::paths() const {
    const QMutexLocker lock(&m_state->mutex);
    return m_state->paths;
}

QVector<HlsPiece> hlsPieces(const QStringList& codec, const QString& type, double seconds) {
    const QTemporaryDir folder;
    const QDir dir(folder.path());
    const bool isFragmented = type == QLatin1String("fmp4");
    QStringList arguments{
        QStringLiteral("-v"),
        QStringLiteral("error"),
        QStringLiteral("-f"),
        QStringLiteral("lavfi"),
        QStringLiteral("-i"),
        QStringLiteral("sine=frequency=440:duration=%1:sample_rate=44100,volume=4").arg(seconds),
        QStringLiteral("-ac"),
        QStringLiteral("2")};
    arguments += codec;
    arguments += {QStringLiteral("-f"),
                  QStringLiteral("hls"),
                  QStringLiteral("-hls_time"),
                  QStringLiteral("2"),
                  QStringLiteral("-hls_list_size"),
                  QStringLiteral("0"),
                  QStringLiteral("-hls_segment_type"),
                  type,
                  QStringLiteral("-hls_fmp4_init_filename"),
                  QStringLiteral("map"),
                  QStringLiteral("-hls_segment_filename"),
                  dir.filePath(QStringLiteral("s%03d.") +
                               (isFragmented ? QStringLiteral("m4s") : QStringLiteral("ts"))),
                  dir.filePath(QStringLiteral("list.m3u8"))};
    runTool(QStringLiteral("ffmpeg"), arguments);
    const auto read = [&dir](const QString& name) {
        QFile file(dir.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QVector<HlsPiece> pieces;
    const QList<QByteArray> lines = read(QStringLiteral("list.m3u8")).split('\n');
    for (int n = 0; n + 1 < lines.size(); ++n) {
        if (!lines[n].startsWith("#EXTINF:"))
            continue;
        HlsPiece piece;
        piece.bytes = read(QString::fromLatin1(lines[n + 1]));
        piece.seconds = lines[n].mid(8, lines[n].indexOf(',') - 8).toDouble();
        if (isFragmented)
            piece.map = read(QStringLiteral("map"));
        pieces.append(piece);
    }
    return pieces;
}

QByteArray id3Tag(const QByteArray& artist, const QByteArray& title) {
    const auto size = [](int bytes) {
        return QByteArray(1, static_cast<char>(bytes >> 21 & 127)) +
               static_cast<char>(bytes >> 14 & 127) + static_cast<char>(bytes >> 7 & 127) +
               static_cast<char>(bytes & 127);
    };
    const auto frame = [&size](const QByteArray& id, const QByteArray& body) {
        return id + size(body.size()) + QByteArray(2, '\0') + body;
    };
    const QByteArray text = QByteArray(1, '\3');
    const QByteArray frames =
        frame("PRIV", "com.apple.streaming.transportStreamTimestamp" + QByteArray(9, '\0')) +
        frame("TPE1", text + artist) + frame("TIT2", text + title);
    return QByteArray("ID3\4\0\0", 6) + size(frames.size()) + frames;
}

QVector<HlsPiece> packedPieces(const QByteArray& audio, const QList<QByteArray>& titles) {
    const auto* const data = reinterpret_cast<const std::uint8_t*>(audio.constData());
    const auto end = static_cast<std::size_t>(audio.size());
    std::size_t at = 0;
    QVector<HlsPiece> pieces;
    for (const QByteArray& title : titles) {
        HlsPiece piece;
        piece.bytes = id3Tag("Artist", title);
        constexpr double kSeconds = 2.0;
        while (at < end && piece.seconds < kSeconds) {
            const auto adts = BASS::parseAdtsFrame(data + at, end - at);
            const auto mpeg = BASS::parseMpegFrame(data + at, end - at);
            if (!adts && !mpeg)
                break;
            const std::size_t bytes = adts ? adts->bytes : mpeg->bytes;
            piece.bytes += audio.mid(static_cast<int>(at), static_cast<int>(bytes));
            piece.seconds += adts ? 1.0 * adts->samples / adts->sampleRate
                                  : 1.0 * mpeg->samples / mpeg->sampleRate;
            at += bytes;
        }
        pieces.append(piece);
    }
    return pieces;
}
