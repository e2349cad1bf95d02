#pragma once

#include <QByteArray>

#include <vector>

// The boxes of an M4A file in fragments (ISO/IEC 14496-12, with the descriptors of 14496-1 and
// 14496-14). Pure functions, any thread.

namespace BASS {

/// What an AAC track needs to be told of itself.
struct AacTrack {
    int objectType = 2; ///< of MPEG-4 audio; 2: low complexity
    int rateIndex = 4;  ///< of ISO/IEC 14496-3, table 1.18
    int channels = 2;   ///< channel configuration
    int sampleRate = 44100;
};

/// Everything before the first fragment. `skipped`: samples at the beginning that an edit list
/// takes from what is heard. `duration`: samples that are heard; 0: not known yet, and the header
/// has the same length.
QByteArray mp4Header(const AacTrack& track, qint64 skipped, qint64 duration);

/// One fragment of packets, which are the file's samples: 1024 of the track's each.
/// `number`: from 1; `start`: decode time of its first sample.
QByteArray mp4Fragment(quint32 number, qint64 start, const std::vector<QByteArray>& packets);

} // namespace BASS
