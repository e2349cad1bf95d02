#pragma once

#include <cmath>

namespace BASS {

/// AtOnce is for before anything was heard.
enum class Transition { Gradual, AtOnce };

/// A number that moves to its target along a critically damped curve: neither a jump nor a corner,
/// so that not even a pure bass tone clicks. Settles in about 60 ms. Any one thread.
class SmoothedValue {
  public:
    SmoothedValue(double value, int rate)
        : m_omega(kSpeed / rate), m_value(value), m_target(value) {}

    void setTarget(double target) { m_target = target; }
    void setTarget(double target, Transition transition) {
        m_target = target;
        if (transition == Transition::AtOnce) {
            m_value = target;
            m_velocity = 0.0;
        }
    }
    [[nodiscard]] bool isSteady() const { return m_value == m_target && m_velocity == 0.0; }
    [[nodiscard]] double value() const { return m_value; }
    /// One frame further.
    double next() {
        constexpr double kNear = 1e-6;
        if (isSteady())
            return m_value;
        const double left = m_target - m_value;
        m_velocity += m_omega * (m_omega * left - 2.0 * m_velocity);
        m_value += m_velocity;
        if (std::abs(m_target - m_value) < kNear && std::abs(m_velocity) < kNear * m_omega) {
            m_value = m_target;
            m_velocity = 0.0;
        }
        return m_value;
    }

  private:
    static constexpr double kSpeed = 120.0; ///< rad/s
    double m_omega;
    double m_value;
    double m_target;
    double m_velocity = 0.0;
};

} // namespace BASS
