#include "audio/ffmpeg/gain_ramp.h"

namespace BASS {

void GainRamp::set(float value, std::uint32_t frames) {
    publish(value, frames, false);
}

void GainRamp::slide(float value, std::uint32_t frames) {
    publish(value, frames, true);
}

void GainRamp::publish(float value, std::uint32_t frames, bool isSlide) {
    const std::uint32_t last = m_sequence.load();
    float from = -1.0F;
    if (m_taken.load() != last) // the output has not met the last command: go on from its end
        from = m_frames.load() == 0 ? m_target.load() : m_from.load();
    m_sequence.store(last + 1);
    m_from.store(from);
    m_target.store(value);
    m_frames.store(frames);
    if (isSlide)
        m_slidesBegun.fetch_add(1);
    else
        m_slidesEnded.store(m_slidesBegun.load()); // replaces a slide under way
    m_sequence.store(last + 2);
}

float GainRamp::current() const {
    if (m_taken.load() == m_sequence.load())
        return m_heard.load();
    if (m_frames.load() == 0)
        return m_target.load();
    const float from = m_from.load();
    return from < 0.0F ? m_heard.load() : from;
}

void GainRamp::takeCommand() {
    const std::uint32_t sequence = m_sequence.load();
    if ((sequence & 1) != 0 || sequence == m_taken.load())
        return;
    const float from = m_from.load();
    const float target = m_target.load();
    const std::uint32_t frames = m_frames.load();
    const std::uint32_t slide = m_slidesBegun.load();
    if (m_sequence.load() != sequence)
        return; // being rewritten: the next block takes it
    if (from >= 0.0F)
        m_gain = from;
    m_goal = target;
    m_framesLeft = frames;
    m_slide = slide;
    m_step = frames > 0 ? (target - m_gain) / static_cast<float>(frames) : 0.0F;
    if (frames == 0) {
        m_gain = target;
        m_hasEnded = true;
    }
    m_heard.store(m_gain);
    m_taken.store(sequence);
}

float GainRamp::next() {
    if (m_framesLeft > 0) {
        m_gain += m_step;
        if (--m_framesLeft == 0) {
            m_gain = m_goal; // without the sum's rounding
            m_hasEnded = true;
        }
    }
    return m_gain;
}

bool GainRamp::takeSlideEnd() {
    m_heard.store(m_gain);
    if (!m_hasEnded)
        return false;
    m_hasEnded = false;
    std::uint32_t ended = m_slidesEnded.load();
    while (static_cast<std::int32_t>(m_slide - ended) > 0)
        if (m_slidesEnded.compare_exchange_weak(ended, m_slide))
            return true;
    return false; // no slide, or one that a later command has replaced
}

} // namespace BASS
