#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace BASS {

/// How a stream is created; the numbers up to Opus are fixed, they are told with the notification
/// that a create call begins.
enum class StreamKind {
    None = 0,
    Generic = 1,
    Mp4 = 2,
    Aac = 3,
    Wma = 4,
    Flac = 5,
    Hls = 7,
    Opus = 8
};

/// True for addresses that name a file of this machine: no "://", or "file://" in either spelling.
bool isLocalAddress(const QString& address);

/// The one address that means the recording device.
bool isRecordingDevice(const QString& address);

/// The path of a local address.
QString localPath(const QString& address);

/// "icyx://" and "icy://" become "http://".
QString rewrittenAddress(const QString& address);

/// What an address says about its own connect, behind a "#" (which never goes to a server), joined
/// by
/// "&": "#parse_playlist=true&user_agent=Name/1".
struct AddressOptions {
    QString address; ///< without the options
    bool isPlaylistChecked = false;
    QString userAgent; ///< empty: not said
};
AddressOptions addressOptions(const QString& address);

/// True for addresses of the station directory, whose answer is the address to play.
bool isDirectoryAddress(const QString& address);

/// The address in a directory's answer; empty where it is none.
QString directoryAnswer(const QByteArray& answer);

/// The create function for a network address by the station's declared format and the address's
/// text; the first match wins.
StreamKind kindFor(const QString& declaredFormat, const QString& address);

/// What is tried after a failed generic create, in order. A server that says 404 has nothing of any
/// kind; an address that ends in ".mp3" is not tried as another container.
QVector<StreamKind> fallbacksFor(const QString& address, const QString& httpMessage);

/// "first" to "tenth", then the number itself.
QString ordinalWord(int number);

/// The address as it may be shown and logged: without user name and password.
QString withoutCredentials(const QString& address);

} // namespace BASS
