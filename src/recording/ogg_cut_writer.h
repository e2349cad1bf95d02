#pragma once

#include "recording/cut_writer.h"

namespace BASS {

/// Vorbis, Opus and FLAC in Ogg, packet by packet: every link becomes a logical stream of its own
/// with the headers as served, a serial of its own and granules from zero; it ends with an end
/// mark. A file that begins inside a link begins with a pre-roll: the Vorbis packet before it (a
/// decoder gives nothing for the first one), or 80 ms of Opus packets that the pre-skip hides.
/// Where there is none, the first 80 ms of an Opus recording are hidden while the decoder settles.
///
/// Pages are handed out after half a second of audio at the latest; flush() keeps nothing back.
/// What ends behind a flush gets its end mark on a page without packets.
class OggCutWriter final : public CutWriter {
  public:
    OggCutWriter(ByteSink& sink, const FrameHistory& before, quint32 serial);
    ~OggCutWriter() override;

    void write(const AudioFrame& frame) override;
    /// Never asked for: titles of Ogg streams stand between links.
    void takeBack(const FrameHistory& frames) override;
    void flush() override;
    void finish() override;
    [[nodiscard]] double seconds() const override;

  private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

} // namespace BASS
