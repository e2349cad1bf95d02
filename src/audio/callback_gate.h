#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace BASS {

/// Lets callbacks of one stream through until it is closed; close() waits for those under way.
/// Any thread. A callback that closes its own gate does not wait for itself.
class CallbackGate {
  public:
    /// While it is held and true, the gate is not closed by another thread.
    class Pass {
      public:
        explicit Pass(CallbackGate& gate) : m_gate(gate), m_isOpen(gate.enter()) {}
        ~Pass() {
            if (m_isOpen)
                m_gate.leave();
        }
        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;
        explicit operator bool() const { return m_isOpen; }

      private:
        CallbackGate& m_gate;
        bool m_isOpen;
    };

    void close();

  private:
    bool enter();
    void leave();

    std::mutex m_mutex; ///< guards all below
    std::condition_variable m_left;
    std::vector<std::thread::id> m_inside;
    bool m_isClosed = false;
};

} // namespace BASS
