#pragma once

#include <QMetaType>
#include <QString>

#include <chrono>

/// What the engine does with the current station, as the window shows it.
enum class PlayState {
    Stopped,
    Connecting,
    Playing,
    Stalled,      ///< connected, waiting for data
    Reconnecting, ///< the connection was lost and comes back by itself
    Paused,
};

/// What is known of the stream that plays. Empty or 0: not known.
struct StreamInfo {
    QString format;      ///< "MP3", "OGG", ...
    QString stationName; ///< from the answer's headers
    QString genre;
    QString website;
    int bitrate = 0;    ///< kbit/s
    int sampleRate = 0; ///< Hz
    int channels = 0;
    qint64 bytesReceived = 0;
    bool isPaused = false;
    int behindLiveMs = 0; ///< what is heard lies so far behind what the station sends; 0: live
    int bufferedMs = 0;   ///< received and not yet heard, estimated by the bitrate
};

/// Settings that the engine reads, copied into it by its owner before a connect.
struct EngineSettings {
    QString userAgent;
    QString outputDeviceName;    ///< empty: the system's default
    int outputDevice = -1;       ///< used where the name is empty; -1: the system's default
    QString recordingDeviceName; ///< empty: the system's default
    int bufferMs = 6000;
    QString proxy; ///< "user:password@host:port"; empty: none
    int attempts = 2;
    bool isPlaylistChecked = false; ///< every failed try looks whether the address is a playlist
    int timeoutSeconds = 10;        ///< a connection that gives no byte for so long is lost
    /// A lost station is waited for so long; while a recording runs there is no limit.
    std::chrono::minutes patience{10};
    std::chrono::milliseconds fadeIn{2000};
    std::chrono::milliseconds fadeOut{2000};
    bool isMuteOnPlay = false;
    int recordingBufferMegabytes = 0; ///< 0: nothing is kept before a recording starts
};

Q_DECLARE_METATYPE(PlayState)
Q_DECLARE_METATYPE(StreamInfo)
