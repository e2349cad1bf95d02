#pragma once

#include "stations/song.h"

#include <QByteArray>

#include <vector>

namespace BASS {

enum class OggCodec { Unknown, Vorbis, Opus, Flac };

/// One logical stream of an Ogg chain: what its header packets say. A plain value.
struct OggLink {
    OggCodec codec = OggCodec::Unknown;
    std::vector<QByteArray> headers; ///< the header packets, whole
    int sampleRate = 0;              ///< of granule positions, Hz
    int channels = 0;
};

/// The codec that a logical stream's first packet names.
OggCodec oggCodec(const QByteArray& firstPacket);

/// The song that a link's comments name; empty where they name none.
Song oggSong(const OggLink& link);

} // namespace BASS
