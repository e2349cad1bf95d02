#pragma once

#include "recording/ogg_link.h"
#include "recording/stream_parser.h"

#include <memory>

namespace BASS {

/// Takes a chained Ogg stream (RFC 3533) apart into the audio packets of its links: Vorbis I, Opus
/// (RFC 7845) and FLAC in Ogg. Beside the first logical stream of a link that is one of these,
/// streams multiplexed into it are left out. Works from any page on once a link's headers were
/// given.
class OggSplitter final : public StreamParser {
  public:
    explicit OggSplitter(qint64 position);
    ~OggSplitter() override;

    void push(const char* data, qsizetype size, FrameList& frames) override;
    void finish(FrameList&) override {}
    [[nodiscard]] qint64 droppedBytes() const override;
    QByteArray takeForeign(bool isEnd) override;

  private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

} // namespace BASS
