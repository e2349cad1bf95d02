#pragma once

#include <QString>

#include <chrono>
#include <deque>

namespace BASS {

/// Some stations put their slogan or the weather between two halves of a song. The rule: a title
/// that within 20 seconds gives way to the one before it has interjected. It is remembered, and
/// from then on neither it nor the return from it begins a new track; the first time it costs a
/// cut, for a title that has just come cannot be told from a song. The last eight are remembered,
/// for as long as the station plays. Pure; time comes from the caller.
class TitleDamper {
  public:
    /// True where the title that has come now is a slogan, or the running song coming back.
    bool isInterjection(const QString& track, std::chrono::milliseconds now);
    /// It has begun a new track.
    void accept(const QString& track, std::chrono::milliseconds now);
    void reset() { *this = {}; }

  private:
    std::deque<QString> m_slogans;
    QString m_current;
    QString m_before; ///< the track that `m_current` followed
    std::chrono::milliseconds m_since{0};
};

} // namespace BASS
