#include "audio/ffmpeg/pcm_tap.h"

#include "audio/ffmpeg/encoder.h"

#include <algorithm>

namespace BASS {
namespace {

constexpr std::chrono::milliseconds kHold{500};
constexpr std::uint64_t kMarkSeconds = 60;
constexpr std::size_t kChannels = 2;

} // namespace

PcmTap::PcmTap(int rate)
    : m_rate(static_cast<std::uint64_t>(rate)), m_markFrames(m_rate * kMarkSeconds) {
    setHold(kHold);
}

void PcmTap::setHold(std::chrono::milliseconds hold) {
    const std::lock_guard lock(m_mutex);
    m_holdFrames = m_rate * static_cast<std::uint64_t>(hold.count()) / 1000;
}

void PcmTap::feed(const float* samples, std::size_t frames, std::uint64_t bytePosition) {
    const std::lock_guard lock(m_mutex);
    takeCuts();
    if (m_lines.empty())
        return;
    m_marks.push_back({bytePosition, m_fed});
    m_chunks.push_back({m_fed, std::vector<float>(samples, samples + frames * kChannels)});
    m_fed += frames;
    for (Line& line : m_lines) {
        findPlaces(line);
        serve(line, dueFrame());
    }
    forget();
}

std::uint64_t PcmTap::dueFrame() const {
    return m_fed > m_holdFrames ? m_fed - m_holdFrames : 0;
}

void PcmTap::findPlaces(Line& line) const {
    std::uint64_t earliest = line.next;
    for (Stage& stage : line.stages) {
        if (&stage == &line.stages.front())
            continue;
        const auto frame = frameAt(stage.where.bytePosition);
        if (!stage.begin && frame)
            stage.begin = std::max(*frame + stage.where.delayFrames, earliest);
        if (!stage.begin)
            return; // nor is any later one
        earliest = *stage.begin;
    }
}

/// With m_mutex held. Nothing: not decoded yet.
std::optional<std::uint64_t> PcmTap::frameAt(std::uint64_t bytePosition) const {
    const auto mark = std::find_if(m_marks.begin(), m_marks.end(), [bytePosition](const Mark& m) {
        return m.bytePosition >= bytePosition;
    });
    return mark != m_marks.end() ? std::optional(mark->frame) : std::nullopt;
}

std::optional<std::uint64_t> PcmTap::encodedFrame(const Encoder& encoder,
                                                  std::uint64_t bytePosition) {
    const std::lock_guard lock(m_mutex);
    takeCuts();
    const auto line = lineOf(encoder);
    const auto frame = frameAt(bytePosition);
    if (line == m_lines.end() || line->stages.front().encoder.get() != &encoder || !frame ||
        *frame > line->next)
        return std::nullopt;
    const std::uint64_t given = line->stages.front().given;
    return given - std::min(given, line->next - *frame);
}

/// Hands frames on, each to the encoder whose turn it is. What lies before a cut that has been
/// decoded need not be held back any more.
void PcmTap::serve(Line& line, std::uint64_t upTo) const {
    while (line.stages.size() > 1 && line.stages[1].begin && *line.stages[1].begin <= m_fed) {
        give(line, *line.stages[1].begin);
        line.stages.front().encoder->finish(true);
        line.stages.pop_front();
    }
    give(line, upTo);
}

void PcmTap::give(Line& line, std::uint64_t upTo) const {
    for (const Chunk& chunk : m_chunks) {
        const std::uint64_t end = chunk.first + chunk.samples.size() / kChannels;
        const std::uint64_t from = std::max(chunk.first, line.next);
        const std::uint64_t to = std::min(end, upTo);
        if (from >= to)
            continue;
        if (!line.isPaused) {
            Stage& stage = line.stages.front();
            stage.encoder->push(chunk.samples.data() + (from - chunk.first) * kChannels,
                                static_cast<std::size_t>(to - from));
            stage.given += to - from;
        }
        line.next = to;
    }
}

void PcmTap::forget() {
    const std::uint64_t due = dueFrame();
    while (!m_chunks.empty() &&
           m_chunks.front().first + m_chunks.front().samples.size() / kChannels <= due)
        m_chunks.pop_front();
    while (m_marks.size() > 1 && m_marks[1].frame + m_markFrames < m_fed)
        m_marks.pop_front();
}

bool PcmTap::attach(std::shared_ptr<Encoder> encoder, bool isPaused) {
    const std::lock_guard lock(m_mutex);
    if (m_isClosed)
        return false;
    Line line;
    line.stages.push_back({std::move(encoder), {}, std::nullopt});
    line.next = m_fed;
    line.isPaused = isPaused;
    {
        const std::lock_guard ends(m_cutMutex);
        m_ends.push_back(line.stages.back().encoder->handle());
    }
    m_lines.push_back(std::move(line));
    m_isUsed.store(true);
    return true;
}

bool PcmTap::stop(const Encoder& encoder, bool isComplete) {
    const std::lock_guard lock(m_mutex);
    takeCuts();
    const auto line = lineOf(encoder);
    if (line == m_lines.end())
        return false;
    if (isComplete)
        serve(*line, m_fed);
    const auto last = stageOf(*line, encoder);
    if (last == line->stages.end())
        return true; // its turn has come and gone meanwhile
    const auto behind = std::next(last);
    std::for_each(line->stages.begin(), behind, [isComplete](const Stage& stage) {
        stage.encoder->finish(isComplete);
    });
    if (behind == line->stages.end()) {
        remove(*line);
        takeCuts(); // what came in between
        return true;
    }
    line->stages.erase(line->stages.begin(), behind);
    line->next = m_fed; // whoever waited is on now
    return true;
}

void PcmTap::close() {
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    takeCuts();
    while (!m_lines.empty()) {
        Line& line = m_lines.front();
        serve(line, m_fed);
        for (const Stage& stage : line.stages)
            stage.encoder->finish(true);
        remove(line);
    }
    takeCuts(); // what came in between
}

bool PcmTap::release(const Encoder& encoder) {
    const std::lock_guard lock(m_mutex);
    takeCuts();
    const auto line = lineOf(encoder);
    if (line == m_lines.end())
        return false;
    serve(*line, m_fed);
    if (stageOf(*line, encoder) == line->stages.end())
        return false; // its turn has come and gone meanwhile
    for (const Stage& stage : line->stages)
        if (stage.encoder.get() != &encoder)
            stage.encoder->finish(true);
    remove(*line);
    return true;
}

void PcmTap::remove(const Line& line) {
    forgetEnd(line.stages.back().encoder->handle());
    m_lines.erase(std::find_if(
        m_lines.begin(), m_lines.end(), [&line](const Line& other) { return &other == &line; }));
    if (!m_lines.empty())
        return;
    m_isUsed.store(false);
    m_chunks.clear();
    m_marks.clear();
}

bool PcmTap::setPaused(const Encoder& encoder, bool isPaused) {
    const std::lock_guard lock(m_mutex);
    takeCuts();
    const auto line = lineOf(encoder);
    if (line == m_lines.end())
        return false;
    serve(*line, m_fed); // up to now as it was
    line->isPaused = isPaused;
    return true;
}

std::size_t PcmTap::queuedFrames() const {
    const std::lock_guard lock(m_mutex);
    std::size_t most = 0;
    for (const Line& line : m_lines)
        if (Encoder& encoder = *line.stages.front().encoder; encoder.isRunning())
            most = std::max(most, encoder.queuedFrames());
    return most;
}

bool PcmTap::isPaused(const Encoder& encoder) {
    const std::lock_guard lock(m_mutex);
    takeCuts();
    return std::any_of(m_lines.begin(), m_lines.end(), [&encoder](const Line& line) {
        return line.isPaused &&
               std::any_of(line.stages.begin(), line.stages.end(), [&encoder](const Stage& stage) {
                   return stage.encoder.get() == &encoder;
               });
    });
}

bool PcmTap::isClosed() const {
    const std::lock_guard lock(m_mutex);
    return m_isClosed;
}

/// The others hold their mutex while they copy audio, and for as long as the system lets another
/// thread run meanwhile: a cut is left at the door.
bool PcmTap::cut(const Encoder& old, std::shared_ptr<Encoder> next, const Cut& where) {
    const std::lock_guard lock(m_cutMutex);
    const auto end = std::find(m_ends.begin(), m_ends.end(), old.handle());
    if (end == m_ends.end())
        return false;
    *end = next->handle();
    m_cuts.push_back({old.handle(), {std::move(next), where, std::nullopt}});
    return true;
}

void PcmTap::settle() {
    {
        const std::lock_guard lock(m_cutMutex);
        if (m_cuts.empty())
            return;
    }
    const std::lock_guard lock(m_mutex);
    takeCuts();
}

/// With m_mutex held. No frame has been handed on since they came: it is as if they were made there
/// and then.
void PcmTap::takeCuts() {
    std::vector<WaitingCut> cuts;
    {
        const std::lock_guard lock(m_cutMutex);
        cuts.swap(m_cuts);
    }
    for (WaitingCut& cut : cuts) {
        const auto line = std::find_if(m_lines.begin(), m_lines.end(), [&cut](const Line& one) {
            return one.stages.back().encoder->handle() == cut.old;
        });
        if (line == m_lines.end()) {
            forgetEnd(cut.stage.encoder->handle());
            cut.stage.encoder->finish(false);
            continue;
        }
        line->stages.push_back(std::move(cut.stage));
        findPlaces(*line);
        serve(*line, dueFrame());
    }
}

void PcmTap::forgetEnd(HENCODE encoder) {
    const std::lock_guard lock(m_cutMutex);
    m_ends.erase(std::remove(m_ends.begin(), m_ends.end(), encoder), m_ends.end());
}

std::deque<PcmTap::Line>::iterator PcmTap::lineOf(const Encoder& encoder) {
    return std::find_if(m_lines.begin(), m_lines.end(), [&encoder](Line& line) {
        return stageOf(line, encoder) != line.stages.end();
    });
}

std::deque<PcmTap::Stage>::iterator PcmTap::stageOf(Line& line, const Encoder& encoder) {
    return std::find_if(line.stages.begin(), line.stages.end(), [&encoder](const Stage& stage) {
        return stage.encoder.get() == &encoder;
    });
}

} // namespace BASS
