#pragma once

#include "engine/connect_sequence.h"

#include <QThread>

#include <memory>

namespace BASS {

/// The connect worker: runs one ConnectSequence and ends.
///
/// *Thread*: the object lives on the GUI thread. *Owner*: its parent; it may be destroyed when
/// finished. *Life*: start() once; cancel through the sequence, then it ends within 200 ms.
class QtBassConnectThread final : public QThread {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(QtBassConnectThread)

  public:
    QtBassConnectThread(std::shared_ptr<ConnectSequence> sequence, QObject* parent)
        : QThread(parent), m_sequence(std::move(sequence)) {
        setObjectName(QStringLiteral("connect"));
    }
    ~QtBassConnectThread() override {
        m_sequence->cancel();
        wait();
    }

    [[nodiscard]] const std::shared_ptr<ConnectSequence>& sequence() const { return m_sequence; }

  protected:
    void run() override { m_sequence->run(); }

  private:
    std::shared_ptr<ConnectSequence> m_sequence;
};

} // namespace BASS
