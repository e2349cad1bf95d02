#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <optional>

// FLAC stream headers and frame headers (RFC 9639). Pure functions, any thread.

namespace BASS {

constexpr int kFlacInfoBytes = 34; ///< of STREAMINFO without its block header
constexpr int kFlacInOggLead = 17; ///< bytes before it in an Ogg stream's first packet
constexpr int kFlacLead = 8;       ///< bytes before it in a native stream
constexpr std::size_t kMaxFlacFrameHeader = 16;

struct FlacInfo {
    int sampleRate = 0;
    int channels = 0;
    int blockSize = 0; ///< the largest, in samples
};

struct FlacFrameHead {
    std::size_t headerBytes = 0; ///< with the checksum behind it
    std::size_t numberBytes = 0; ///< of the coded number, which begins at byte 4
    quint64 number = 0;          ///< of the first sample, or of the frame where blocks are fixed
    bool isVariable = false;     ///< the number counts samples
    int samples = 0;
    int sampleRate = 0; ///< 0: as the stream header says
};

/// `data`: 34 bytes behind the block header.
FlacInfo parseFlacInfo(const std::uint8_t* data);

/// Nothing where the bytes are no frame header or its checksum is wrong.
std::optional<FlacFrameHead> parseFlacFrame(const std::uint8_t* data, std::size_t size);

/// CRC-16 of a frame; 0 over a whole frame with its own checksum at the end.
std::uint16_t flacChecksum(const std::uint8_t* data, std::size_t size, std::uint16_t start = 0);

/// The frame with another number, and with the checksums that belong to it.
QByteArray renumberedFlacFrame(const QByteArray& frame, quint64 number);

/// Number of samples and checksum of the audio: not known.
void clearFlacTotals(QByteArray& header, int infoAt);
void setFlacTotal(QByteArray& header, int infoAt, quint64 samples);

/// Bytes of "fLaC" and all metadata blocks at the start of `data`; 0: not all there, -1: no FLAC
/// stream.
qint64 flacHeaderBytes(const std::uint8_t* data, std::size_t size);

/// The header of a part of the stream: without seek table and cue sheet, without totals.
QByteArray flacPartHeader(const QByteArray& header);

} // namespace BASS
