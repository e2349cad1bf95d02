#pragma once

#include <QByteArray>
#include <QString>

/// A log file that several processes may append to. A full file is renamed to "<path>.1", older
/// ones move up to ".3", the oldest goes.
/// Thread: one at a time.
class LogFile final {
  public:
    static constexpr qint64 kFullBytes = 5 * 1024 * 1024;
    static constexpr int kKept = 3;

    explicit LogFile(QString path, qint64 fullBytes = kFullBytes);

    /// Whole lines, together. False where the file cannot be written; blocks on the disk.
    bool append(const QByteArray& lines);
    [[nodiscard]] QString path() const { return m_path; }

  private:
    void rotateIfFull();
    [[nodiscard]] QString kept(int n) const;

    const QString m_path;
    const qint64 m_fullBytes;
};
