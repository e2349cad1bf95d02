#pragma once

#include "audio/ffmpeg/ffmpeg_library.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

/// An engine's place at the library, for tests: plays one stream and keeps what it is told.
/// Thread: any. The null output runs 20 times as fast as life.
class Listener {
  public:
    struct Title {
        quint64 position;
        quint64 bytesBefore; ///< handed over when the title came
        std::string text;
    };
    struct Sync {
        BASS::DWORD type;
        BASS::DWORD data;
        std::string meta; ///< what the tags said in the callback
        std::string ogg;
        double seconds;
    };
    using Create = BASS::HSTREAM (BASS::AudioLibrary::*)(
        const void*, BASS::DWORD, BASS::DWORD, BASS::DOWNLOADPROC*, void*);
    using CreateFile = BASS::HSTREAM (BASS::AudioLibrary::*)(const void*, BASS::DWORD);

    explicit Listener(int speed = 20);
    ~Listener();

    BASS::AudioLibrary& library() { return m_library; }
    /// Creates and sets every sync; 0 on failure.
    BASS::HSTREAM open(const std::string& url,
                       Create create = &BASS::AudioLibrary::StreamCreateURL,
                       BASS::DWORD flags = BASS::BASS_STREAM_STATUS);
    BASS::HSTREAM openFile(const QString& path,
                           CreateFile create = &BASS::AudioLibrary::StreamCreateFile);
    /// Waits for a sync of this kind; false after ten seconds.
    bool waitFor(BASS::DWORD type, BASS::DWORD data = 0);
    /// Waits until the predicate holds for what has been told; false after ten seconds.
    template <typename Predicate>
    bool waitUntil(Predicate predicate) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(30), predicate);
    }

    // what has been told; under the mutex while a stream lives
    std::mutex m_mutex;
    std::condition_variable m_changed;
    QByteArray bytes;
    QByteArray headers;
    int ends = 0;
    std::vector<Title> titles;
    std::vector<Sync> syncs;

  private:
    static void onDownload(const void* buffer, BASS::DWORD length, void* user);
    static void onTitle(const BASS::StreamTitle& title, void* user);
    template <BASS::DWORD type>
    static void onSync(BASS::HSYNC, BASS::DWORD channel, BASS::DWORD data, void* user);
    void setSyncs(BASS::HSTREAM stream);

    BASS::FfmpegLibrary m_library;
};

/// What is counted, as soon as it is no more than the limit, at the latest after ten seconds: the
/// other side of a connection ends a little later.
int settled(int (*count)(), int limit);
