#include "recording/mp3_info_frame.h"

#include <algorithm>
#include <array>

namespace BASS {
namespace {

constexpr int kTocEntries = 100;
constexpr int kMaxSeekEntries = 4096;
// the tag with flags, frames, bytes, table and quality, and the extension behind it
constexpr int kTagBytes = 4 + 4 + 4 + 4 + kTocEntries + 4;
constexpr int kExtensionBytes = 36;
constexpr quint32 kHasFrames = 1;
constexpr quint32 kHasBytes = 2;
constexpr quint32 kHasTable = 4;
constexpr quint32 kHasQuality = 8;

const std::uint8_t* raw(const QByteArray& bytes) {
    return reinterpret_cast<const std::uint8_t*>(bytes.constData());
}

std::optional<MpegFrame> parse(const QByteArray& frame) {
    return parseMpegFrame(raw(frame), static_cast<std::size_t>(frame.size()));
}

void appendNumber(QByteArray& to, quint32 value, int bytes) {
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        to.append(static_cast<char>((value >> shift) & 0xFF));
}

/// A frame of zeros: the model's header, without checksum and padding, with the lowest bitrate that
/// gives it `bytes`, the model's own where that will do.
QByteArray emptyFrame(const std::uint8_t* model, std::size_t bytes) {
    std::array<std::uint8_t, 4> header{
        model[0], static_cast<std::uint8_t>(model[1] | 1), model[2], model[3]};
    header[2] = static_cast<std::uint8_t>(header[2] & ~2);
    const int own = model[2] >> 4;
    for (int index = own; index <= own + 14; ++index) {
        const int wrapped = (index - 1) % 14 + 1;
        header[2] = static_cast<std::uint8_t>((header[2] & 0x0F) | (wrapped << 4));
        const auto frame = parseMpegFrame(header.data(), header.size());
        if (!frame || frame->bytes < bytes)
            continue;
        QByteArray result(static_cast<int>(frame->bytes), '\0');
        std::copy(header.begin(), header.end(), result.begin());
        return result;
    }
    return {};
}

/// CRC-16 with the polynomial 0x8005, low bit first, as the extension's last field wants it.
quint32 tagChecksum(const char* data, int size) {
    quint32 crc = 0;
    for (int n = 0; n < size; ++n) {
        crc ^= static_cast<std::uint8_t>(data[n]);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1U) != 0 ? (crc >> 1) ^ 0xA001U : crc >> 1;
    }
    return crc;
}

void appendTable(QByteArray& tag, const Mp3InfoFields& fields) {
    for (qint64 percent = 0; percent < kTocEntries; ++percent) {
        const qint64 frame = fields.table->frames() * percent / kTocEntries;
        const qint64 part =
            fields.table->offsetOf(frame) * 256 / std::max<qint64>(1, fields.audioBytes);
        tag.append(static_cast<char>(std::clamp<qint64>(part, 0, 255)));
    }
}

/// The fields for lengths have 32 bits; a longer file tells the most that they hold.
quint32 lengthField(qint64 bytes) {
    return static_cast<quint32>(std::min<qint64>(bytes, 0xFFFFFFFF));
}

QByteArray extension(const Mp3InfoFields& fields) {
    QByteArray tag("LAME3.100"); // decoders take the delay from tags that begin like this only
    tag.append(static_cast<char>(fields.isVariable ? 4 : 1)); // revision 0, method
    tag.append(11, '\0'); // low pass, peak, two gains, flags, bitrate: not told
    appendNumber(tag, static_cast<quint32>(fields.delay) << 12, 3); // no padding at the end
    tag.append(4, '\0');                                            // misc, gain, preset
    appendNumber(tag, lengthField(fields.audioBytes), 4);
    tag.append(2, '\0'); // checksum of the music: not told
    return tag;
}

} // namespace

void Mp3SeekTable::add(qint64 offset) {
    if (m_frames % m_step == 0)
        m_offsets.push_back(offset);
    ++m_frames;
    if (m_offsets.size() < kMaxSeekEntries)
        return;
    for (std::size_t n = 0; n < kMaxSeekEntries / 2; ++n)
        m_offsets[n] = m_offsets[2 * n];
    m_offsets.resize(kMaxSeekEntries / 2);
    m_step *= 2;
}

void Mp3SeekTable::takeBack(qint64 frames) {
    m_frames = std::max<qint64>(0, m_frames - frames);
    m_offsets.resize(static_cast<std::size_t>((m_frames + m_step - 1) / m_step));
}

qint64 Mp3SeekTable::offsetOf(qint64 frame) const {
    if (m_offsets.empty())
        return 0;
    const auto at = static_cast<std::size_t>(frame / m_step);
    return m_offsets[std::min(at, m_offsets.size() - 1)];
}

QByteArray mp3InfoFrame(const std::uint8_t* model, const Mp3InfoFields& fields) {
    const auto modelFrame = parseMpegFrame(model, kMpegHeaderBytes);
    if (!modelFrame || modelFrame->layer != 3)
        return {};
    const auto lead = static_cast<int>(kMpegHeaderBytes + modelFrame->sideInfo);
    QByteArray frame =
        emptyFrame(model, static_cast<std::size_t>(lead + kTagBytes + kExtensionBytes));
    const bool isComplete = fields.table != nullptr;

    QByteArray tag(fields.isVariable ? "Xing" : "Info");
    appendNumber(tag, isComplete ? kHasFrames | kHasBytes | kHasTable | kHasQuality : 0, 4);
    if (isComplete) {
        appendNumber(tag, static_cast<quint32>(fields.table->frames()), 4);
        appendNumber(tag, lengthField(fields.audioBytes), 4);
        appendTable(tag, fields);
        appendNumber(tag, 0, 4);
    }
    tag += extension(fields);
    frame.replace(lead, tag.size(), tag);
    QByteArray checksum;
    const int at = lead + tag.size();
    appendNumber(checksum, tagChecksum(frame.constData(), at), 2);
    return frame.replace(at, checksum.size(), checksum);
}

QByteArray mp3CarrierFrame(const std::uint8_t* model, const QByteArray& reservoir) {
    const auto modelFrame = parseMpegFrame(model, kMpegHeaderBytes);
    if (!modelFrame || modelFrame->layer != 3)
        return {};
    QByteArray frame = emptyFrame(model,
                                  kMpegHeaderBytes + modelFrame->sideInfo +
                                      static_cast<std::size_t>(reservoir.size()));
    return frame.replace(frame.size() - reservoir.size(), reservoir.size(), reservoir);
}

bool isMp3InfoFrame(const QByteArray& frame) {
    const auto parsed = parse(frame);
    if (!parsed || parsed->layer != 3)
        return false;
    const QByteArray tag = frame.mid(static_cast<int>(kMpegHeaderBytes + parsed->sideInfo), 4);
    constexpr int kVbriAt = 36;
    return tag == "Xing" || tag == "Info" || frame.mid(kVbriAt, 4) == "VBRI";
}

QByteArray mp3MainData(const QByteArray& frame) {
    const auto parsed = parse(frame);
    if (!parsed || parsed->layer != 3)
        return {};
    const std::size_t lead = kMpegHeaderBytes + parsed->sideInfo + (parsed->hasChecksum ? 2U : 0U);
    return frame.mid(static_cast<int>(lead));
}

} // namespace BASS
