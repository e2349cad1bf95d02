#include "recording/file_pattern.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <utility>

namespace BASS {
namespace {

constexpr int kMaxComponentBytes = 255; ///< of UTF-8, on the common file systems
constexpr int kStampBytes = 64;         ///< room for "_" and a date in text form
constexpr int kExtensionBytes = 8;

bool isInvalid(QChar c) {
    static const QString invalid = QStringLiteral("\n\r\t<>:\"/\\|?*\u201C\u201D");
    return invalid.contains(c);
}

/// Characters that no name needs and that hide what a name is: controls, marks of writing
/// direction, invisible joiners of lines.
bool isHidden(QChar c) {
    const ushort code = c.unicode();
    return code < 0x20 || (code >= 0x7F && code <= 0x9F) || code == 0x061C || code == 0x200B ||
           code == 0x200E || code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2060 && code <= 0x206F) || code == 0xFEFF || code >= 0xFFFE;
}

void replaceValue(QString& text, const char* name, const QString& value) {
    const QString placeholder = QLatin1Char('%') + QLatin1String(name) + QLatin1Char('%');
    if (value.isEmpty()) {
        text.remove(placeholder + QLatin1Char(' '));
        text.remove(placeholder);
        return;
    }
    text.replace(placeholder, value.trimmed());
}

QString dateText(const FileNameContext& context) {
    return context.now.toString(context.dateFormat.isEmpty() ? QStringLiteral("dd.MMM.yyyy")
                                                             : context.dateFormat);
}

QString timeText(const FileNameContext& context) {
    return context.now.toString(context.timeFormat.isEmpty() ? QStringLiteral("h.mm.ss AP")
                                                             : context.timeFormat);
}

/// Lone halves of a character that takes two are not storable.
QString withoutLoneSurrogates(const QString& text, const QString& replacement) {
    QString result;
    result.reserve(text.size());
    for (int n = 0; n < text.size(); ++n) {
        const QChar c = text[n];
        if (!c.isSurrogate()) {
            result += c;
        } else if (c.isHighSurrogate() && n + 1 < text.size() && text[n + 1].isLowSurrogate()) {
            result += c;
            result += text[++n];
        } else {
            result += replacement;
        }
    }
    return result;
}

bool isReserved(const QString& name) {
    static const QStringList reserved{QStringLiteral("CON"),
                                      QStringLiteral("PRN"),
                                      QStringLiteral("AUX"),
                                      QStringLiteral("NUL"),
                                      QStringLiteral("CONIN$"),
                                      QStringLiteral("CONOUT$")};
    const QString base = name.section(QLatin1Char('.'), 0, 0).trimmed().toUpper();
    if (reserved.contains(base))
        return true;
    const bool isPort =
        base.startsWith(QLatin1String("COM")) || base.startsWith(QLatin1String("LPT"));
    return isPort && base.size() == 4 &&
           QStringLiteral("0123456789\u00B9\u00B2\u00B3").contains(base[3]);
}

QString trimmedEnds(QString text) {
    while (text.startsWith(QLatin1Char('.')) || (!text.isEmpty() && text.at(0).isSpace()))
        text.remove(0, 1);
    while (text.endsWith(QLatin1Char('.')) ||
           (!text.isEmpty() && text.at(text.size() - 1).isSpace()))
        text.chop(1);
    return text;
}

QString limited(QString text, int bytes) {
    // a quick cut first, so that a huge text costs nothing
    text.truncate(bytes);
    while (text.toUtf8().size() > bytes)
        text.chop(1);
    if (!text.isEmpty() && text.at(text.size() - 1).isHighSurrogate())
        text.chop(1);
    return text;
}

} // namespace

QString expandPattern(const QString& pattern, const FileNameContext& context) {
    const QString& track = context.song.track;
    const QString& station = context.station.station;
    const QString trackOrTitle = track.isEmpty() ? station : track;
    const QString comment = context.song.artist.isEmpty() ? QString() : context.song.comment;
    const std::array<std::pair<const char*, QString>, 14> values{{
        {"title", station},
        {"country", context.station.country},
        {"state", context.station.state},
        {"city", context.station.city},
        {"schedule", context.station.schedule},
        {"date", dateText(context)},
        {"track_or_title", trackOrTitle},
        {"title_or_track", trackOrTitle},
        {"time", timeText(context)},
        {"track", track},
        {"artist", context.song.artist},
        {"song_title", context.song.title},
        {"track_title", context.song.title},
        {"comment", comment}, // only beside an artist, deliberately
    }};
    QString text = pattern;
    for (const auto& [name, value] : values)
        replaceValue(text, name, value);
    return text;
}

QString cleanName(const QString& text, const QString& replacement) {
    QString result = text;
    while (!result.isEmpty() && isInvalid(result.at(result.size() - 1)))
        result.chop(1);
    while (result.endsWith(QLatin1Char(' ')))
        result.chop(1);
    QString cleaned;
    cleaned.reserve(result.size());
    for (const QChar c : result)
        cleaned += isInvalid(c) ? replacement : QString(c);
    return cleaned;
}

QString defaultRecordingTitle(const FileNameContext& context) {
    constexpr int kStationLength = 50;
    constexpr int kShortTrack = 6;
    constexpr int kNameLength = 120;
    QString name = context.station.station.left(kStationLength);
    if (name.isEmpty())
        name = QStringLiteral("Unknown Station");
    const QString& track = context.song.track;
    if (track.size() < kShortTrack) {
        name = name + QStringLiteral(" - ") + context.now.toString(QStringLiteral("dd.MMM.yyyy")) +
               QLatin1Char('_') + context.now.toString(QStringLiteral("hh.mm"));
    } else if (context.isSplit) {
        name = name + QStringLiteral(" - ") + track;
    }
    return cleanName(name.left(kNameLength), context.invalidReplacement);
}

QString safeComponent(const QString& text, const QString& replacement) {
    // an own replacement may be unsafe itself: it comes from a setting
    const bool isUsable = std::none_of(replacement.begin(), replacement.end(), [](QChar c) {
        return isInvalid(c) || isHidden(c) || c.isSurrogate();
    });
    const QString filler = isUsable ? replacement : QStringLiteral("_");
    constexpr int kFarTooLong = 8 * kMaxComponentBytes;
    QString name = withoutLoneSurrogates(text.left(kFarTooLong), filler);
    name = name.normalized(QString::NormalizationForm_C);
    QString visible;
    for (const QChar c : name) {
        // tab and line ends belong to the invalid set and are replaced with it
        if (isInvalid(c) || !isHidden(c))
            visible += c;
    }
    name = trimmedEnds(cleanName(visible, filler));
    name = trimmedEnds(limited(name, kMaxComponentBytes - kStampBytes - kExtensionBytes));
    return isReserved(name) ? QLatin1Char('_') + name : name;
}

QString relativeRecordingPath(const QString& pattern,
                              const FileNameContext& context,
                              const QString& extension) {
    QStringList parts = pattern.split(QLatin1Char('\\'));
    const QString last = parts.takeLast();
    QStringList path;
    for (const QString& part : qAsConst(parts)) {
        const QString folder =
            safeComponent(expandPattern(part, context), context.invalidReplacement);
        if (!folder.isEmpty())
            path << folder;
    }
    QString name = safeComponent(expandPattern(last, context), context.invalidReplacement);
    if (name.isEmpty())
        name = safeComponent(defaultRecordingTitle(context), context.invalidReplacement);
    if (name.isEmpty())
        name = QStringLiteral("Unknown Station");
    path << name + QLatin1Char('.') + extension;
    return path.join(QLatin1Char('/'));
}

QString stampedFileName(const QString& fileName,
                        const QDateTime& now,
                        const QString& replacement,
                        int attempt) {
    const int dot = fileName.indexOf(QLatin1Char('.'));
    const QString base = dot < 0 ? fileName : fileName.left(dot);
    const QString suffix = dot < 0 ? QString() : fileName.mid(dot);
    const QString stamp = cleanName(now.toString(Qt::TextDate), replacement);
    const QString number = attempt > 1 ? QStringLiteral("_%1").arg(attempt) : QString();
    return base + QLatin1Char('_') + limited(stamp, kStampBytes - kExtensionBytes) + number +
           suffix;
}

} // namespace BASS
