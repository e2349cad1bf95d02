#include "recording/encoder_output.h"

#include "recording/c_encoder_params.h"
#include "recording/stream_format.h"

#include <QtEndian>

namespace BASS {
namespace {

constexpr int kMagicBytes = 8;
constexpr int kMostHeader = 256 * 1024; ///< no header is longer; whatever it is, it is written

bool isOutput(int encoder, const QByteArray& bytes) {
    constexpr int kSyncByte = 0xFF;
    constexpr int kSyncBits = 0xE0; // of the second byte: eleven bits of one in all
    const auto byte = [&bytes](int at) {
        return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0;
    };
    const bool isFrame = byte(0) == kSyncByte && (byte(1) & kSyncBits) == kSyncBits;
    switch (encoder) {
    case EncoderMp3:
        return isFrame || bytes.startsWith("ID3");
    case EncoderWma:
        return bytes.startsWith("\x30\x26\xB2\x75");
    case EncoderOgg:
    case EncoderFlacOgg:
        return bytes.startsWith("OggS");
    case EncoderFlac:
        return bytes.startsWith("fLaC");
    case EncoderAacPlus:
    case EncoderAac: // ADTS, ADIF or MP4
        return isFrame || bytes.startsWith("ADIF") || bytes.mid(4, 4) == "ftyp";
    default:
        return true;
    }
}

/// Behind the header object, whose size it tells, and the data object's own header lies the first
/// packet; the file properties tell its size (Advanced Systems Format specification, sections 3.1,
/// 3.2 and 5).
bool hasAsfPacket(const QByteArray& bytes) {
    static const QByteArray kFileProperties =
        QByteArray::fromHex("a1dcab8c47a9cf118ee400c00c205365");
    constexpr int kHeaderSizeAt = 16;
    constexpr int kPacketSizeAt = 92;
    constexpr int kDataHeader = 50;
    const int properties = bytes.indexOf(kFileProperties);
    if (properties < kHeaderSizeAt || properties + kPacketSizeAt + 4 > bytes.size())
        return false;
    const auto header = qFromLittleEndian<quint64>(bytes.constData() + kHeaderSizeAt);
    const auto packet = qFromLittleEndian<quint32>(bytes.constData() + properties + kPacketSizeAt);
    const auto size = static_cast<quint64>(bytes.size());
    return size > header && size - header >= kDataHeader + quint64{packet};
}

/// A whole box of media data (ISO/IEC 14496-12, section 4.2).
bool hasMp4Data(const QByteArray& bytes) {
    constexpr qint64 kHeader = 8;
    qint64 at = 0;
    while (at + kHeader <= bytes.size()) {
        const bool isData = bytes.mid(static_cast<int>(at) + 4, 4) == "mdat";
        const auto size = qFromBigEndian<quint32>(bytes.constData() + at);
        if (size < kHeader)
            return true; // up to the end of the file, or a size that no header has
        at += size;
        if (isData && at <= bytes.size())
            return true;
    }
    return false;
}

/// A whole page on which audio ends; header pages tell no time (RFC 3533, section 6; the mappings
/// of Vorbis, Opus and FLAC).
bool hasOggAudio(const QByteArray& bytes) {
    constexpr int kTimeAt = 6;
    constexpr int kSegmentsAt = 26;
    int at = 0;
    while (at + kSegmentsAt < bytes.size() && bytes.mid(at, 4) == "OggS") {
        const auto time = qFromLittleEndian<qint64>(bytes.constData() + at + kTimeAt);
        const int segments = static_cast<unsigned char>(bytes[at + kSegmentsAt]);
        const QByteArray lengths = bytes.mid(at + kSegmentsAt + 1, segments);
        at += kSegmentsAt + 1 + segments;
        for (const char length : lengths)
            at += static_cast<unsigned char>(length);
        if (time > 0 && at <= bytes.size())
            return true;
    }
    return false;
}

bool hasAudio(const QByteArray& bytes, bool isEnd) {
    const auto format = detectFormat(bytes, isEnd);
    if (!format)
        return false;
    if (*format == StreamFormat::Asf)
        return hasAsfPacket(bytes);
    if (*format == StreamFormat::Ogg)
        return hasOggAudio(bytes);
    if (*format == StreamFormat::Mp4)
        return hasMp4Data(bytes);
    if (*format == StreamFormat::Unknown) // no chain of frames; ADIF has none
        return !isEnd || bytes.startsWith("ADIF");
    const auto parser = makeStreamParser(*format, 0);
    FrameList frames;
    parser->push(bytes.constData(), bytes.size(), frames);
    if (isEnd)
        parser->finish(frames);
    return !frames.empty();
}

} // namespace

EncoderOutput encoderOutput(int encoder, const QByteArray& bytes, bool isEnd) {
    if (bytes.size() < kMagicBytes && !isEnd)
        return EncoderOutput::Header;
    if (!isOutput(encoder, bytes))
        return EncoderOutput::Foreign;
    if (bytes.size() >= kMostHeader)
        return EncoderOutput::Audio;
    return hasAudio(bytes, isEnd) ? EncoderOutput::Audio : EncoderOutput::Header;
}

} // namespace BASS
