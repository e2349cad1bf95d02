#pragma once

#include "recording/ogg_link.h"

#include <QByteArray>

#include <memory>

namespace BASS {

/// Tells how many samples the audio packets of one link stand for. Not for Unknown. Pure; any one
/// thread.
class OggPacketLengths final {
  public:
    /// The link has all its header packets.
    explicit OggPacketLengths(const OggLink& link);
    ~OggPacketLengths();

    /// Samples a channel that a decoder gives for the next packet; 0 for the first one of a Vorbis
    /// stream and for damaged ones.
    qint64 samples(const QByteArray& packet);

  private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

/// True once `packets` are all the headers that the codec has.
bool areOggHeadersComplete(OggCodec codec, const std::vector<QByteArray>& packets);

/// Sample rate and channels by the first header packet; zeros where it is damaged.
void readOggFormat(OggLink& link);

} // namespace BASS
