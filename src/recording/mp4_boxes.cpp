#include "recording/mp4_boxes.h"

namespace BASS {
namespace {

constexpr int kPacketSamples = 1024;

QByteArray number(quint64 value, int bytes) {
    QByteArray result;
    for (int n = bytes - 1; n >= 0; --n)
        result.append(static_cast<char>((value >> (8 * n)) & 0xFF));
    return result;
}

QByteArray u16(quint64 value) {
    return number(value, 2);
}

QByteArray u32(quint64 value) {
    return number(value, 4);
}

QByteArray u64(quint64 value) {
    return number(value, 8);
}

QByteArray box(const char* type, const QByteArray& body) {
    constexpr int kHeader = 8;
    return u32(static_cast<quint64>(body.size() + kHeader)) + QByteArray(type, 4) + body;
}

QByteArray fullBox(const char* type, int version, quint32 flags, const QByteArray& body) {
    return box(type, number(static_cast<quint64>(version), 1) + number(flags, 3) + body);
}

/// The matrix that leaves a picture as it is.
QByteArray unityMatrix() {
    constexpr quint32 kOne = 0x00010000;
    constexpr quint32 kLast = 0x40000000;
    return u32(kOne) + u64(0) + u32(0) + u32(kOne) + u64(0) + u32(0) + u32(kLast);
}

QByteArray movieHeader(int timescale) {
    constexpr quint32 kNormalRate = 0x00010000;
    constexpr quint16 kFullVolume = 0x0100;
    return fullBox("mvhd",
                   0,
                   0,
                   u64(0) + u32(static_cast<quint64>(timescale)) + u32(0) + u32(kNormalRate) +
                       u16(kFullVolume) + u16(0) + u64(0) + unityMatrix() + QByteArray(24, 0) +
                       u32(2)); // the next track's number
}

QByteArray trackHeader() {
    constexpr quint32 kEnabledInMovie = 3;
    constexpr quint16 kFullVolume = 0x0100;
    return fullBox("tkhd",
                   0,
                   kEnabledInMovie,
                   u64(0) + u32(1) + u32(0) + u32(0) + u64(0) + u16(0) + u16(0) + u16(kFullVolume) +
                       u16(0) + unityMatrix() + u64(0));
}

/// A length of 0 is all that follows, in whatever fragment.
QByteArray editList(qint64 skipped) {
    constexpr quint32 kNormalRate = 0x00010000;
    return box(
        "edts",
        fullBox(
            "elst", 1, 0, u32(1) + u64(0) + u64(static_cast<quint64>(skipped)) + u32(kNormalRate)));
}

QByteArray descriptor(int tag, const QByteArray& body) {
    return number(static_cast<quint64>(tag), 1) + number(static_cast<quint64>(body.size()), 1) +
           body;
}

QByteArray streamDescriptor(const AacTrack& track) {
    constexpr int kAacAudio = 0x40;
    constexpr int kAudioStream = 0x15;
    const int config = track.objectType << 11 | track.rateIndex << 7 | track.channels << 3;
    const QByteArray decoder = number(kAacAudio, 1) + number(kAudioStream, 1) + number(0, 3) +
                               u64(0) + descriptor(5, u16(static_cast<quint64>(config)));
    return fullBox(
        "esds",
        0,
        0,
        descriptor(3,
                   u16(1) + number(0, 1) + descriptor(4, decoder) + descriptor(6, number(2, 1))));
}

QByteArray sampleTable(const AacTrack& track) {
    const QByteArray entry = box(
        "mp4a",
        QByteArray(6, 0) + u16(1) + u64(0) + u16(static_cast<quint64>(track.channels)) + u16(16) +
            u32(0) + u32(static_cast<quint64>(track.sampleRate) << 16) + streamDescriptor(track));
    return box("stbl",
               fullBox("stsd", 0, 0, u32(1) + entry) + fullBox("stts", 0, 0, u32(0)) +
                   fullBox("stsc", 0, 0, u32(0)) + fullBox("stsz", 0, 0, u64(0)) +
                   fullBox("stco", 0, 0, u32(0)));
}

QByteArray media(const AacTrack& track) {
    constexpr quint16 kUndetermined = 0x55C4; // "und"
    const QByteArray header = fullBox("mdhd",
                                      0,
                                      0,
                                      u64(0) + u32(static_cast<quint64>(track.sampleRate)) +
                                          u32(0) + u16(kUndetermined) + u16(0));
    const QByteArray handler =
        fullBox("hdlr", 0, 0, u32(0) + QByteArray("soun") + QByteArray(13, 0));
    const QByteArray data =
        box("dinf", fullBox("dref", 0, 0, u32(1) + fullBox("url ", 0, 1, QByteArray())));
    return box("mdia",
               header + handler +
                   box("minf", fullBox("smhd", 0, 0, u32(0)) + data + sampleTable(track)));
}

/// In the place of the length stands free room, as long as it is not known.
QByteArray extension(qint64 duration) {
    constexpr quint32 kSyncSample = 0x02000000;
    const QByteArray length = duration > 0
                                  ? fullBox("mehd", 1, 0, u64(static_cast<quint64>(duration)))
                                  : box("free", QByteArray(12, 0));
    return box("mvex",
               length + fullBox("trex",
                                0,
                                0,
                                u32(1) + u32(1) + u32(kPacketSamples) + u32(0) + u32(kSyncSample)));
}

/// Many players, FFmpeg's among them, pass over an edit list where there are fragments, and heed
/// this entry in its place: samples before and behind what is heard, and what is heard.
QByteArray gaplessEntry(qint64 skipped, qint64 duration) {
    constexpr quint32 kText = 1;
    const auto hex = [](qint64 value, int digits) {
        return QByteArray::number(value, 16).toUpper().rightJustified(digits, '0');
    };
    QByteArray text = " 00000000 " + hex(skipped, 8) + ' ' + hex(0, 8) + ' ' + hex(duration, 16);
    for (int n = 0; n < 8; ++n)
        text += " 00000000";
    const QByteArray entry = box("----",
                                 fullBox("mean", 0, 0, QByteArray("com.apple.iTunes")) +
                                     fullBox("name", 0, 0, QByteArray("iTunSMPB")) +
                                     box("data", u32(kText) + u32(0) + text));
    const QByteArray handler =
        fullBox("hdlr", 0, 0, u32(0) + QByteArray("mdirappl") + QByteArray(9, 0));
    return box("udta", fullBox("meta", 0, 0, handler + box("ilst", entry)));
}

} // namespace

QByteArray mp4Header(const AacTrack& track, qint64 skipped, qint64 duration) {
    const QByteArray brands("M4A \0\0\2\0M4A isomiso5mp42", 24);
    const QByteArray trackBox = box("trak", trackHeader() + editList(skipped) + media(track));
    return box("ftyp", brands) +
           box("moov",
               movieHeader(track.sampleRate) + trackBox + extension(duration) +
                   (skipped > 0 ? gaplessEntry(skipped, duration) : QByteArray()));
}

QByteArray mp4Fragment(quint32 count, qint64 start, const std::vector<QByteArray>& packets) {
    constexpr quint32 kBaseIsMoof = 0x020000;
    constexpr quint32 kHasOffsetAndSizes = 0x000201;
    constexpr int kBoxHeader = 8;
    QByteArray sizes;
    QByteArray data;
    for (const QByteArray& packet : packets) {
        sizes += u32(static_cast<quint64>(packet.size()));
        data += packet;
    }
    const auto fragment = [&](int offset) {
        const QByteArray run =
            fullBox("trun",
                    0,
                    kHasOffsetAndSizes,
                    u32(packets.size()) + u32(static_cast<quint64>(offset)) + sizes);
        return box("moof",
                   fullBox("mfhd", 0, 0, u32(count)) +
                       box("traf",
                           fullBox("tfhd", 0, kBaseIsMoof, u32(1)) +
                               fullBox("tfdt", 1, 0, u64(static_cast<quint64>(start))) + run));
    };
    const int moofBytes = fragment(0).size();
    return fragment(moofBytes + kBoxHeader) + box("mdat", data);
}

} // namespace BASS
