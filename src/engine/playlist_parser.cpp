#include "engine/playlist_parser.h"

#include "engine/title_decoder.h"

#include <QCoreApplication>
#include <QMap>
#include <QRegularExpression>
#include <QUrl>

namespace BASS {
namespace {

constexpr int kMostBytes = 1024 * 1024;
constexpr int kMostEntries = 1000;
/// No server takes a longer one.
constexpr int kLongestAddress = 8192;

QString unescaped(QString text) {
    text.replace(QLatin1String("&lt;"), QLatin1String("<"));
    text.replace(QLatin1String("&gt;"), QLatin1String(">"));
    text.replace(QLatin1String("&quot;"), QLatin1String("\""));
    text.replace(QLatin1String("&apos;"), QLatin1String("'"));
    return text.replace(QLatin1String("&amp;"), QLatin1String("&"));
}

PlaylistKind kindOf(const QString& text) {
    const QString head = text.left(4096).trimmed();
    const auto has = [&head](const char* mark) {
        return head.contains(QLatin1String(mark), Qt::CaseInsensitive);
    };
    if (head.startsWith(QLatin1String("#EXTM3U"), Qt::CaseInsensitive))
        return has("#EXT-X-") ? PlaylistKind::Hls : PlaylistKind::M3u;
    if (head.startsWith(QLatin1String("[playlist]"), Qt::CaseInsensitive))
        return PlaylistKind::Pls;
    if (has("<asx"))
        return PlaylistKind::Asx;
    if (has("xspf.org/ns") || has("<trackList"))
        return PlaylistKind::Xspf;
    if (has("<html") || has("<head>") || has("<title>302 Found</title>"))
        return PlaylistKind::Html;
    return PlaylistKind::Plain;
}

/// Relative entries are resolved; what is then no address with "://" is left out.
void add(QStringList& addresses, const QString& entry, const QUrl& base) {
    QString text = unescaped(entry.trimmed());
    if (text.isEmpty() || text.size() > kLongestAddress || addresses.size() >= kMostEntries)
        return;
    if (!text.contains(QLatin1String("://")) && base.isValid() && !base.isRelative())
        text = base.resolved(QUrl(text)).toString();
    if (text.contains(QLatin1String("://")) && !addresses.contains(text))
        addresses.append(text);
}

QStringList matches(const QString& text, const QString& pattern, const QUrl& base) {
    const QRegularExpression expression(pattern,
                                        QRegularExpression::CaseInsensitiveOption |
                                            QRegularExpression::DotMatchesEverythingOption);
    QStringList addresses;
    auto it = expression.globalMatch(text);
    while (it.hasNext() && addresses.size() < kMostEntries)
        add(addresses, it.next().captured(1), base);
    return addresses;
}

/// "File1=" to "FileN=", by number.
QStringList readPls(const QString& text, const QUrl& base) {
    static const QRegularExpression line(
        QStringLiteral("^\\s*File(\\d+)[ \\t]*=[ \\t]*(\\S.*?)\\s*$"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::MultilineOption);
    QMap<int, QString> entries;
    auto it = line.globalMatch(text);
    while (it.hasNext() && entries.size() < kMostEntries) {
        const auto match = it.next();
        entries.insert(match.captured(1).toInt(), match.captured(2));
    }
    QStringList addresses;
    for (const QString& entry : qAsConst(entries))
        add(addresses, entry, base);
    return addresses;
}

/// One address a line; only extended lists may hold relative ones, for any other text has lines
/// too.
QStringList readLines(const QString& text, const QUrl& base) {
    QStringList addresses;
    const auto lines =
        text.splitRef(QRegularExpression(QStringLiteral("[\r\n]+")), Qt::SkipEmptyParts);
    for (const auto& line : lines) {
        const QString entry = line.trimmed().toString();
        if (!entry.startsWith(QLatin1Char('#')))
            add(addresses, entry, base);
        if (addresses.size() >= kMostEntries)
            break;
    }
    return addresses;
}

QStringList addressesOf(PlaylistKind kind, const QString& text, const QUrl& base) {
    switch (kind) {
    case PlaylistKind::Pls:
        return readPls(text, base);
    case PlaylistKind::M3u:
        return readLines(text, base);
    case PlaylistKind::Asx:
        return matches(
            text, QStringLiteral("<(?:ref|entryref)\\b[^>]*?href\\s*=\\s*[\"']([^\"']+)"), base);
    case PlaylistKind::Xspf:
        return matches(text, QStringLiteral("<location>\\s*([^<]+?)\\s*</location>"), base);
    case PlaylistKind::Html:
        return matches(text, QStringLiteral("href\\s*=\\s*[\"']([a-z]+://[^\"']+)"), QUrl());
    case PlaylistKind::Plain:
        return readLines(text, QUrl());
    default:
        return {};
    }
}

QString translated(const char* text) {
    return QCoreApplication::translate("BASS::Stream", text);
}

} // namespace

Playlist parsePlaylist(const QByteArray& bytes, const QString& address) {
    Playlist result;
    if (bytes.trimmed().isEmpty()) {
        result.message = translated(QT_TRANSLATE_NOOP("BASS::Stream", "No data found"));
        return result;
    }
    QString text = decodeText(bytes.left(kMostBytes), {});
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    if (bytes.contains('\0')) {
        result.message = translated(QT_TRANSLATE_NOOP("BASS::Stream", "Nothing found"));
        return result;
    }
    result.kind = kindOf(text);
    result.addresses = addressesOf(result.kind, text, QUrl(address));
    if (result.addresses.isEmpty() && result.kind != PlaylistKind::Hls)
        result.message = translated(QT_TRANSLATE_NOOP("BASS::Stream", "No urls found"));
    return result;
}

} // namespace BASS
