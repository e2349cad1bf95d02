#pragma once

#include "audio/frame_header.h"

#include <QByteArray>

#include <cstdint>
#include <vector>

// The frames that a cut MP3 file begins with. Pure functions, any thread.

namespace BASS {

/// Where the frames of a file lie, for the table of contents: byte offsets of every n-th frame; n
/// grows so that the list stays short.
class Mp3SeekTable {
  public:
    void add(qint64 offset);
    /// Forgets the newest frames.
    void takeBack(qint64 frames);
    [[nodiscard]] qint64 frames() const { return m_frames; }
    /// The byte offset of a frame, or of one shortly before it.
    [[nodiscard]] qint64 offsetOf(qint64 frame) const;

  private:
    std::vector<qint64> m_offsets;
    qint64 m_step = 1;
    qint64 m_frames = 0;
};

struct Mp3InfoFields {
    int delay = 0; ///< encoder delay in samples, 0 to 4095; decoders skip it and 529 more
    bool isVariable = false;
    qint64 audioBytes = 0;               ///< with the Info frame; 0: not known yet
    const Mp3SeekTable* table = nullptr; ///< frames without the Info frame; null: not known yet
};

/// The samples that decoders skip beside the delay that is written.
constexpr int kMp3DecoderDelay = 529;
constexpr int kMaxMp3Delay = 4095;

/// An Info frame ("Xing" where the bitrate varies) with the extension that carries the encoder
/// delay. Its size depends on `model` alone, so that it can be rewritten in place. `model`: any
/// frame of the stream.
QByteArray mp3InfoFrame(const std::uint8_t* model, const Mp3InfoFields& fields);

/// A silent frame whose unused part ends with `reservoir`, the main data that the frame behind it
/// reaches back to.
QByteArray mp3CarrierFrame(const std::uint8_t* model, const QByteArray& reservoir);

/// True for the frame that describes a file and carries no audio ("Xing", "Info" or "VBRI").
bool isMp3InfoFrame(const QByteArray& frame);

/// A layer 3 frame's own main data (behind header, checksum and side information); empty for other
/// layers.
QByteArray mp3MainData(const QByteArray& frame);

} // namespace BASS
