#pragma once

#include <QObject>

#include <functional>
#include <mutex>
#include <vector>

namespace BASS {

/// Carries calls from any thread to the thread that it lives on, in their order. What is not
/// delivered when it goes is dropped with it.
class Mailbox final : public QObject {
    Q_DISABLE_COPY_MOVE(Mailbox)

  public:
    Mailbox() = default;
    /// Any thread.
    void post(std::function<void()> call);

  protected:
    void customEvent(QEvent* event) override;

  private:
    std::mutex m_mutex; ///< guards m_calls
    std::vector<std::function<void()>> m_calls;
};

} // namespace BASS
