#include "app/instance_server_thread.h"

InstanceServerThread::InstanceServerThread(QString name,
                                           InstanceServer::Access access,
                                           InstanceServer::Events events)
    : m_name(std::move(name)), m_access(access), m_events(std::move(events)) {
    setObjectName(QStringLiteral("instance server"));
}

InstanceServerThread::~InstanceServerThread() {
    quit();
    wait();
}

QString InstanceServerThread::begin() {
    std::future<QString> listening = m_listening.get_future();
    start();
    return listening.get();
}

void InstanceServerThread::run() {
    InstanceServer server(m_name, m_access, m_events);
    m_listening.set_value(server.listen());
    exec();
}
