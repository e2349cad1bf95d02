#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace BASS {

/// What is written into a finished file. Empty: left out.
struct FileTags {
    QString artist;
    QString title;
    QString album; ///< the station
    QString comment;
    QDateTime recorded;
    QByteArray cover; ///< a JPEG or PNG picture
};

/// Writes tags into a closed file: MPEG audio and ADTS get an ID3v2.4 tag in front (ID3v2.4
/// structure document; players skip it, the audio bytes behind it stay as they are), Ogg streams
/// and FLAC Vorbis comments and picture blocks, MP4 its item list, ASF its content description.
/// What stands in the file already and is not named here stays.
///
/// The tags go to a copy beside the file that reaches the disk and then takes its place: whatever
/// happens meanwhile, one of the two whole files is there under the name. A file of another format
/// stays as it is. Any thread; blocks on disk.
Status tagFile(const QString& path, const FileTags& tags);

/// Removes copies that a killed process has left in a folder. Any thread; blocks on disk.
void removeTagLeftovers(const QString& folder);

} // namespace BASS
