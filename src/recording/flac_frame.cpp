#include "recording/flac_frame.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace BASS {
namespace {

constexpr int kTotalAt = 13; ///< in STREAMINFO: four bits, then four bytes
constexpr int kMd5At = 18;
constexpr int kMd5Bytes = 16;
constexpr int kMarkerBytes = 4;
constexpr int kBlockHeader = 4;
constexpr std::size_t kNumberAt = 4;

template <typename Word>
std::array<Word, 256> checksumTable(Word polynomial) {
    constexpr unsigned kTop = 8 * sizeof(Word) - 1;
    std::array<Word, 256> table{};
    for (unsigned n = 0; n < table.size(); ++n) {
        auto value = static_cast<Word>(n << (kTop - 7));
        for (int bit = 0; bit < 8; ++bit) {
            const bool isSet = ((value >> kTop) & 1) != 0;
            value = static_cast<Word>((value << 1) ^ (isSet ? polynomial : 0));
        }
        table[n] = value;
    }
    return table;
}

std::uint8_t headerChecksum(const std::uint8_t* data, std::size_t size) {
    static const auto table = checksumTable<std::uint8_t>(0x07);
    std::uint8_t crc = 0;
    for (std::size_t n = 0; n < size; ++n)
        crc = table[crc ^ data[n]];
    return crc;
}

/// Bytes of a number coded like a long UTF-8 character; 0: not allowed.
std::size_t codedBytes(std::uint8_t first) {
    if (first < 0x80)
        return 1;
    std::size_t count = 0;
    while (count < 8 && ((first << count) & 0x80) != 0)
        ++count;
    return count >= 2 && count <= 7 ? count : 0;
}

std::optional<quint64> codedNumber(const std::uint8_t* data, std::size_t bytes) {
    quint64 value = bytes == 1 ? data[0] : data[0] & (0x7FU >> bytes);
    for (std::size_t n = 1; n < bytes; ++n) {
        if ((data[n] & 0xC0) != 0x80)
            return std::nullopt;
        value = (value << 6) | (data[n] & 0x3FU);
    }
    return value;
}

QByteArray coded(quint64 value) {
    if (value < 0x80)
        return QByteArray(1, static_cast<char>(value));
    int bytes = 2;
    while (bytes < 7 && value >= quint64(1) << (5 * bytes + 1))
        ++bytes;
    QByteArray result(bytes, '\0');
    for (int n = bytes - 1; n > 0; --n) {
        result[n] = static_cast<char>(0x80 | (value & 0x3F));
        value >>= 6;
    }
    result[0] = static_cast<char>((0xFF00 >> bytes) | static_cast<int>(value));
    return result;
}

int codedBlockSize(unsigned code, const std::uint8_t* extra) {
    if (code == 1)
        return 192;
    if (code <= 5)
        return 576 << (code - 2);
    if (code == 6)
        return extra[0] + 1;
    return code == 7 ? (extra[0] << 8 | extra[1]) + 1 : 256 << (code - 8);
}

int codedRate(unsigned code, const std::uint8_t* extra) {
    constexpr std::array<int, 12> kRates{
        0, 88200, 176400, 192000, 8000, 16000, 22050, 24000, 32000, 44100, 48000, 96000};
    if (code < kRates.size())
        return kRates[code];
    const int wide = extra[0] << 8 | extra[1];
    return code == 12 ? extra[0] * 1000 : code == 13 ? wide : wide * 10;
}

std::size_t blockBytes(const std::uint8_t* data) {
    return kBlockHeader + (static_cast<std::size_t>(data[1]) << 16 |
                           static_cast<std::size_t>(data[2]) << 8 | data[3]);
}

} // namespace

FlacInfo parseFlacInfo(const std::uint8_t* data) {
    FlacInfo info;
    info.blockSize = data[2] << 8 | data[3];
    info.sampleRate = data[10] << 12 | data[11] << 4 | data[12] >> 4;
    info.channels = ((data[12] >> 1) & 7) + 1;
    return info;
}

std::optional<FlacFrameHead> parseFlacFrame(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kLeast = 6;
    if (size < kLeast || data[0] != 0xFF || (data[1] & 0xFE) != 0xF8)
        return std::nullopt;
    const unsigned sizeCode = data[2] >> 4;
    const unsigned rateCode = data[2] & 15;
    const unsigned channelCode = data[3] >> 4;
    const unsigned bitsCode = (data[3] >> 1) & 7;
    if (sizeCode == 0 || rateCode == 15 || channelCode > 10 || bitsCode == 3 || (data[3] & 1) != 0)
        return std::nullopt;
    FlacFrameHead head;
    head.isVariable = (data[1] & 1) != 0;
    head.numberBytes = codedBytes(data[kNumberAt]);
    const std::size_t sizeBytes = sizeCode == 6 ? 1 : sizeCode == 7 ? 2 : 0;
    const std::size_t rateBytes = rateCode == 12 ? 1 : rateCode > 12 ? 2 : 0;
    const std::size_t checked = kNumberAt + head.numberBytes + sizeBytes + rateBytes;
    if (head.numberBytes == 0 || size < checked + 1 ||
        headerChecksum(data, checked) != data[checked])
        return std::nullopt;
    const auto number = codedNumber(data + kNumberAt, head.numberBytes);
    if (!number)
        return std::nullopt;
    const std::uint8_t* const extra = data + kNumberAt + head.numberBytes;
    head.number = *number;
    head.samples = codedBlockSize(sizeCode, extra);
    head.sampleRate = codedRate(rateCode, extra + sizeBytes);
    head.headerBytes = checked + 1;
    return head;
}

std::uint16_t flacChecksum(const std::uint8_t* data, std::size_t size, std::uint16_t start) {
    static const auto table = checksumTable<std::uint16_t>(0x8005);
    std::uint16_t crc = start;
    for (std::size_t n = 0; n < size; ++n)
        crc = static_cast<std::uint16_t>((crc << 8) ^ table[(crc >> 8) ^ data[n]]);
    return crc;
}

QByteArray renumberedFlacFrame(const QByteArray& frame, quint64 number) {
    const auto* const data = reinterpret_cast<const std::uint8_t*>(frame.constData());
    const auto head = parseFlacFrame(data, static_cast<std::size_t>(frame.size()));
    constexpr int kFooter = 2;
    if (!head || frame.size() < static_cast<int>(head->headerBytes) + kFooter)
        return frame;
    const auto behindNumber = static_cast<int>(kNumberAt + head->numberBytes);
    const auto headerEnd = static_cast<int>(head->headerBytes);
    QByteArray result = frame.left(kNumberAt) + coded(number) +
                        frame.mid(behindNumber, headerEnd - 1 - behindNumber);
    const auto bytes = [&result] {
        return reinterpret_cast<const std::uint8_t*>(result.constData());
    };
    result.append(
        static_cast<char>(headerChecksum(bytes(), static_cast<std::size_t>(result.size()))));
    result.append(frame.constData() + headerEnd, frame.size() - headerEnd - kFooter);
    const std::uint16_t crc = flacChecksum(bytes(), static_cast<std::size_t>(result.size()));
    result.append(static_cast<char>(crc >> 8));
    result.append(static_cast<char>(crc & 0xFF));
    return result;
}

void clearFlacTotals(QByteArray& header, int infoAt) {
    setFlacTotal(header, infoAt, 0);
    if (header.size() >= infoAt + kFlacInfoBytes)
        header.replace(infoAt + kMd5At, kMd5Bytes, QByteArray(kMd5Bytes, '\0'));
}

void setFlacTotal(QByteArray& header, int infoAt, quint64 samples) {
    if (header.size() < infoAt + kFlacInfoBytes)
        return;
    const int at = infoAt + kTotalAt;
    header[at] =
        static_cast<char>((header.at(at) & 0xF0) | static_cast<char>((samples >> 32) & 15));
    for (int n = 1; n <= 4; ++n)
        header[at + n] = static_cast<char>((samples >> (32 - 8 * n)) & 0xFF);
}

qint64 flacHeaderBytes(const std::uint8_t* data, std::size_t size) {
    if (size >= kMarkerBytes && std::memcmp(data, "fLaC", kMarkerBytes) != 0)
        return -1;
    std::size_t at = kMarkerBytes;
    while (at + kBlockHeader <= size) {
        const bool isLast = (data[at] & 0x80) != 0;
        at += blockBytes(data + at);
        if (isLast)
            return at <= size ? static_cast<qint64>(at) : 0;
    }
    return 0;
}

QByteArray flacPartHeader(const QByteArray& header) {
    constexpr int kSeekTable = 3;
    constexpr int kCueSheet = 5;
    QByteArray result = header.left(kMarkerBytes);
    int lastBlock = 0;
    for (int at = kMarkerBytes; at + kBlockHeader <= header.size();) {
        const auto* const block = reinterpret_cast<const std::uint8_t*>(header.constData()) + at;
        const auto bytes = static_cast<int>(blockBytes(block));
        const int type = block[0] & 0x7F;
        if (type != kSeekTable && type != kCueSheet) {
            lastBlock = result.size();
            result += header.mid(at, bytes);
            result[lastBlock] = static_cast<char>(type);
        }
        at += bytes;
    }
    if (lastBlock > 0)
        result[lastBlock] = static_cast<char>(result.at(lastBlock) | static_cast<char>(0x80));
    clearFlacTotals(result, kFlacLead);
    return result;
}

} // namespace BASS
