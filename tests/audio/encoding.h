#pragma once

#include "audio/audio_library.h"

#include <QByteArray>
#include <QString>

#include <condition_variable>
#include <map>
#include <mutex>

/// Collects what encoders give out, as a recorder would write it. Thread: any.
class Encoding {
  public:
    /// The callback and its user pointer.
    static void onBytes(
        BASS::HENCODE handle, BASS::DWORD channel, const void* data, BASS::DWORD size, void* user);
    static void onRewrite(BASS::HENCODE handle,
                          BASS::DWORD channel,
                          const void* data,
                          BASS::DWORD size,
                          BASS::QWORD offset,
                          void* user);

    /// Until the encoder has said that it is done; false after 20 seconds.
    bool waitForEnd(BASS::HENCODE handle);
    /// Until there are so many bytes; false after 20 seconds.
    bool waitForBytes(BASS::HENCODE handle, int count);
    QByteArray bytes(BASS::HENCODE handle);
    int ends(BASS::HENCODE handle);
    /// Written to a file in the process's temporary folder.
    QString file(BASS::HENCODE handle, const char* extension);

  private:
    struct File {
        QByteArray bytes;
        int ends = 0;
    };
    std::mutex m_mutex; ///< guards m_files
    std::condition_variable m_changed;
    std::map<BASS::HENCODE, File> m_files;
};

/// The command line of an encoder program that does these steps (support/encoder_stand_in.cpp).
QByteArray encoderStandIn(const char* steps);

/// Greatest difference between two blocks of interleaved floats, as long as the shorter one.
double greatestDifference(const QByteArray& a, const QByteArray& b);
