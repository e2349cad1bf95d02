#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QStringList>
#include <QThread>

/// Waits for the event that `isDone` sees, with a limit; turns the event loop meanwhile.
template <typename Done>
bool waitFor(Done isDone, int limitMs = 20000) {
    QElapsedTimer waited;
    waited.start();
    while (!isDone()) {
        if (waited.elapsed() > limitMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
    return true;
}

/// A running test child; killed at the end if it has not ended by itself.
class Child {
  public:
    explicit Child(const QStringList& arguments) {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(QStringLiteral(APP_TEST_CHILD), arguments);
    }
    ~Child() { kill(); }
    Q_DISABLE_COPY_MOVE(Child)

    /// Everything it printed so far.
    const QByteArray& output() {
        m_output += m_process.readAll().replace('\r', "");
        return m_output;
    }
    /// True once it has printed a whole line with this text.
    bool waitForOutput(const QByteArray& text) {
        return waitFor([&] {
            const int at = output().indexOf(text);
            return at >= 0 && output().indexOf('\n', at) >= 0;
        });
    }
    bool waitForEnd() {
        return waitFor([&] { return m_process.state() == QProcess::NotRunning; });
    }
    void kill() {
        m_process.kill();
        m_process.waitForFinished();
    }
    void send(const QByteArray& line) { m_process.write(line); }
    [[nodiscard]] int exitCode() const { return m_process.exitCode(); }
    [[nodiscard]] qint64 pid() const { return m_process.processId(); }

  private:
    QProcess m_process;
    QByteArray m_output;
};
