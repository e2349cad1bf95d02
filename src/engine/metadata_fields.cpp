#include "engine/metadata_fields.h"

#include "engine/title_decoder.h"

#include <QUrl>

#include <array>

namespace BASS {
namespace {

/// Longer texts are no titles.
constexpr int kMostCharacters = 16384;

bool isWordCharacter(QChar c) {
    return c.isLetterOrNumber() || c == QLatin1Char('_');
}

void skipBlanks(const QString& text, int& at) {
    while (at < text.size() && text.at(at).isSpace())
        ++at;
}

/// True where a field begins behind the comma at `at`: a word and its sign.
bool isFieldBehind(const QString& text, int at) {
    skipBlanks(text, ++at);
    const int from = at;
    while (at < text.size() && isWordCharacter(text.at(at)))
        ++at;
    const bool hasName = at > from;
    skipBlanks(text, at);
    return hasName && at < text.size() && text.at(at) == QLatin1Char('=');
}

QString resolvedXml(QString value) {
    const auto cdata = QStringLiteral("<![CDATA[");
    if (value.startsWith(cdata)) {
        value.remove(0, cdata.size());
        const int end = value.indexOf(QLatin1String("]]>"));
        return value.left(end < 0 ? value.size() : end);
    }
    return value.replace(QLatin1String("&lt;"), QLatin1String("<"))
        .replace(QLatin1String("&gt;"), QLatin1String(">"))
        .replace(QLatin1String("&quot;"), QLatin1String("\""))
        .replace(QLatin1String("&apos;"), QLatin1String("'"))
        .replace(QLatin1String("&amp;"), QLatin1String("&"));
}

/// Between quotes; a backslash keeps the next one.
QString quotedValue(const QString& text, int at, QChar quote) {
    QString value;
    for (; at < text.size() && text.at(at) != quote; ++at) {
        const bool isKept =
            text.at(at) == QLatin1Char('\\') && at + 1 < text.size() && text.at(at + 1) == quote;
        if (isKept)
            ++at;
        value += text.at(at);
    }
    return value;
}

QString plainValue(const QString& text, int at) {
    const QString ends = QStringLiteral("&;|\r\n<");
    const int from = at;
    while (at < text.size() && !ends.contains(text.at(at)) &&
           !(text.at(at) == QLatin1Char(',') && isFieldBehind(text, at)))
        ++at;
    const QString value = text.mid(from, at - from);
    return value.contains(QLatin1Char('%')) ? QUrl::fromPercentEncoding(value.toUtf8()) : value;
}

/// The place behind the sign of a field of this name; -1: there is none.
int behindSign(const QString& text, const QString& name, int from) {
    for (int at = from; (at = text.indexOf(name, at, Qt::CaseInsensitive)) >= 0;
         at += name.size()) {
        if (at > 0 && isWordCharacter(text.at(at - 1)))
            continue;
        int sign = at + name.size();
        const bool isQuoted = at > 0 && text.at(at - 1) == QLatin1Char('"') && sign < text.size() &&
                              text.at(sign) == QLatin1Char('"');
        if (isQuoted)
            ++sign;
        skipBlanks(text, sign);
        if (sign >= text.size())
            return -1;
        // a colon is everyday punctuation
        const bool isColon = text.at(sign) == QLatin1Char(':') &&
                             (isQuoted || (at == 0 && name == QLatin1String("text")));
        if (text.at(sign) == QLatin1Char('=') || isColon)
            return sign + 1;
    }
    return -1;
}

QString elementValue(const QString& text, const QString& name) {
    const int at = text.indexOf(QLatin1Char('<') + name + QLatin1Char('>'), 0, Qt::CaseInsensitive);
    const int from = at + name.size() + 2;
    const int end =
        at < 0 ? -1 : text.indexOf(QStringLiteral("</") + name, from, Qt::CaseInsensitive);
    return end < 0 ? QString() : resolvedXml(text.mid(from, end - from)).trimmed();
}

QString fieldValue(const QString& text, const char* fieldName) {
    const QString name = QString::fromLatin1(fieldName);
    int at = behindSign(text, name, 0);
    if (at < 0)
        return elementValue(text, name);
    skipBlanks(text, at);
    if (at >= text.size())
        return {};
    const QChar first = text.at(at);
    const bool isQuoted = first == QLatin1Char('"') || first == QLatin1Char('\'');
    return (isQuoted ? quotedValue(text, at + 1, first) : plainValue(text, at)).trimmed();
}

template <std::size_t Count>
QString firstValue(const QString& text, const std::array<const char*, Count>& names) {
    for (const char* const name : names) {
        const QString value = fieldValue(text, name);
        if (!value.isEmpty())
            return value;
    }
    return {};
}

std::optional<Song> namedSong(const QString& text) {
    constexpr std::array kArtist{"currentArtist", "artist"};
    constexpr std::array kTitle{"currentSong", "title"};
    constexpr std::array kTrack{"CAPTION", "text"};
    const QString artist = firstValue(text, kArtist);
    const QString title = firstValue(text, kTitle);
    if (!artist.isEmpty() || !title.isEmpty()) {
        if (artist.isEmpty() || title.isEmpty())
            return songFromTrack(artist + title);
        Song song;
        song.artist = artist;
        song.title = title;
        song.track = QStringLiteral("%1 - %2").arg(artist, title);
        return song;
    }
    const QString track = firstValue(text, kTrack);
    return track.isEmpty() ? std::nullopt : std::optional(songFromTrack(track));
}

} // namespace

std::optional<Song> songFromFields(const QString& given) {
    const QString text = given.left(kMostCharacters);
    constexpr std::array kWrappers{"data", "TUNER", "XML"};
    for (const char* const wrapper : kWrappers) {
        const int at = behindSign(text, QString::fromLatin1(wrapper), 0);
        if (at < 0)
            continue;
        QString inner = text.mid(at);
        if (!inner.contains(QLatin1Char('=')) && inner.contains(QLatin1Char('%')))
            inner = QUrl::fromPercentEncoding(inner.toUtf8());
        if (const auto song = namedSong(inner))
            return song;
    }
    return namedSong(text);
}

std::optional<Song> songFromSegmentInfo(const QByteArray& info) {
    const int comma = info.indexOf(',');
    if (comma < 0)
        return std::nullopt;
    const QString text = resolveCharacterReferences(decodeText(info.mid(comma + 1), {})).trimmed();
    if (auto song = songFromFields(text))
        return song;
    Song song = songFromTrack(text);
    return song.artist.isEmpty() ? std::nullopt : std::optional(song);
}

} // namespace BASS
