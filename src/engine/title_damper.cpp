#include "engine/title_damper.h"

#include <algorithm>

namespace BASS {
namespace {

constexpr std::chrono::seconds kShortest{20};
constexpr std::size_t kMostSlogans = 8;

} // namespace

bool TitleDamper::isInterjection(const QString& track, std::chrono::milliseconds now) {
    if (std::find(m_slogans.begin(), m_slogans.end(), track) != m_slogans.end())
        return true;
    const bool isBack = !track.isEmpty() && track == m_before && now - m_since < kShortest;
    if (isBack) {
        m_slogans.push_back(m_current);
        if (m_slogans.size() > kMostSlogans)
            m_slogans.pop_front();
    }
    return false;
}

void TitleDamper::accept(const QString& track, std::chrono::milliseconds now) {
    m_before = m_current;
    m_current = track;
    m_since = now;
}

} // namespace BASS
