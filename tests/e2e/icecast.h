#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <vector>

/// A real Icecast on a free port of the loopback interface.
class Icecast {
  public:
    Icecast();
    ~Icecast();

    /// False with a reason in `error` where it does not come up.
    bool start();
    void stop();
    /// Feeds a mount with ffmpeg in real time: `input` are ffmpeg's input options, `codec` its
    /// output options with the container last.
    bool feed(const QString& mount,
              const QStringList& input,
              const QStringList& codec,
              const QString& contentType);
    /// The title of a mount by the administration address.
    bool setTitle(const QString& mount, const QString& title);
    [[nodiscard]] QString url(const QString& mount) const;
    [[nodiscard]] int port() const { return m_port; }
    QString error;

  private:
    [[nodiscard]] QByteArray get(const QString& path) const;
    bool startOnce();
    bool writeConfiguration();

    /// A path that the server's own system knows as well, where these tests run on another.
    QTemporaryDir m_folder{QStringLiteral("/tmp/wavelark-icecast-XXXXXX")};
    QProcess m_server;
    std::vector<std::unique_ptr<QProcess>> m_feeds;
    int m_port = 0;
};
