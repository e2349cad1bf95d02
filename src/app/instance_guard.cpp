#include "app/instance_guard.h"

#include "app/instance_block.h"
#include "app/instance_client.h"
#include "app/instance_server_thread.h"
#include "base/log.h"
#include "platform/process.h"
#include "platform/shared_block.h"
#include "platform/user_name.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QMetaMethod>

#include <utility>

namespace {
constexpr qint64 kInconsistentMs = 5000;
constexpr std::size_t kMostHeld = 256;

bool isPerUser(const InstanceSetup& setup) {
    return (setup.options & InstanceOption::kPerUser) != 0;
}

SharedBlock::Scope scopeOf(const InstanceSetup& setup) {
    return isPerUser(setup) ? SharedBlock::Scope::User : SharedBlock::Scope::System;
}
} // namespace

InstanceGuard::InstanceGuard(const InstanceSetup& setup, QObject* parent)
    : QObject(parent), m_setup(setup),
      m_name(blockServerName(currentIdentity(setup.userData), setup.options)),
      m_block(std::make_unique<SharedBlock>(m_name, kInstanceBlockBytes, scopeOf(setup))),
      m_client(std::make_unique<InstanceClient>(m_name,
                                                isPerUser(setup) ? InstanceClient::Peer::SameUser
                                                                 : InstanceClient::Peer::AnyUser)) {
    if (openBlock() && waitForConsistentBlock())
        settleRole();
}

InstanceGuard::~InstanceGuard() {
    if (m_role == Role::Primary)
        leaveBlock();
}

std::optional<int> InstanceGuard::exitCode() const {
    if (m_role == Role::Faulty)
        return 1;
    if (m_role == Role::Refused)
        return 0;
    return std::nullopt;
}

void InstanceGuard::fail(const char* what) {
    m_role = Role::Faulty;
    m_fault = QLatin1String(what);
    qCCritical(lcApp, "%s error=%ls", what, qUtf16Printable(m_block->errorText()));
}

void InstanceGuard::unlock(const char* complaint) {
    if (!m_block->unlock())
        qCWarning(lcApp, "%s error=%ls", complaint, qUtf16Printable(m_block->errorText()));
}

InstanceBlock& InstanceGuard::block() const {
    return *reinterpret_cast<InstanceBlock*>(m_block->data());
}

bool InstanceGuard::openBlock() {
    const SharedBlock::Opened opened = m_block->create();
    if (opened == SharedBlock::Opened::Failed) {
        fail("SingleApplication: Unable to create block.");
        return false;
    }
    if (opened == SharedBlock::Opened::Created) {
        if (m_block->lock())
            return true;
        fail("SingleApplication: Unable to lock memory block after create.");
        return false;
    }
    // The last holder may go in between: then the block is made anew.
    if (!m_block->attach() && m_block->create() != SharedBlock::Opened::Created) {
        fail("SingleApplication: Unable to attach to shared memory block.");
        return false;
    }
    if (m_block->lock())
        return true;
    fail("SingleApplication: Unable to lock memory block after attach.");
    return false;
}

bool InstanceGuard::waitForConsistentBlock() {
    QElapsedTimer waited;
    waited.start();
    for (;;) {
        // Its maker may have died or not have come so far; whoever holds the lock first may do it.
        if (isBlockUntouched(block()))
            resetBlock(block());
        if (isBlockConsistent(block()))
            return true;
        if (waited.elapsed() > kInconsistentMs) {
            qCWarning(lcApp,
                      "SingleApplication: Shared memory block has been in an inconsistent state "
                      "from more than 5s. Assuming primary instance failure.");
            resetBlock(block());
            return true;
        }
        unlock("SingleApplication: Unable to unlock memory for random wait.");
        pauseRandomly();
        if (!m_block->lock()) {
            fail("SingleApplication: Unable to lock memory after random wait.");
            return false;
        }
    }
}

bool InstanceGuard::isPrimaryAlive() const {
    if (!block().isPrimaryPresent)
        return false;
    if (isThisProgramRunning(block().primaryPid))
        return true;
    qCWarning(lcApp, "SingleApplication: the primary is gone pid=%lld", block().primaryPid);
    return false;
}

void InstanceGuard::settleRole() {
    if (!isPrimaryAlive()) {
        becomePrimary();
        unlock("SingleApplication: Unable to unlock memory after primary start.");
    } else if (m_setup.isSecondaryAllowed) {
        becomeSecondary();
        unlock("SingleApplication: Unable to unlock memory after secondary start.");
    } else {
        unlock("SingleApplication: Unable to unlock memory at end of execution.");
        refuse();
    }
}

void InstanceGuard::becomePrimary() {
    m_role = Role::Primary;
    InstanceServer::Events events;
    events.message = [this](quint32 instanceId, const QByteArray& message) {
        takeMessage(instanceId, message);
    };
    events.instanceStarted = [this] {
        {
            const std::lock_guard<std::mutex> lock(m_mailMutex);
            ++m_started;
        }
        postMail();
    };
    m_server = std::make_unique<InstanceServerThread>(
        m_name,
        isPerUser(m_setup) ? InstanceServer::Access::SameUser : InstanceServer::Access::AllUsers,
        std::move(events));
    const QString problem = m_server->begin();
    if (!problem.isEmpty())
        qCCritical(lcApp,
                   "SingleApplication: other instances cannot reach this one error=%ls",
                   qUtf16Printable(problem));
    setBlockPrimary(block(), QCoreApplication::applicationPid(), userName());
}

void InstanceGuard::becomeSecondary() {
    m_role = Role::Secondary;
    m_instanceId = ++block().secondaries;
    sealBlock(block());
    if ((m_setup.options & InstanceOption::kNotifyPrimary) != 0)
        m_client->connectToPrimary(m_setup.timeout, {ConnectionType::Secondary, m_instanceId});
}

void InstanceGuard::refuse() {
    m_role = Role::Refused;
    m_client->connectToPrimary(m_setup.timeout, {ConnectionType::NewInstance, m_instanceId});
}

void InstanceGuard::leaveBlock() {
    const bool isLocked = m_block->lock();
    // The socket goes under the lock, so that it is not the next primary's that goes.
    m_server.reset();
    if (!isLocked) {
        qCWarning(lcApp, "SingleApplication: Unable to lock memory at end of execution.");
        return;
    }
    clearBlockPrimary(block());
    m_block->remove();
    unlock("SingleApplication: Unable to unlock memory at end of execution.");
}

qint64 InstanceGuard::primaryPid() {
    if (m_role == Role::Faulty || !m_block->lock(SharedBlock::WhenGone::Fail))
        return 0;
    const qint64 pid = block().primaryPid;
    unlock("SingleApplication: Unable to unlock memory.");
    return pid;
}

QString InstanceGuard::primaryUser() {
    if (m_role == Role::Faulty || !m_block->lock(SharedBlock::WhenGone::Fail))
        return {};
    const QString user = blockPrimaryUser(block());
    unlock("SingleApplication: Unable to unlock memory.");
    return user;
}

bool InstanceGuard::sendMessage(const QByteArray& message,
                                std::chrono::milliseconds timeout,
                                AfterSend afterSend) {
    if (m_role == Role::Primary || m_role == Role::Faulty)
        return false;
    const bool isSent =
        m_client->connectToPrimary(timeout, {ConnectionType::Reconnect, m_instanceId}) &&
        m_client->send(message);
    if (!isSent)
        qCWarning(lcApp,
                  "SingleApplication: message not forwarded error=%ls",
                  qUtf16Printable(m_client->errorText()));
    if (isSent && afterSend == AfterSend::WaitForPrimaryExit)
        m_client->waitForPrimaryExit();
    return isSent;
}

void InstanceGuard::postMail() {
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void InstanceGuard::takeMessage(quint32 instanceId, const QByteArray& message) {
    {
        const std::lock_guard<std::mutex> lock(m_mailMutex);
        if (m_messages.size() >= kMostHeld) {
            qCWarning(lcApp, "SingleApplication: nobody takes the messages, one is lost");
            return;
        }
        m_messages.push_back({instanceId, message});
    }
    postMail();
}

void InstanceGuard::customEvent(QEvent*) {
    deliver();
}

void InstanceGuard::connectNotify(const QMetaMethod& signal) {
    if (signal == QMetaMethod::fromSignal(&InstanceGuard::receivedMessage))
        postMail();
}

void InstanceGuard::deliver() {
    std::vector<Message> messages;
    int started = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mailMutex);
        started = std::exchange(m_started, 0);
        if (isSignalConnected(QMetaMethod::fromSignal(&InstanceGuard::receivedMessage)))
            messages = std::exchange(m_messages, {});
    }
    for (int n = 0; n < started; ++n)
        emit instanceStarted();
    for (const Message& message : messages)
        emit receivedMessage(message.instanceId, message.bytes);
}
