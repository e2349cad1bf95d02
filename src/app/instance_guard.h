#pragma once

#include "app/instance_name.h"

#include <QByteArray>
#include <QObject>

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

class InstanceClient;
class InstanceServerThread;
class SharedBlock;
struct InstanceBlock;

/// How instances of the program are to meet.
struct InstanceSetup {
    bool isSecondaryAllowed = false;
    int options = InstanceOption::kPerUser;
    std::chrono::milliseconds timeout{1000};
    QStringList userData;
};

/// Decides at construction which of the processes of one identity is the primary, and carries
/// messages to it. A killed primary is noticed by its process and replaced by the next start.
/// Thread: the one that made it; the primary's socket is served on a thread of its own, the signals
/// come on this one. Owner: the application object. Life: the application's identity is set before.
class InstanceGuard final : public QObject {
    Q_OBJECT

  public:
    enum class Role {
        Primary,
        Secondary,
        Refused, ///< another runs and secondaries are not allowed: the process exits with 0
        Faulty,  ///< shared memory failed: the process exits with 1
    };

    explicit InstanceGuard(const InstanceSetup& setup, QObject* parent = nullptr);
    /// A primary gives its place up.
    ~InstanceGuard() override;

    [[nodiscard]] Role role() const { return m_role; }
    [[nodiscard]] bool isSecondary() const { return m_role != Role::Primary; }
    /// What the process must exit with, where it must.
    [[nodiscard]] std::optional<int> exitCode() const;
    /// What failed, where the role is Faulty; already logged.
    [[nodiscard]] QString faultText() const { return m_fault; }

    /// 0 for the primary, counted up for secondaries.
    [[nodiscard]] quint32 instanceId() const { return m_instanceId; }
    [[nodiscard]] QString serverName() const { return m_name; }
    /// From the shared block; 0 and empty where there is no primary.
    [[nodiscard]] qint64 primaryPid();
    [[nodiscard]] QString primaryUser();

    enum class AfterSend { Return, WaitForPrimaryExit };
    /// Blocks. False in the primary itself, and where the message was not acknowledged.
    bool sendMessage(const QByteArray& message,
                     std::chrono::milliseconds timeout,
                     AfterSend afterSend = AfterSend::Return);

  signals:
    /// Kept back until somebody listens.
    void receivedMessage(quint32 instanceId, const QByteArray& message);
    void instanceStarted();

  protected:
    void connectNotify(const QMetaMethod& signal) override;
    void customEvent(QEvent* event) override;

  private:
    struct Message {
        quint32 instanceId;
        QByteArray bytes;
    };

    bool openBlock();
    bool waitForConsistentBlock();
    void settleRole();
    [[nodiscard]] bool isPrimaryAlive() const;
    void becomePrimary();
    void becomeSecondary();
    void refuse();
    void leaveBlock();
    void fail(const char* what);
    void unlock(const char* complaint);
    InstanceBlock& block() const;
    void postMail();
    void takeMessage(quint32 instanceId, const QByteArray& message);
    void deliver();

    const InstanceSetup m_setup;
    const QString m_name;
    Role m_role = Role::Faulty;
    QString m_fault;
    quint32 m_instanceId = 0;
    std::unique_ptr<SharedBlock> m_block;
    std::unique_ptr<InstanceClient> m_client;

    std::mutex m_mailMutex; // guards the two below; the server's thread fills them
    std::vector<Message> m_messages;
    int m_started = 0; ///< instances that have told so and were not announced yet

    std::unique_ptr<InstanceServerThread> m_server;
};
