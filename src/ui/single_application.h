#pragma once

#include "app/instance_guard.h"

#include <QApplication>

#include <optional>

namespace QT_EXT {

/// The application object that knows whether it is the first of its kind; all of that is
/// InstanceGuard's. Thread: main thread. Life: identity set before; the first thing after
/// construction is to obey exitCode().
class SingleApplication final : public QApplication {
    Q_OBJECT

  public:
    /// argc must outlive the object, as with QApplication.
    SingleApplication(int& argc,
                      char** argv,
                      bool allowSecondary = false,
                      int options = InstanceOption::kPerUser,
                      int timeoutMs = 1000,
                      const QStringList& userData = {});

    [[nodiscard]] bool isSecondary() const { return m_guard.isSecondary(); }
    [[nodiscard]] quint32 instanceId() const { return m_guard.instanceId(); }
    [[nodiscard]] qint64 primaryPid() { return m_guard.primaryPid(); }
    [[nodiscard]] QString primaryUser() { return m_guard.primaryUser(); }
    /// Where set, main() returns it at once: 1 after a fault of the shared memory (already logged),
    /// 0 where another instance runs and this one may not.
    [[nodiscard]] std::optional<int> exitCode() const { return m_guard.exitCode(); }
    [[nodiscard]] QString faultText() const { return m_guard.faultText(); }

    /// Blocks up to the timeout for the connection. False in the primary.
    bool sendMessage(const QByteArray& message,
                     int timeoutMs,
                     InstanceGuard::AfterSend afterSend = InstanceGuard::AfterSend::Return);

  signals:
    /// Messages that come before somebody listens wait.
    void receivedMessage(quint32 instanceId, QByteArray message);
    void instanceStarted();

  protected:
    void connectNotify(const QMetaMethod& signal) override;

  private:
    InstanceGuard m_guard;
};

} // namespace QT_EXT
