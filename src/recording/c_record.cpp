#include "recording/c_record.h"

#include <cmath>
#include <utility>

namespace BASS {

CRecord::~CRecord() {
    if (isOpen())
        stop();
}

bool CRecord::open(const QString& path, const Song& song, CutStart start) {
    if (isOpen())
        stop();
    if (!m_recording.open(path))
        return false;
    m_song = song;
    m_writer = makeCutWriter(m_recording, std::move(start));
    return true;
}

void CRecord::write(const AudioFrame& frame) {
    m_writer->write(frame);
}

void CRecord::takeBack(const FrameHistory& frames) {
    m_writer->takeBack(frames);
}

void CRecord::flush() {
    m_writer->flush();
    m_recording.flush();
}

void CRecord::sync() {
    m_writer->flush();
    m_recording.sync();
}

bool CRecord::rename(const QString& path, const Song& song) {
    m_song = song;
    return m_recording.rename(path);
}

RecordedFile CRecord::stop() {
    m_writer->finish();
    m_recording.flush();
    RecordedFile file;
    file.path = m_recording.path();
    file.song = m_song;
    file.bytes = m_recording.size();
    file.duration = duration();
    m_recording.close();
    m_writer.reset();
    return file;
}

std::chrono::milliseconds CRecord::duration() const {
    return std::chrono::milliseconds(m_writer ? std::llround(m_writer->seconds() * 1000.0) : 0);
}

} // namespace BASS
