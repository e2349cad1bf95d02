#pragma once

#include "recording/c_recording.h"
#include "recording/cut_writer.h"

namespace BASS {

/// One recording in progress: its file, the song that it is named after and the writer that knows
/// the format.
///
/// *Thread*: the recorder's writer thread. *Life*: open(), any number of frames, stop(); then it
/// may be opened again. Destroying it stops it.
class CRecord final {
    Q_DISABLE_COPY_MOVE(CRecord)

  public:
    CRecord() = default;
    ~CRecord();

    /// Opens the output file and resets the counts. False: failure() of the recording says why.
    bool open(const QString& path, const Song& song, CutStart start);
    void write(const AudioFrame& frame);
    void takeBack(const FrameHistory& frames);
    /// Hands what is written to the system; sync() also waits for the disk.
    void flush();
    void sync();
    /// Gives the open file the name and song that turned out to be right.
    bool rename(const QString& path, const Song& song);
    /// Completes and closes the file.
    RecordedFile stop();

    [[nodiscard]] bool isOpen() const { return m_writer != nullptr; }
    [[nodiscard]] const Song& song() const { return m_song; }
    [[nodiscard]] const CRecording& recording() const { return m_recording; }
    [[nodiscard]] qint64 bytes() const { return m_recording.size(); }
    [[nodiscard]] std::chrono::milliseconds duration() const;

  private:
    CRecording m_recording;
    std::unique_ptr<CutWriter> m_writer;
    Song m_song;
};

} // namespace BASS
