#pragma once

#include <QByteArray>

#include <memory>

namespace BASS {

struct OggLink;

/// What a stream's bytes are, as far as it matters to cutting them.
enum class StreamFormat {
    Unknown, ///< written as it comes, never cut
    Mpeg,    ///< MPEG audio, all layers
    Adts,
    Ogg,      ///< Vorbis, Opus or FLAC in Ogg; the link says which
    OggOther, ///< any other codec in Ogg, written as it comes
    Flac,
    Mp4,
    Asf,
};

/// The smallest piece that a cut may not go through: a frame, or a packet of an Ogg link.
struct AudioFrame {
    QByteArray bytes;
    qint64 position = 0;                 ///< of its first byte in all bytes fed; Ogg: of its page
    qint64 samples = 0;                  ///< a channel; 0: not known
    int sampleRate = 0;                  ///< Hz
    quint32 stream = 0;                  ///< frames of one file have the same number
    bool followsGap = false;             ///< the frame before it in the stream was not seen
    bool isLinkStart = false;            ///< Ogg: the first audio packet of its link
    bool isLinkEnd = false;              ///< Ogg: the last one, as its page says
    qint64 endTrim = 0;                  ///< Ogg: samples at its end that are not to be heard
    std::shared_ptr<const OggLink> link; ///< Ogg only
    QByteArray header;                   ///< native FLAC: the stream's header
};

} // namespace BASS
