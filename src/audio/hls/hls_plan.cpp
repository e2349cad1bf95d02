#include "audio/hls/hls_plan.h"

#include <algorithm>
#include <cmath>

namespace BASS {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t kSegmentsFromEdge = 3;

/// The rendition of a group that plays when nobody is asked; null: the group is not there.
const HlsRendition* chosenRendition(const HlsPlaylist& master, const std::string& group) {
    const HlsRendition* best = nullptr;
    const auto rank = [](const HlsRendition& r) {
        return (r.isDefault ? 2 : 0) + (r.isAutoselect ? 1 : 0);
    };
    for (const HlsRendition& rendition : master.renditions) {
        if (rendition.group == group && (best == nullptr || rank(rendition) > rank(*best)))
            best = &rendition;
    }
    return best;
}

double targetSeconds(const HlsPlaylist& media) {
    constexpr double kUsual = 6.0;
    return media.targetSeconds > 0.0 ? media.targetSeconds : kUsual;
}

milliseconds between(double seconds, double least, double most) {
    return milliseconds(std::llround(std::clamp(seconds, least, most) * 1000.0));
}

} // namespace

std::vector<std::string> hlsChoices(const HlsPlaylist& master) {
    struct Choice {
        const std::string* uri;
        std::uint64_t bandwidth;
        bool hasVideo;
    };
    std::vector<Choice> choices;
    for (const HlsVariant& variant : master.variants) {
        const HlsRendition* const audio =
            variant.audioGroup.empty() ? nullptr : chosenRendition(master, variant.audioGroup);
        if (audio != nullptr && !audio->uri.empty())
            choices.push_back({&audio->uri, variant.bandwidth, false});
        choices.push_back({&variant.uri, variant.bandwidth, variant.hasVideo});
    }
    std::stable_sort(choices.begin(), choices.end(), [](const Choice& a, const Choice& b) {
        if (a.hasVideo != b.hasVideo)
            return b.hasVideo;
        return a.hasVideo ? a.bandwidth < b.bandwidth : a.bandwidth > b.bandwidth;
    });
    std::vector<std::string> result;
    for (const Choice& choice : choices) {
        if (std::find(result.begin(), result.end(), *choice.uri) == result.end())
            result.push_back(*choice.uri);
    }
    return result;
}

std::size_t hlsFirstSegment(const HlsPlaylist& media) {
    const std::size_t count = media.segments.size();
    if (!media.startOffset)
        return media.hasEnd || count < kSegmentsFromEdge ? 0 : count - kSegmentsFromEdge;
    double at = *media.startOffset;
    if (at < 0.0) {
        for (const HlsSegment& segment : media.segments)
            at += segment.seconds;
    }
    std::size_t index = 0;
    while (index + 1 < count && at >= media.segments[index].seconds)
        at -= media.segments[index++].seconds;
    return index;
}

HlsNext hlsNextSegment(const HlsPlaylist& media, std::uint64_t last) {
    if (media.segments.empty())
        return {media.hasEnd ? HlsNext::What::End : HlsNext::What::Wait, 0, false};
    const std::uint64_t first = media.segments.front().sequence;
    const std::uint64_t newest = media.segments.back().sequence;
    if (last + 1 < first)
        return {HlsNext::What::Fetch, 0, true};
    if (last < newest)
        return {HlsNext::What::Fetch, static_cast<std::size_t>(last + 1 - first), false};
    // a server that lags behind its twin by a segment or two is no restart of the numbers
    const bool hasRestarted = last > newest + media.segments.size();
    if (hasRestarted)
        return {HlsNext::What::Fetch, hlsFirstSegment(media), true};
    return {media.hasEnd ? HlsNext::What::End : HlsNext::What::Wait, 0, false};
}

milliseconds hlsReloadPause(const HlsPlaylist& media, bool hasNew) {
    constexpr double kLeast = 0.5;
    constexpr double kMost = 30.0;
    return between(targetSeconds(media) * (hasNew ? 1.0 : 0.5), kLeast, kMost);
}

milliseconds hlsPatience(const HlsPlaylist& media) {
    constexpr double kLeast = 15.0;
    constexpr double kMost = 90.0;
    return between(targetSeconds(media) * 3.0, kLeast, kMost);
}

} // namespace BASS
