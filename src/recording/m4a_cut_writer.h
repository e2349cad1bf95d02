#pragma once

#include "recording/cut_writer.h"
#include "recording/mp4_boxes.h"

#include <optional>
#include <vector>

namespace BASS {

/// AAC frames of an ADTS stream as an M4A file in fragments: what is on the disk plays, whenever
/// the program ends. The frame before the cut goes in front, since AAC overlaps its frames, and an
/// edit list takes it out of what is heard.
class M4aCutWriter final : public CutWriter {
  public:
    /// True where a stream with this frame can become an M4A file: one AAC frame in each ADTS
    /// frame, and channels that its header tells.
    static bool canWrite(const AudioFrame& first);

    M4aCutWriter(ByteSink& sink, const FrameHistory& before);

    void write(const AudioFrame& frame) override;
    void takeBack(const FrameHistory& frames) override;
    void flush() override;
    void finish() override;
    [[nodiscard]] double seconds() const override;

  private:
    /// One that is in the file and can still be opened again.
    struct Fragment {
        qint64 offset;
        qint64 start; ///< of its first packet
        std::vector<QByteArray> packets;
    };

    void begin(const AudioFrame& first);
    void take(const AudioFrame& frame);
    void reopen();
    void forgetOld();
    [[nodiscard]] qint64 heard() const;

    ByteSink& m_sink;
    std::optional<AudioFrame> m_before;
    std::optional<AacTrack> m_track; ///< of the first frame
    qint64 m_skipped = 0;            ///< samples
    qint64 m_taken = 0;              ///< packets, in all
    std::vector<QByteArray> m_pending;
    std::vector<Fragment> m_fragments; ///< the newest ones
    quint32 m_number = 0;
};

} // namespace BASS
