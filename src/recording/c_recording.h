#pragma once

#include "recording/byte_sink.h"
#include "recording/recording_types.h"

#include <QByteArray>
#include <QFile>

#include <memory>
#include <optional>
#include <vector>

namespace BASS {

/// The open output file of a recording and its byte counts.
///
/// What is appended is gathered and written at flush(). After a failed write the file is shortened
/// to its last whole frame; what stands in it plays. A file that was deleted or whose folder was
/// moved away while it is open is put back once.
///
/// *Thread*: the recorder's writer thread; blocks on disk.
class CRecording final : public ByteSink {
    Q_DISABLE_COPY_MOVE(CRecording)

  public:
    CRecording();
    ~CRecording() override;

    /// Makes the folders that are missing and the file. An existing file is never opened. False:
    /// failure() says why.
    bool open(const QString& path);
    /// Writes what is gathered and closes.
    void close();
    /// Hands what is gathered to the system.
    bool flush();
    /// flush(), then waits for the disk, and puts the file back where it has vanished.
    bool sync();
    /// Gives the file another name in its folder or another one; stays open. False: nothing
    /// changed.
    bool rename(const QString& path);
    /// Overwrites bytes that are in the file.
    bool rewrite(qint64 offset, const std::uint8_t* data, std::size_t size);

    bool append(const std::uint8_t* data, std::size_t size) override;
    bool rewriteStart(const std::uint8_t* data, std::size_t size) override;
    bool truncate(qint64 size) override;
    [[nodiscard]] qint64 size() const override { return m_written + m_gathered.size(); }

    [[nodiscard]] QString path() const { return m_file->fileName(); }
    [[nodiscard]] bool isOpen() const { return m_file->isOpen(); }
    /// The first thing that went wrong.
    [[nodiscard]] const std::optional<RecordingError>& failure() const { return m_failure; }

  private:
    bool openNew();
    bool putBack();
    bool fail(RecordingErrorKind kind, const QString& detail);

    std::unique_ptr<QFile> m_file;
    QByteArray m_gathered;
    std::vector<int> m_pieces; ///< ends of the appended pieces in m_gathered
    qint64 m_written = 0;
    bool m_wasPutBack = false;
    unsigned m_syncs = 0;
    std::optional<RecordingError> m_failure;
};

/// The text of a kind of error; for the audio library's kind the text is the caller's.
QString recordingErrorText(RecordingErrorKind kind);
/// `libraryText`: of the library's error code; `detail`: the engine's last error detail.
QString libraryRecordingErrorText(const QString& libraryText, const QString& detail);

} // namespace BASS
