#pragma once

#include "app/instance_server.h"

#include <QThread>

#include <future>

/// Serves the primary's socket, so that other instances have their answers while the window is
/// busy.
/// Thread: made, asked and ended by the owner's thread; the server's events come on this one.
/// Life: begin() once; the destructor ends it.
class InstanceServerThread final : public QThread {
    Q_OBJECT

  public:
    InstanceServerThread(QString name,
                         InstanceServer::Access access,
                         InstanceServer::Events events);
    ~InstanceServerThread() override;

    /// Returns when the server listens. Empty: it does; else why not.
    QString begin();

  protected:
    void run() override;

  private:
    const QString m_name;
    const InstanceServer::Access m_access;
    const InstanceServer::Events m_events;
    std::promise<QString> m_listening;
};
