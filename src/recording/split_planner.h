#pragma once

#include "stations/song.h"

#include <chrono>
#include <deque>
#include <optional>

namespace BASS {

/// Decides before which frame a file is cut. Every title starts a delay that runs in stream time
/// from the first frame at or behind the title's place; each delay that runs out is one cut, named
/// after the newest title reached by then. Pure; any one thread.
class SplitPlanner {
  public:
    /// A delay of 200 ms or less is not waited for; the threshold is deliberate.
    explicit SplitPlanner(std::chrono::milliseconds delay);

    void addTitle(const Song& song, qint64 position);
    /// Asked for every frame in order, before it is written; `time` is the stream time at its
    /// start. A song: the file of that song begins with this frame. Asking again for frames already
    /// asked for changes nothing but for titles that came since.
    std::optional<Song> beforeFrame(qint64 position, std::chrono::microseconds time);
    /// Titles behind the last byte of a connection belong to the first frame that follows.
    void endConnection(qint64 position);

  private:
    struct Title {
        Song song;
        qint64 position;
        std::optional<std::chrono::microseconds> due;
    };

    std::chrono::microseconds m_delay;
    std::deque<Title> m_titles;
    Song m_newest;
};

} // namespace BASS
