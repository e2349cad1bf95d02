#include "recording/ogg_link.h"

#include "audio/vorbis_comment.h"

namespace BASS {
namespace {

int commentOffset(OggCodec codec) {
    switch (codec) {
    case OggCodec::Vorbis:
        return 7; // 0x03 "vorbis"
    case OggCodec::Opus:
        return 8; // "OpusTags"
    case OggCodec::Flac:
        return 4; // a metadata block's header
    case OggCodec::Unknown:
        break;
    }
    return 0;
}

} // namespace

OggCodec oggCodec(const QByteArray& firstPacket) {
    if (firstPacket.startsWith("\x01vorbis"))
        return OggCodec::Vorbis;
    if (firstPacket.startsWith("OpusHead"))
        return OggCodec::Opus;
    if (firstPacket.startsWith("\x7F"
                               "FLAC"))
        return OggCodec::Flac;
    return OggCodec::Unknown;
}

Song oggSong(const OggLink& link) {
    const int offset = commentOffset(link.codec);
    if (link.headers.size() < 2 || link.headers[1].size() <= offset)
        return {};
    const QByteArray& packet = link.headers[1];
    const auto comments =
        parseVorbisComments(reinterpret_cast<const std::uint8_t*>(packet.constData()) + offset,
                            static_cast<std::size_t>(packet.size() - offset));
    if (!comments)
        return {};
    const QString title = QString::fromStdString(comments->value("TITLE")).trimmed();
    const QString artist = QString::fromStdString(comments->value("ARTIST")).trimmed();
    // stations without a field for the artist write both into the title
    if (artist.isEmpty())
        return songFromTrack(title);
    Song song;
    song.artist = artist;
    song.title = title;
    song.track = title.isEmpty() ? artist : artist + QStringLiteral(" - ") + title;
    return song;
}

} // namespace BASS
