#include "audio/stream_sniffer.h"

#include "audio/frame_header.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <optional>

namespace BASS {
namespace {

using Verdict = SniffResult::Verdict;

/// Frames that must follow one another before a header counts as one: random bytes hold single
/// headers often, chains never (0 in 300 random buffers of 4 KiB).
constexpr int kChain = 3;
/// A stream may begin in the middle of a frame; the first whole one lies within this many bytes.
constexpr std::size_t kSearchBytes = 8192;

struct Window {
    const std::uint8_t* data;
    std::size_t size;
    bool isEnd;

    [[nodiscard]] bool has(std::size_t at, std::string_view text) const {
        return at <= size && size - at >= text.size() &&
               std::memcmp(data + at, text.data(), text.size()) == 0;
    }
    [[nodiscard]] std::size_t left(std::size_t at) const { return at < size ? size - at : 0; }
};

SniffResult found(StreamFormat format, std::size_t offset) {
    return {Verdict::Found, format, offset};
}

bool containsNoCase(std::string_view text, std::string_view what) {
    const auto same = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == b;
    };
    return std::search(text.begin(), text.end(), what.begin(), what.end(), same) != text.end();
}

/// Whole frames in a row from `at`. `isCut` tells that the window ended before the chain broke.
template <typename Frame, typename Parse>
int chainLength(const Window& w, std::size_t at, Parse parse, bool& isCut) {
    std::optional<Frame> first;
    int frames = 0;
    isCut = false;
    while (frames < kChain) {
        const auto frame = parse(w.data + at, w.left(at));
        if (!frame) {
            isCut = w.left(at) < kAdtsHeaderBytes;
            return frames;
        }
        if (first && !isSameStream(*first, *frame))
            return frames;
        if (!first)
            first = frame;
        ++frames;
        if (w.left(at) < frame->bytes) {
            isCut = true;
            return frames;
        }
        at += frame->bytes;
    }
    return frames;
}

struct Candidate {
    bool isFound = false;
    bool isPending = false; ///< a chain that the window's end cut short
    std::size_t offset = 0;
};

template <typename Frame, typename Parse>
Candidate findChain(const Window& w, Parse parse) {
    Candidate result;
    const std::size_t last = std::min(w.size, kSearchBytes);
    for (std::size_t at = 0; at < last; ++at) {
        if (w.data[at] != 0xFF)
            continue;
        bool isCut = false;
        const int frames = chainLength<Frame>(w, at, parse, isCut);
        const bool isWhole = w.isEnd && isCut && frames > 0 && (at == 0 || frames > 1);
        if (frames >= kChain || isWhole)
            return {true, false, at};
        result.isPending = result.isPending || (isCut && !w.isEnd);
    }
    return result;
}

StreamFormat oggCodec(const Window& w, std::size_t packet) {
    if (w.has(packet, "\x01vorbis"))
        return StreamFormat::OggVorbis;
    if (w.has(packet, "OpusHead"))
        return StreamFormat::OggOpus;
    if (w.has(packet,
              "\x7f"
              "FLAC"))
        return StreamFormat::OggFlac;
    return StreamFormat::None;
}

/// The first page that begins a logical stream of a known codec (RFC 3533, section 6).
SniffResult sniffOgg(const Window& w) {
    constexpr std::size_t kPageHeader = 27;
    constexpr std::uint8_t kBeginsStream = 2;
    for (std::size_t at = 0; at + kPageHeader + 1 <= w.size; ++at) {
        if (!w.has(at, std::string_view("OggS\0", 5)))
            continue;
        const std::size_t segments = w.data[at + 26];
        const std::size_t packet = at + kPageHeader + segments;
        if ((w.data[at + 5] & kBeginsStream) == 0)
            continue;
        if (w.left(packet) < 8 && !w.isEnd)
            return {};
        const StreamFormat format = oggCodec(w, packet);
        if (format != StreamFormat::None)
            return found(format, at);
    }
    return w.isEnd || w.size >= kSniffBytes ? SniffResult{Verdict::NotAudio, StreamFormat::None, 0}
                                            : SniffResult{};
}

std::optional<StreamFormat> sniffMagic(const Window& w) {
    if (w.has(0, "fLaC"))
        return StreamFormat::Flac;
    if ((w.has(0, "RIFF") || w.has(0, "RF64")) && w.has(8, "WAVE"))
        return StreamFormat::Wav;
    if (w.has(0, "FORM") && (w.has(8, "AIFF") || w.has(8, "AIFC")))
        return StreamFormat::Aiff;
    if (w.has(4, "ftyp") || w.has(4, "styp") || w.has(4, "moov"))
        return StreamFormat::Mp4;
    if (w.has(0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"))
        return StreamFormat::Asf;
    return std::nullopt;
}

/// HTML, XML, playlists: their first word tells.
bool beginsAsText(const Window& w) {
    std::size_t at = w.has(0, "\xEF\xBB\xBF") ? 3 : 0;
    while (at < w.size &&
           (w.data[at] == ' ' || w.data[at] == '\t' || w.data[at] == '\r' || w.data[at] == '\n'))
        ++at;
    const std::string_view text(reinterpret_cast<const char*>(w.data) + at,
                                std::min<std::size_t>(w.left(at), 16));
    constexpr std::array<std::string_view, 11> kWords{"<html",
                                                      "<!doctype",
                                                      "<?xml",
                                                      "<head",
                                                      "<body",
                                                      "<asx",
                                                      "<!--",
                                                      "#extm3u",
                                                      "[playlist]",
                                                      "[reference]",
                                                      "{\""};
    return std::any_of(kWords.begin(), kWords.end(), [text](std::string_view word) {
        return text.size() >= word.size() && containsNoCase(text.substr(0, word.size()), word);
    });
}

bool isPlainText(const Window& w) {
    return w.size > 0 && std::all_of(w.data, w.data + w.size, [](std::uint8_t c) {
               return (c >= 0x20 && c != 0x7F) || c == '\r' || c == '\n' || c == '\t';
           });
}

/// Size of an ID3v2 tag with its header (ID3v2.4 structure, section 3.1); 0: none.
std::size_t id3Bytes(const Window& w) {
    if (w.size < 10 || !w.has(0, "ID3") || w.data[3] == 0xFF || w.data[4] == 0xFF)
        return 0;
    std::size_t size = 0;
    for (std::size_t n = 6; n < 10; ++n) {
        if ((w.data[n] & 0x80) != 0)
            return 0;
        size = (size << 7) | w.data[n];
    }
    const bool hasFooter = (w.data[5] & 0x10) != 0;
    return size + (hasFooter ? 20U : 10U);
}

SniffResult sniffFrames(const Window& w, std::string_view contentType) {
    const Candidate mpeg = findChain<MpegFrame>(w, parseMpegFrame);
    const Candidate adts = findChain<AdtsFrame>(w, parseAdtsFrame);
    if (mpeg.isFound && adts.isFound) {
        const bool saysAac = containsNoCase(contentType, "aac");
        const bool saysMpeg = containsNoCase(contentType, "mpeg");
        const bool isAdts = saysAac || (!saysMpeg && adts.offset < mpeg.offset);
        return isAdts ? found(StreamFormat::Adts, adts.offset)
                      : found(StreamFormat::Mpeg, mpeg.offset);
    }
    if (mpeg.isFound)
        return found(StreamFormat::Mpeg, mpeg.offset);
    if (adts.isFound)
        return found(StreamFormat::Adts, adts.offset);
    const bool isDone = w.isEnd || w.size >= kSniffBytes ||
                        (w.size >= kSearchBytes && !mpeg.isPending && !adts.isPending);
    return {isDone ? Verdict::NotAudio : Verdict::NeedMore, StreamFormat::None, 0};
}

} // namespace

SniffResult
sniffStream(const std::uint8_t* data, std::size_t size, bool isEnd, std::string_view contentType) {
    constexpr std::size_t kMagicBytes = 12;
    constexpr std::size_t kTextBytes = 1024;
    const Window w{data, size, isEnd};
    if (size < kMagicBytes && !isEnd)
        return {};
    if (const std::size_t tag = id3Bytes(w); tag > 0)
        return {Verdict::SkipTag, StreamFormat::None, tag};
    if (const auto format = sniffMagic(w))
        return found(*format, 0);
    if (beginsAsText(w) || ((size >= kTextBytes || isEnd) && isPlainText(w)))
        return {Verdict::NotAudio, StreamFormat::None, 0};
    if (w.has(0, "OggS"))
        return sniffOgg(w);
    const SniffResult frames = sniffFrames(w, contentType);
    if (frames.verdict == Verdict::NotAudio) // a page may stand behind rubbish
        return sniffOgg({data, size, true});
    return frames;
}

} // namespace BASS
