#include "e2e/hostile_bytes.h"
#include "e2e/hostile_rows.h"

#include <QMap>

namespace {

constexpr auto kNoAudio = "Failed to connect at this time: Unsupported file format";
constexpr auto kNotOpened = "Failed to connect at this time: Can't open the file";
constexpr auto kFailed = "Failed to connect at this time: ";
const QByteArray kHls = "application/vnd.apple.mpegurl";

QByteArray page(const QByteArray& type, const QByteArray& text) {
    return head({"Content-Type: " + type, "Content-Length: " + QByteArray::number(text.size())}) +
           text;
}

/// A server of these pages; the others are not found.
HostileRow site(const char* what,
                const char* path,
                const char* said,
                const QMap<QByteArray, QByteArray>& pages) {
    HostileRow row{what, {}, said, {}, {}, 0.0, path};
    row.script.page = [pages](const QByteArray& request) {
        const QByteArray wanted = request.mid(4, request.indexOf(" HTTP/") - 4);
        return pages.value(wanted, "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
    };
    return row;
}

HostileRow segments(const char* what,
                    const char* said,
                    const QByteArray& segment,
                    const QByteArray& list = {}) {
    const QByteArray usual =
        "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\na\n#EXTINF:2,\na\n#EXT-X-ENDLIST\n";
    return site(what,
                "/live.m3u8",
                said,
                {{"/live.m3u8", page(kHls, list.isEmpty() ? usual : list)},
                 {"/a", page("video/mp2t", segment)}});
}

void addLists(std::vector<HostileRow>& rows) {
    QByteArray lines = "#EXTM3U\n";
    for (int n = 0; n < 100000; ++n)
        lines += "#EXTINF:1,Nothing " + QByteArray::number(n) + "\n";
    rows.push_back(site("a hundred thousand lines of nothing",
                        "/list.m3u",
                        kNoAudio,
                        {{"/list.m3u", page("audio/x-mpegurl", lines)}}));
    lines = "#EXTM3U\n";
    for (int n = 0; n < 100000; ++n)
        lines += "/missing/" + QByteArray::number(n) + "\n";
    rows.push_back(site("a hundred thousand addresses",
                        "/list.m3u",
                        kNotOpened,
                        {{"/list.m3u", page("audio/x-mpegurl", lines)}}));
    rows.push_back(site("M3U that names itself",
                        "/list.m3u",
                        kNoAudio,
                        {{"/list.m3u", page("audio/x-mpegurl", "#EXTM3U\n/list.m3u\n")}}));
    rows.push_back(site("PLS that names itself",
                        "/list.pls",
                        kNoAudio,
                        {{"/list.pls", page("audio/x-scpls", "[playlist]\nFile1=/list.pls\n")}}));
    rows.push_back(site("two lists that name each other",
                        "/a.m3u",
                        kNoAudio,
                        {{"/a.m3u", page("audio/x-mpegurl", "#EXTM3U\n/b.m3u\n")},
                         {"/b.m3u", page("audio/x-mpegurl", "#EXTM3U\n/a.m3u\n")}}));
    rows.push_back(site(
        "ASX without an end",
        "/list.asx",
        kNoAudio,
        {{"/list.asx", page("video/x-ms-asf", "<asx><ref href=\"" + QByteArray(500000, 'x'))}}));
    rows.push_back(site(
        "a list of empty addresses",
        "/list.pls",
        kNoAudio,
        {{"/list.pls", page("audio/x-scpls", "[playlist]\nFile1=\nFile2= \nFile99999999999=\n")}}));
    rows.push_back(
        site("a page without an address",
             "/",
             kNoAudio,
             {{"/", page("text/html", "<html><head><title>Full</title></head></html>")}}));
    HostileRow endless{"a list without end", {}, kFailed, {}, {}, 0.0, "/list.m3u"};
    endless.script.rawAnswer = head({"Content-Type: audio/x-mpegurl"}) + "#EXTM3U\n";
    endless.script.rawForEver = "#EXTINF:1,Nothing at all, again and again and again\n";
    rows.push_back(endless);
    endless.what = "segments' list without end";
    endless.path = "/live.m3u8";
    rows.push_back(endless);
}

void addSegments(std::vector<HostileRow>& rows) {
    rows.push_back(
        site("segments' list that names itself",
             "/live.m3u8",
             kNoAudio,
             {{"/live.m3u8", page(kHls, "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1\nlive.m3u8\n")}}));
    rows.push_back(
        site("segments that are missing",
             "/live.m3u8",
             kNotOpened,
             {{"/live.m3u8",
               page(kHls, "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\na\n#EXT-X-ENDLIST\n")}}));
    rows.push_back(segments("segments of noise", kNoAudio, noise(100000)));
    rows.push_back(segments("segments of HTML", kNoAudio, "<html>sorry</html>"));
    QByteArray packets;
    for (int n = 0; n < 500; ++n)
        packets += "\x47" + noise(187 + n % 2).left(187);
    rows.push_back(segments("segments of packets without sense", kNoAudio, packets));
    rows.push_back(segments("a list without segments",
                            kNotOpened,
                            {},
                            "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXT-X-ENDLIST\n"));
    rows.push_back(segments("numbers beyond all sense",
                            kNoAudio,
                            noise(5000),
                            "#EXTM3U\n#EXT-X-TARGETDURATION:99999999999999999999\n#EXT-X-MEDIA-"
                            "SEQUENCE:-18446744073709551615\n"
                            "#EXT-X-START:TIME-OFFSET=1e308\n#EXTINF:nan,\n#EXT-X-BYTERANGE:"
                            "18446744073709551615@18446744073709551615\na\n"
                            "#EXTINF:-1e308,\na\n#EXT-X-ENDLIST\n"));
    rows.push_back(segments("a key that is none",
                            kNoAudio,
                            noise(5000),
                            "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXT-X-KEY:METHOD=AES-128,URI=\"a\","
                            "IV=0xzz\n#EXTINF:2,\na\n#EXT-X-ENDLIST\n"));
    for (const char* const key : {"", "short"})
        rows.push_back(
            site("a key that is too short",
                 "/live.m3u8",
                 kNoAudio,
                 {{"/live.m3u8",
                   page(kHls,
                        "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXT-X-KEY:METHOD=AES-128,URI="
                        "\"key\"\n#EXTINF:2,\na\n#EXT-X-ENDLIST\n")},
                  {"/key", page("application/octet-stream", key)},
                  {"/a", page("video/mp2t", noise(4096))}}));
    QByteArray many = "#EXTM3U\n#EXT-X-TARGETDURATION:2\n";
    for (int n = 0; n < 100000; ++n)
        many += "#EXTINF:2,\nmissing" + QByteArray::number(n) + "\n";
    rows.push_back(
        segments("a hundred thousand segments", kNotOpened, {}, many + "#EXT-X-ENDLIST\n"));
}

} // namespace

std::vector<HostileRow> hostilePlaylists() {
    std::vector<HostileRow> rows;
    addLists(rows);
    addSegments(rows);
    return rows;
}
