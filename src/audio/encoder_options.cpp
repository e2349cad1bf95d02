#include "audio/encoder_options.h"

#include "base/log.h"

#include <QLocale>
#include <QString>
#include <QStringList>

#include <cmath>

namespace BASS {
namespace {

using Mode = EncoderOptions::Mode;

/// A switch and what follows it, "-b128" or "-b 128".
struct Switch {
    QString name;
    std::optional<double> value;
};

/// The longest known name comes first: "--vbr-new" before "--vbr".
const char* const kNumbered[] = {
    "--compression-level-", "--abr", "--br", "-B", "-M", "-V", "-b", "-c", "-m", "-q", "-s"};
const char* const kPlain[] = {"--vbr-new", "--vbr", "--cbr", "--ogg", "--m4a"};

std::optional<double> number(const QString& text) {
    bool isNumber = false;
    const double value = QLocale::c().toDouble(text, &isNumber);
    return isNumber && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

Switch takeSwitch(QStringList& words) {
    const QString word = words.takeFirst();
    for (const char* const name : kPlain)
        if (word == QLatin1String(name))
            return {word, 0.0};
    for (const char* const known : kNumbered) {
        const QLatin1String name(known);
        if (!word.startsWith(name))
            continue;
        QString rest = word.mid(name.size());
        if (rest.isEmpty() && !words.isEmpty())
            rest = words.takeFirst();
        return {QString(name), number(rest)};
    }
    return {{}, 0.0};
}

int bitsPerSecond(double value) {
    constexpr double kFirstInBits = 1000.0;
    return static_cast<int>(value < kFirstInBits ? value * 1000.0 : value);
}

bool isWithin(double value, double low, double high) {
    return value >= low && value <= high;
}

bool takeQuality(EncoderKind kind, double value, EncoderOptions& out) {
    const bool isGood = kind == EncoderKind::Wma      ? isWithin(value, 1, 100)
                        : kind == EncoderKind::Vorbis ? isWithin(value, -1, 10)
                                                      : isWithin(value, 0, 9);
    out.quality = value;
    return isGood;
}

bool takeBitrate(double value, int& out) {
    constexpr double kHighest = 2'000'000.0;
    out = isWithin(value, 0, kHighest) ? bitsPerSecond(value) : 0;
    return out > 0 && out <= kHighest;
}

/// One switch that has a number; false where the number is out of range.
bool takeNumbered(EncoderKind kind, const QString& name, double value, EncoderOptions& out) {
    const bool isVorbis = kind == EncoderKind::Vorbis;
    const QString key = name.mid(name.lastIndexOf(QLatin1Char('-')) + 1);
    if (name == QLatin1String("--compression-level-")) {
        out.compression = static_cast<int>(value);
        return isWithin(value, 0, 8);
    }
    if (key == QLatin1String("abr")) {
        out.mode = Mode::Average;
        return takeBitrate(value, out.bitrate);
    }
    if (key == QLatin1String("s")) {
        out.sampleRate = static_cast<int>(value);
        return isWithin(value, 8000, 192000);
    }
    if (key == QLatin1String("c")) {
        out.channels = static_cast<int>(value);
        return isWithin(value, 1, 2);
    }
    if (key == QLatin1String("q") && kind == EncoderKind::Mp3)
        return isWithin(value, 0, 9); // how hard the encoder tries, not how good it sounds
    if (key == QLatin1String("q") || key == QLatin1String("V"))
        return takeQuality(kind, value, out);
    if (key == QLatin1String("B") || key == QLatin1String("M"))
        return takeBitrate(value, out.maxBitrate);
    if (key == QLatin1String("m"))
        return takeBitrate(value, out.minBitrate);
    // the same letter is the lowest bitrate of a variable one, and the nominal one elsewhere
    const bool isLowest = kind == EncoderKind::Mp3 && out.mode == Mode::Variable;
    if (isVorbis)
        out.mode = Mode::Average;
    return takeBitrate(value, isLowest ? out.minBitrate : out.bitrate);
}

void takePlain(const QString& name, EncoderOptions& out) {
    if (name == QLatin1String("--cbr"))
        out.mode = Mode::Constant;
    else if (name.startsWith(QLatin1String("--vbr")))
        out.mode = Mode::Variable;
    else if (name == QLatin1String("--ogg"))
        out.isOgg = true;
    else if (name == QLatin1String("--m4a"))
        out.isMp4 = true;
}

bool isPlain(const QString& name) {
    for (const char* const known : kPlain)
        if (name == QLatin1String(known))
            return true;
    return false;
}

} // namespace

std::optional<EncoderOptions> parseEncoderOptions(EncoderKind kind, std::string_view text) {
    QStringList words = QString::fromUtf8(text.data(), static_cast<int>(text.size()))
                            .simplified()
                            .split(QLatin1Char(' '), Qt::SkipEmptyParts);
    EncoderOptions result;
    while (!words.isEmpty()) {
        const QString word = words.first();
        const Switch next = takeSwitch(words);
        if (next.name.isEmpty())
            qCWarning(lcAudio, "unknown encoder switch skipped switch=%s", qUtf8Printable(word));
        else if (isPlain(next.name))
            takePlain(next.name, result);
        else if (kind == EncoderKind::Mp3 && next.name == QLatin1String("-m"))
            continue; // stereo mode: the encoder chooses
        else if (!next.value || !takeNumbered(kind, next.name, *next.value, result))
            return std::nullopt;
    }
    if (result.quality && result.mode == Mode::Default)
        result.mode = Mode::Variable;
    if (result.maxBitrate > 0 && result.maxBitrate < result.minBitrate)
        return std::nullopt;
    return result;
}

} // namespace BASS
