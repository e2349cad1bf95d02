#include "recording/file_tagger.h"

#include "platform/file_sync.h"
#include "recording/stream_format.h"
#include "recording/tag_stream.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <asffile.h>
#include <asftag.h>
#include <attachedpictureframe.h>
#include <commentsframe.h>
#include <flacfile.h>
#include <id3v2tag.h>
#include <mp4file.h>
#include <oggflacfile.h>
#include <opusfile.h>
#include <textidentificationframe.h>
#include <vorbisfile.h>
#include <xiphcomment.h>

namespace BASS {
namespace {

constexpr qint64 kSniffBytes = 65536;
constexpr qint64 kBlockBytes = 1024 * 1024;
constexpr int kLeftoverSeconds = 3600;
const char* const kCopySuffix = ".tagging";

TagLib::String tagText(const QString& text) {
    return {text.toUtf8().constData(), TagLib::String::UTF8};
}

QString dateText(const QDateTime& time) {
    return time.toString(QStringLiteral("yyyy-MM-ddThh:mm:ss"));
}

bool isPng(const QByteArray& picture) {
    return picture.startsWith("\x89PNG");
}

const char* pictureType(const QByteArray& picture) {
    return isPng(picture) ? "image/png" : "image/jpeg";
}

TagLib::ByteVector vectorOf(const QByteArray& bytes) {
    return {bytes.constData(), static_cast<unsigned int>(bytes.size())};
}

// --- ID3v2

void addText(TagLib::ID3v2::Tag& tag, const char* id, const QString& text) {
    if (text.isEmpty())
        return;
    auto* const frame = new TagLib::ID3v2::TextIdentificationFrame(id, TagLib::String::UTF8);
    frame->setText(tagText(text));
    tag.addFrame(frame); // which owns it
}

QByteArray id3Tag(const FileTags& tags) {
    TagLib::ID3v2::Tag tag;
    addText(tag, "TPE1", tags.artist);
    addText(tag, "TIT2", tags.title);
    addText(tag, "TALB", tags.album);
    addText(tag, "TDRC", dateText(tags.recorded));
    if (!tags.comment.isEmpty()) {
        auto* const frame = new TagLib::ID3v2::CommentsFrame(TagLib::String::UTF8);
        frame->setLanguage("eng");
        frame->setText(tagText(tags.comment));
        tag.addFrame(frame);
    }
    if (!tags.cover.isEmpty()) {
        auto* const frame = new TagLib::ID3v2::AttachedPictureFrame();
        frame->setType(TagLib::ID3v2::AttachedPictureFrame::FrontCover);
        frame->setMimeType(pictureType(tags.cover));
        frame->setPicture(vectorOf(tags.cover));
        tag.addFrame(frame);
    }
    const TagLib::ByteVector bytes = tag.render(TagLib::ID3v2::v4);
    return {bytes.data(), static_cast<int>(bytes.size())};
}

// --- the formats that the library writes itself

TagLib::FLAC::Picture* newPicture(const QByteArray& cover) {
    auto* const picture = new TagLib::FLAC::Picture;
    picture->setType(TagLib::FLAC::Picture::FrontCover);
    picture->setMimeType(pictureType(cover));
    picture->setData(vectorOf(cover));
    return picture;
}

void setText(TagLib::Ogg::XiphComment& tag, const char* name, const QString& text) {
    if (!text.isEmpty())
        tag.addField(name, tagText(text), true);
}

void fill(TagLib::Ogg::XiphComment& tag, const FileTags& tags) {
    setText(tag, "ARTIST", tags.artist);
    setText(tag, "TITLE", tags.title);
    setText(tag, "ALBUM", tags.album);
    setText(tag, "DATE", dateText(tags.recorded));
    setText(tag, "COMMENT", tags.comment);
}

bool save(TagLib::File& file) {
    return file.isValid() && file.save();
}

template <typename File>
bool saveOgg(TagStream& stream, const FileTags& tags) {
    File file(&stream, false);
    if (!file.isValid() || file.tag() == nullptr)
        return false;
    fill(*file.tag(), tags);
    if (!tags.cover.isEmpty())
        file.tag()->addPicture(newPicture(tags.cover));
    return save(file);
}

bool saveFlac(TagStream& stream, const FileTags& tags) {
    TagLib::FLAC::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), false);
    if (!file.isValid())
        return false;
    fill(*file.xiphComment(true), tags);
    if (!tags.cover.isEmpty())
        file.addPicture(newPicture(tags.cover));
    return save(file);
}

void fillPlain(TagLib::Tag& tag, const FileTags& tags) {
    if (!tags.artist.isEmpty())
        tag.setArtist(tagText(tags.artist));
    if (!tags.title.isEmpty())
        tag.setTitle(tagText(tags.title));
    if (!tags.album.isEmpty())
        tag.setAlbum(tagText(tags.album));
    if (!tags.comment.isEmpty())
        tag.setComment(tagText(tags.comment));
}

bool saveMp4(TagStream& stream, const FileTags& tags) {
    TagLib::MP4::File file(&stream, false);
    if (!file.isValid() || file.tag() == nullptr)
        return false;
    fillPlain(*file.tag(), tags);
    file.tag()->setItem("\251day", TagLib::StringList(tagText(dateText(tags.recorded))));
    if (!tags.cover.isEmpty()) {
        TagLib::MP4::CoverArtList covers;
        covers.append({isPng(tags.cover) ? TagLib::MP4::CoverArt::PNG : TagLib::MP4::CoverArt::JPEG,
                       vectorOf(tags.cover)});
        file.tag()->setItem("covr", covers);
    }
    return save(file);
}

bool saveAsf(TagStream& stream, const FileTags& tags) {
    TagLib::ASF::File file(&stream, false);
    if (!file.isValid() || file.tag() == nullptr)
        return false;
    fillPlain(*file.tag(), tags);
    file.tag()->setYear(static_cast<unsigned int>(tags.recorded.date().year()));
    if (!tags.cover.isEmpty()) {
        TagLib::ASF::Picture picture;
        picture.setType(TagLib::ASF::Picture::FrontCover);
        picture.setMimeType(pictureType(tags.cover));
        picture.setPicture(vectorOf(tags.cover));
        file.tag()->addAttribute("WM/Picture", TagLib::ASF::Attribute(picture));
    }
    return save(file);
}

// --- the copy

enum class Container { None, Id3, Vorbis, Opus, OggFlac, Flac, Mp4, Asf };

/// The first page of an Ogg stream names its codec (RFC 3533, RFC 7845; the Vorbis and FLAC
/// mappings).
Container oggContainer(const QByteArray& head) {
    const int body = 27 + (head.size() > 26 ? static_cast<unsigned char>(head.at(26)) : 0);
    const QByteArray packet = head.mid(body, 8);
    if (packet.startsWith("\x01vorbis"))
        return Container::Vorbis;
    if (packet.startsWith("OpusHead"))
        return Container::Opus;
    return packet.startsWith("\x7F"
                             "FLAC")
               ? Container::OggFlac
               : Container::None;
}

Container containerOf(const QByteArray& head) {
    if (head.startsWith("ID3"))
        return Container::None; // has been done
    switch (detectFormat(head, true).value_or(StreamFormat::Unknown)) {
    case StreamFormat::Mpeg:
    case StreamFormat::Adts:
        return Container::Id3;
    case StreamFormat::Ogg:
        return oggContainer(head);
    case StreamFormat::Flac:
        return Container::Flac;
    case StreamFormat::Mp4:
        return Container::Mp4;
    case StreamFormat::Asf:
        return Container::Asf;
    default:
        return Container::None;
    }
}

bool writeTags(QFile& copy, Container container, const FileTags& tags) {
    TagStream stream(copy);
    const auto isSaved = [&] {
        switch (container) {
        case Container::Vorbis:
            return saveOgg<TagLib::Ogg::Vorbis::File>(stream, tags);
        case Container::Opus:
            return saveOgg<TagLib::Ogg::Opus::File>(stream, tags);
        case Container::OggFlac:
            return saveOgg<TagLib::Ogg::FLAC::File>(stream, tags);
        case Container::Flac:
            return saveFlac(stream, tags);
        case Container::Mp4:
            return saveMp4(stream, tags);
        case Container::Asf:
            return saveAsf(stream, tags);
        default:
            return true; // the tag stands in front already
        }
    };
    return isSaved() && !stream.hasFailed();
}

bool copyBytes(QFile& from, QFile& to) {
    if (!from.seek(0))
        return false;
    while (!from.atEnd()) {
        const QByteArray block = from.read(kBlockBytes);
        if (block.isEmpty() || to.write(block) != block.size())
            return false;
    }
    return true;
}

Error tagError(const QString& path, const QString& reason) {
    return Error{QCoreApplication::translate("BASS::FileTagger", "Cannot write tags to") +
                 QStringLiteral(" %1: %2").arg(path, reason)};
}

} // namespace

Status tagFile(const QString& path, const FileTags& tags) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return tagError(path, file.errorString());
    const Container container = containerOf(file.peek(kSniffBytes));
    if (container == Container::None)
        return Done{};
    QFile copy(path + QLatin1String(kCopySuffix));
    const auto mode = QIODevice::ReadWrite | QIODevice::Truncate | QIODevice::Unbuffered;
    if (!copy.open(mode))
        return tagError(path, copy.errorString());
    const QByteArray lead = container == Container::Id3 ? id3Tag(tags) : QByteArray();
    const bool isDone = copy.write(lead) == lead.size() && copyBytes(file, copy) && copy.seek(0) &&
                        writeTags(copy, container, tags) && syncFile(copy);
    const QString reason = copy.errorString();
    copy.setPermissions(file.permissions());
    copy.close();
    file.close();
    if (isDone && moveOver(copy.fileName(), path))
        return Done{};
    copy.remove();
    return tagError(path, reason);
}

void removeTagLeftovers(const QString& folder) {
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const auto old =
        QDir(folder).entryInfoList({QLatin1Char('*') + QLatin1String(kCopySuffix)}, QDir::Files);
    for (const QFileInfo& file : old) {
        // another instance may be at it
        if (file.lastModified().secsTo(now) > kLeftoverSeconds)
            QFile::remove(file.filePath());
    }
}

} // namespace BASS
