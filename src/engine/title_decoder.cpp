#include "engine/title_decoder.h"

#include "base/log.h"
#include "engine/metadata_fields.h"

#include <QTextCodec>

#include <array>
#include <cstring>

namespace BASS {
namespace {

struct CodePageRow {
    const char* countries; ///< separated by ';'
    const char* codePage;
};

// The Arabic row deliberately holds the Greek page, as it always has.
constexpr std::array kCodePages{
    CodePageRow{"Bulgaria;Russia;Belarus;Serbia;Macedonia;Ukraine", "Windows-1251"},
    CodePageRow{"Albania;Croatia;Czech;Hungary;Poland;Romania;Slovakia;Slovenia", "Windows-1250"},
    CodePageRow{"Greece", "Windows-1253"},
    CodePageRow{"Arabia;Libya;Egypt;Iran;Iraq;Jordan", "Windows-1253"},
    CodePageRow{"Turkey", "Windows-1254"},
    CodePageRow{"Vietnam", "Windows-1258"},
    CodePageRow{"Thailand", ""},
    CodePageRow{"Estonia;Latvia;Lithuania", "Windows-1257"},
    CodePageRow{"Japan", "Shift-JIS"},
    CodePageRow{"Korea", "EUC-KR"},
    CodePageRow{"China;Hong Kong;Taiwan", "big5"},
};

/// How many continuation bytes follow this lead byte; -1: no lead byte.
int continuationBytes(unsigned char lead) {
    if (lead < 0x80)
        return 0;
    if ((lead & 0xE0) == 0xC0)
        return 1;
    if ((lead & 0xF0) == 0xE0)
        return 2;
    return (lead & 0xF8) == 0xF0 ? 3 : -1;
}

QTextCodec* codecFor(const QByteArray& codePage) {
    QTextCodec* codec = codePage.isEmpty() ? nullptr : QTextCodec::codecForName(codePage);
    if (codec == nullptr)
        codec = QTextCodec::codecForLocale();
    constexpr int kMibUtf8 = 106;
    constexpr int kMibAscii = 3;
    if (codec == nullptr || codec->mibEnum() == kMibUtf8 || codec->mibEnum() == kMibAscii)
        codec = QTextCodec::codecForName("Windows-1252");
    return codec;
}

void skipOne(const QString& text, int& at, QChar character) {
    if (at < text.length() && text.at(at) == character)
        ++at;
}

QString takeTitle(const QString& text) {
    const QString key = QStringLiteral("StreamTitle=");
    int at = text.indexOf(key);
    if (at < 0)
        return {};
    at += key.length();
    skipOne(text, at, QLatin1Char('\''));
    const int end = text.indexOf(QLatin1Char(';'), at);
    QString title = end < 0 ? text.mid(at) : text.mid(at, end - at);
    // the closing quote; dropped also where there was none, deliberately
    title.chop(1);
    return title;
}

QString takeUrl(const QString& text) {
    const QString key = QStringLiteral("StreamURL=");
    int at = text.indexOf(key, 0, Qt::CaseInsensitive);
    if (at < 0)
        return {};
    at += key.length();
    skipOne(text, at, QLatin1Char('\''));
    const int end = text.indexOf(QStringLiteral("';"), at);
    return end < 0 ? QString() : text.mid(at, end - at);
}

} // namespace

QByteArray codePageForCountry(const QString& country) {
    if (country.isEmpty())
        return {};
    for (const CodePageRow& row : kCodePages) {
        const QStringList names = QString::fromLatin1(row.countries).split(QLatin1Char(';'));
        for (const QString& name : names) {
            if (country.contains(name))
                return row.codePage;
        }
    }
    return {};
}

bool isUtf8(const QByteArray& bytes) {
    const auto at = [&bytes](int i) { return static_cast<unsigned char>(bytes.at(i)); };
    for (int i = 0; i < bytes.size(); ++i) {
        const unsigned char lead = at(i);
        const int follow = continuationBytes(lead);
        if (follow < 0 || i + follow >= bytes.size())
            return false;
        if (lead == 0xED && (at(i + 1) & 0xA0) == 0xA0)
            return false; // an encoded surrogate
        for (int n = 1; n <= follow; ++n) {
            if ((at(i + n) & 0xC0) != 0x80)
                return false;
        }
        i += follow;
    }
    return true;
}

QString decodeText(const QByteArray& bytes, const QByteArray& codePage) {
    if (isUtf8(bytes))
        return QString::fromUtf8(bytes);
    return codecFor(codePage)->toUnicode(bytes);
}

QString resolveCharacterReferences(const QString& text) {
    if (!text.contains(QLatin1String("&#")))
        return text;
    qCDebug(lcEngine, "Metadata found html characters before %s", qPrintable(text));
    constexpr int kMostReplacements = 20;
    QString result = text;
    int from = 0;
    for (int n = 0; n < kMostReplacements; ++n) {
        const int at = result.indexOf(QLatin1String("&#"), from);
        const int end = at < 0 ? -1 : result.indexOf(QLatin1Char(';'), at);
        if (end < 0)
            break;
        bool isNumber = false;
        const ushort code = result.mid(at + 2, end - at - 2).toUShort(&isNumber, 10);
        if (isNumber && code != 0)
            result.replace(at, end - at + 1, QChar(code));
        from = at + 1;
    }
    qCDebug(lcEngine, "Metadata found html characters after %s", qPrintable(result));
    return result;
}

std::optional<Song> decodeIcyBlock(const QByteArray& block, const QByteArray& codePage) {
    if (block.isNull())
        return std::nullopt;
    // the block is padded with zeros and its text ends at the first one
    const QByteArray bytes(
        block.constData(),
        static_cast<int>(qstrnlen(block.constData(), static_cast<uint>(block.size()))));
    const QString text = resolveCharacterReferences(decodeText(bytes, codePage));
    const bool hasTitle = text.contains(QLatin1String("StreamTitle="));
    const QString title = takeTitle(text).trimmed();
    Song song = songFromFields(hasTitle ? title : text).value_or(songFromTrack(title));
    song.url = takeUrl(text);
    song.metadata = text;
    return song;
}

std::optional<Song> decodeCommentList(const char* list) {
    if (list == nullptr)
        return std::nullopt;
    QString artist;
    QString title;
    QString comment;
    for (const char* entry = list; *entry != '\0'; entry += std::strlen(entry) + 1) {
        const QString text = decodeText(QByteArray(entry), {});
        const int equals = text.indexOf(QLatin1Char('='));
        const QString name = text.left(equals).toUpper();
        const QString value = equals < 0 ? QString() : text.mid(equals + 1).trimmed();
        if (name == QLatin1String("ARTIST") && artist.isEmpty())
            artist = value;
        else if (name == QLatin1String("TITLE") && title.isEmpty())
            title = value;
        else if (name == QLatin1String("DESCRIPTION") && comment.isEmpty())
            comment = value;
    }
    Song song = artist.isEmpty() ? songFromTrack(title) : Song{};
    if (!artist.isEmpty()) {
        song.artist = artist;
        song.title = title;
        song.track = title.isEmpty() ? artist : QStringLiteral("%1 - %2").arg(artist, title);
    }
    song.comment = comment;
    return song;
}

} // namespace BASS
