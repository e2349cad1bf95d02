#pragma once

#include "support/test_station.h"

#include <QSet>
#include <QStringList>

#include <chrono>
#include <memory>

/// One segment.
struct HlsPiece {
    QByteArray bytes;
    double seconds = 0.0;
    QByteArray info; ///< behind EXTINF's comma
    QByteArray map;  ///< the initialisation section that it needs; empty: none
    bool breaksOff = false;
};

struct HlsScript {
    QVector<HlsPiece> pieces;
    bool isLive = false;   ///< else everything is there from the beginning, and there is an end
    int target = 2;        ///< seconds, as the playlist says: how often it is looked at
    int window = 4;        ///< live: pieces that the playlist shows; they repeat for ever
    double speed = 1.0;    ///< live: times real time
    QByteArray key;        ///< 16 bytes: segments are encrypted with it
    bool isRanged = false; ///< all in one resource
    bool knowsRanges = true;
    QSet<int> missing;  ///< numbers of segments that are answered with 404
    int freezesAt = -1; ///< live: nothing new from this number on
};

/// A station of segments on the loopback interface (RFC 8216). Thread: as TestStation.
class HlsStation {
  public:
    explicit HlsStation(const HlsScript& script);

    /// "/live.m3u8" the media playlist; "/master.m3u8" one that names it as the audio rendition of
    /// a variant with pictures, which does not exist.
    [[nodiscard]] QString url(const QString& path = QStringLiteral("/live.m3u8")) const;
    /// The path of every request so far, in order.
    [[nodiscard]] QList<QByteArray> paths() const;

  private:
    struct State;
    std::shared_ptr<State> m_state;
    TestStation m_station;
};

/// A tone in segments of two seconds, made with ffmpeg. type: "mpegts" or "fmp4".
QVector<HlsPiece> hlsPieces(const QStringList& codec, const QString& type, double seconds);
/// The same as packed audio: ADTS or MP3 frames behind a tag with artist and title.
QVector<HlsPiece> packedPieces(const QByteArray& audio, const QList<QByteArray>& titles);
/// An ID3v2.4 tag; texts are UTF-8.
QByteArray id3Tag(const QByteArray& artist, const QByteArray& title);
