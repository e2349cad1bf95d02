#include "recording/split_planner.h"

#include <algorithm>

namespace BASS {

using std::chrono::microseconds;
using std::chrono::milliseconds;

SplitPlanner::SplitPlanner(milliseconds delay)
    : m_delay(delay > milliseconds(200) ? delay : milliseconds(0)) {}

void SplitPlanner::addTitle(const Song& song, qint64 position) {
    m_titles.push_back({song, position, std::nullopt});
}

std::optional<Song> SplitPlanner::beforeFrame(qint64 position, microseconds time) {
    for (Title& title : m_titles) {
        if (title.due || title.position > position)
            continue;
        title.due = time + m_delay;
        m_newest = title.song;
    }
    const auto isDue = [time](const Title& title) { return title.due && *title.due <= time; };
    const auto end = std::remove_if(m_titles.begin(), m_titles.end(), isDue);
    if (end == m_titles.end())
        return std::nullopt;
    m_titles.erase(end, m_titles.end());
    return m_newest;
}

void SplitPlanner::endConnection(qint64 position) {
    for (Title& title : m_titles)
        title.position = std::min(title.position, position);
}

} // namespace BASS
