#include "recording/c_encoder_params.h"

#include <QStringList>

namespace BASS {
namespace {

constexpr int kWmaBitrate = 128000;
constexpr int kSampleRate = 44100;
constexpr int kChannels = 2;
constexpr int kLowRate = 32000; ///< the lower of the two that AAC+ knows

int bitsPerSecond(int bitrate) {
    return bitrate > 0 && bitrate < 1000 ? bitrate * 1000 : bitrate;
}

int kilobits(int bitrate) {
    return bitrate >= 1000 ? bitrate / 1000 : bitrate;
}

QString lameArguments(const ExternalEncoding& encoding) {
    const int bitrate = encoding.bitrate;
    if (!encoding.userArguments.isEmpty()) {
        QString own = encoding.userArguments;
        return own.replace(QStringLiteral("-b0"), QStringLiteral("-b%1").arg(kilobits(bitrate)));
    }
    constexpr int kLowest = 32;
    constexpr int kHighest = 320;
    QString line;
    if (bitrate < 1)
        line = QStringLiteral("-V 4");
    else if (bitrate < 10)
        line = QStringLiteral("-V %1").arg(bitrate); // a quality, no bitrate
    else
        line = QStringLiteral("--cbr");
    const int kbit = kilobits(bitrate);
    if (bitrate >= 10 && kbit >= kLowest && kbit <= kHighest)
        line += QStringLiteral(" -b %1").arg(kbit);
    const int rate = encoding.sampleRate > 0 ? encoding.sampleRate : kSampleRate;
    line += QStringLiteral(" -t -r -s %1 ").arg(rate / 1000.0);
    if (encoding.channels == 1)
        line += QStringLiteral("-m mono ");
    return line + QStringLiteral(" - -");
}

int aacPlusRate(const ExternalEncoding& encoding) {
    const bool isLow = encoding.sampleRate > 0 && encoding.sampleRate <= kLowRate;
    return isLow ? kLowRate : kSampleRate;
}

/// The value of a short option, joined to it or behind a blank; empty: not there.
QString optionValue(const QString& arguments, const QString& option) {
    const QStringList words = arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (int n = 0; n < words.size(); ++n) {
        if (words[n] == option)
            return words.value(n + 1);
        if (words[n].startsWith(option))
            return words[n].mid(option.size());
    }
    return {};
}

bool hasOption(const QString& arguments, const QString& option) {
    return arguments.split(QLatin1Char(' ')).contains(option);
}

/// The user's own arguments for LAME: raw samples are 44.1 kHz stereo where they say nothing else.
ExternalInput lameInput(const QString& own, const ExternalInput& stream) {
    if (!hasOption(own, QStringLiteral("-r")))
        return {stream.sampleRate, stream.channels, true};
    const double kilohertz = optionValue(own, QStringLiteral("-s")).toDouble();
    const bool isMono = optionValue(own, QStringLiteral("-m")).startsWith(QLatin1Char('m'));
    return {kilohertz > 0 ? qRound(kilohertz * 1000) : kSampleRate, isMono ? 1 : kChannels, false};
}

/// As above for FAAC.
ExternalInput faacInput(const QString& own, const ExternalInput& stream) {
    if (!hasOption(own, QStringLiteral("-P")))
        return {stream.sampleRate, stream.channels, true};
    const int rate = optionValue(own, QStringLiteral("-R")).toInt();
    const int channels = optionValue(own, QStringLiteral("-C")).toInt();
    return {rate > 0 ? rate : kSampleRate, channels > 0 ? channels : kChannels, false};
}

QString aacPlusArguments(const ExternalEncoding& encoding) {
    constexpr int kBitrate = 64000;
    QString line = QStringLiteral("- - --silent --rawpcm %1 %2 16")
                       .arg(aacPlusRate(encoding))
                       .arg(encoding.channels > 0 ? encoding.channels : kChannels);
    if (!encoding.userArguments.isEmpty())
        line += QLatin1Char(' ') + encoding.userArguments;
    const int bitrate = encoding.bitrate > 0 ? bitsPerSecond(encoding.bitrate) : kBitrate;
    return line.replace(QStringLiteral("--br 0"), QStringLiteral("--br %1").arg(bitrate));
}

QString aacArguments(const ExternalEncoding& encoding, int rate, int channels) {
    QString line = encoding.userArguments;
    if (line.isEmpty())
        return QStringLiteral("-b64 -P -X -R%1 -C%2 - -").arg(rate).arg(channels);
    return line.replace(QStringLiteral("-b0"),
                        QStringLiteral("-b%1").arg(kilobits(encoding.bitrate)));
}

/// The user's own arguments stand for the choice of quality; what tells the format of the samples
/// must be right and stays.
QString oggArguments(const ExternalEncoding& encoding, int rate, int channels) {
    const QString choice = encoding.userArguments.isEmpty()
                               ? QStringLiteral("-b %1").arg(kilobits(encoding.bitrate))
                               : encoding.userArguments;
    return choice + QStringLiteral(" -B %1 -C %2 -R %3")
                        .arg(QString::number(encoding.bitsPerSample),
                             QString::number(channels),
                             QString::number(rate));
}

QString flacArguments(const ExternalEncoding& encoding, int rate, int channels) {
    const QString choice = encoding.userArguments.isEmpty()
                               ? QStringLiteral("--compression-level-0")
                               : encoding.userArguments;
    return choice + QStringLiteral(" --channels=%1 --bps=%2 --sample-rate=%3")
                        .arg(QString::number(channels),
                             QString::number(encoding.bitsPerSample),
                             QString::number(rate));
}

} // namespace

CEncoderParams::CEncoderParams(int encoder)
    : m_encoder(encoder), m_bitrate(encoder == EncoderWma ? kWmaBitrate : 0) {}

void CEncoderParams::setBitrate(int bitrate) {
    m_bitrate = bitsPerSecond(bitrate);
}

void CEncoderParams::setBitrateRange(int minimum, int maximum) {
    m_minBitrate = bitsPerSecond(minimum);
    m_maxBitrate = bitsPerSecond(maximum);
}

QString CEncoderParams::arguments() const {
    switch (m_encoder) {
    case EncoderMp3:
        return mp3Arguments();
    case EncoderWma:
        return wmaArguments();
    case EncoderAacPlus:
        return QStringLiteral("--br %1").arg(m_bitrate);
    case EncoderOgg:
        return oggArguments();
    case EncoderFlac:
    case EncoderFlacOgg:
        return QStringLiteral("--compression-level-%1").arg(quality);
    default:
        return {};
    }
}

QString CEncoderParams::mp3Arguments() const {
    if (mode == EncoderMode::ConstantBitrate)
        return QStringLiteral("--cbr -b%1").arg(kilobits(m_bitrate));
    if (mode == EncoderMode::AverageBitrate)
        return QStringLiteral("--abr %1").arg(kilobits(m_bitrate));
    if (mode != EncoderMode::VariableBitrate)
        return {};
    QString line = QStringLiteral("--vbr-new -V%1").arg(quality);
    if (m_minBitrate > 0)
        line += QStringLiteral(" -b%1").arg(kilobits(m_minBitrate));
    if (m_maxBitrate > 0 && m_maxBitrate >= m_minBitrate)
        line += QStringLiteral(" -B%1").arg(kilobits(m_maxBitrate));
    return line;
}

QString CEncoderParams::wmaArguments() const {
    const QString format = QStringLiteral(" -s%1 -c%2").arg(sampleRate).arg(channels);
    if (mode == EncoderMode::ConstantBitrate)
        return QStringLiteral("--cbr -b%1").arg(m_bitrate) + format;
    if (mode == EncoderMode::VariableBitrate || mode == EncoderMode::Quality)
        return QStringLiteral("--vbr -q%1").arg(quality) + format;
    return {};
}

QString CEncoderParams::oggArguments() const {
    if (mode == EncoderMode::Quality)
        return QStringLiteral("-q%1").arg(quality);
    if (m_bitrate == 0 || m_minBitrate == 0 || m_maxBitrate == 0)
        return {};
    return QStringLiteral("-b%1 -m%2 -M%3")
        .arg(kilobits(m_bitrate))
        .arg(kilobits(m_minBitrate))
        .arg(kilobits(m_maxBitrate));
}

void CEncoderParams::parse(const QString& arguments) {
    const QStringList tokens = arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (int n = 0; n < tokens.size(); ++n)
        takeToken(tokens[n], tokens.value(n + 1));
}

void CEncoderParams::takeToken(const QString& token, const QString& following) {
    static const QString level = QStringLiteral("--compression-level-");
    if (token == QLatin1String("--abr")) {
        mode = EncoderMode::AverageBitrate;
        setBitrate(following.toInt());
    } else if (token == QLatin1String("--br")) {
        setBitrate(following.toInt());
    } else if (token == QLatin1String("--cbr")) {
        mode = EncoderMode::ConstantBitrate;
    } else if (token == QLatin1String("--vbr") || token == QLatin1String("--vbr-new")) {
        mode = EncoderMode::VariableBitrate;
    } else if (token.startsWith(level)) {
        mode = EncoderMode::Compression;
        quality = token.mid(level.size()).toDouble();
    } else if (token.size() > 1 && token[0] == QLatin1Char('-') && token[1] != QLatin1Char('-')) {
        // the value may stand behind a blank
        const QString value = token.size() > 2 ? token.mid(2) : following;
        bool isNumber = false;
        const double number = value.toDouble(&isNumber);
        if (isNumber)
            takeShort(token[1], number);
    }
}

void CEncoderParams::takeShort(QChar letter, double value) {
    const auto whole = static_cast<int>(value);
    const bool isRange = m_encoder == EncoderMp3 && mode == EncoderMode::VariableBitrate;
    switch (letter.unicode()) {
    case 'b':
        (isRange ? m_minBitrate : m_bitrate) = bitsPerSecond(whole);
        break;
    case 'm':
        m_minBitrate = bitsPerSecond(whole);
        break;
    case 'B':
    case 'M':
        m_maxBitrate = bitsPerSecond(whole);
        break;
    case 'q':
        // WMA tells a variable bitrate's quality by the same letter
        mode = m_encoder == EncoderWma ? EncoderMode::VariableBitrate : EncoderMode::Quality;
        quality = value;
        break;
    case 'V':
        quality = value;
        break;
    case 's':
        sampleRate = whole;
        break;
    case 'c':
        channels = whole;
        break;
    default:
        break;
    }
}

bool operator==(const CEncoderParams& a, const CEncoderParams& b) {
    return a.encoder() == b.encoder() && a.bitrate() == b.bitrate() &&
           a.minBitrate() == b.minBitrate() && a.maxBitrate() == b.maxBitrate() &&
           a.mode == b.mode && qFuzzyCompare(1 + a.quality, 1 + b.quality) &&
           a.sampleRate == b.sampleRate && a.channels == b.channels;
}

QString encoderProgram(int encoder) {
    switch (encoder) {
    case EncoderMp3:
        return QStringLiteral("lame.exe");
    case EncoderAacPlus:
        return QStringLiteral("enc_aacplus.exe");
    case EncoderOgg:
        return QStringLiteral("oggenc2.exe");
    case EncoderFlac:
    case EncoderFlacOgg:
        return QStringLiteral("flac.exe");
    case EncoderAac:
        return QStringLiteral("faac.exe");
    default:
        return {};
    }
}

QString encoderExtension(int encoder, bool isDotted) {
    const auto name = [encoder] {
        switch (encoder) {
        case EncoderWma:
            return QStringLiteral("wma");
        case EncoderAacPlus:
            return QStringLiteral("aac");
        case EncoderOgg:
            return QStringLiteral("ogg");
        case EncoderFlac:
            return QStringLiteral("flac");
        case EncoderFlacOgg:
            return QStringLiteral("oga");
        default:
            return QStringLiteral("mp3");
        }
    };
    return isDotted ? QLatin1Char('.') + name() : name();
}

QString externalArguments(int encoder, const ExternalEncoding& encoding) {
    const int rate = encoding.sampleRate > 0 ? encoding.sampleRate : kSampleRate;
    const int channels = encoding.channels > 0 ? encoding.channels : kChannels;
    switch (encoder) {
    case EncoderMp3:
        return lameArguments(encoding);
    case EncoderAacPlus:
        return aacPlusArguments(encoding);
    case EncoderOgg:
        return oggArguments(encoding, rate, channels);
    case EncoderFlac:
    case EncoderFlacOgg:
        return flacArguments(encoding, rate, channels) +
               (encoder == EncoderFlacOgg ? QStringLiteral(" --ogg") : QString());
    case EncoderAac:
        return aacArguments(encoding, rate, channels);
    default:
        return {};
    }
}

ExternalInput
externalInput(int encoder, const ExternalEncoding& encoding, const QString& arguments) {
    const ExternalInput stream{encoding.sampleRate > 0 ? encoding.sampleRate : kSampleRate,
                               encoding.channels > 0 ? encoding.channels : kChannels,
                               false};
    const bool isOwn = !encoding.userArguments.isEmpty();
    switch (encoder) {
    case EncoderMp3:
        if (isOwn)
            return lameInput(arguments, stream);
        return {stream.sampleRate, stream.channels == 1 ? 1 : kChannels, false};
    case EncoderAac:
        return isOwn ? faacInput(arguments, stream) : stream;
    case EncoderAacPlus:
        return {aacPlusRate(encoding), stream.channels, false};
    default:
        return stream;
    }
}

} // namespace BASS
