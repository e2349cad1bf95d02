#include "e2e/hostile_bytes.h"
#include "e2e/hostile_rows.h"

namespace {

constexpr auto kLost = "The connection to the station was lost";
constexpr auto kFinished = "Recorded: "; // by itself: it has an end
constexpr int kLongestName = 179;
constexpr auto kNotOpened = "Failed to connect at this time: Can't open the file";
constexpr auto kNoAudio = "Failed to connect at this time: Unsupported file format";
constexpr auto kTimedOut = "Failed to connect at this time: Connection timed out";
const QStringList kUntitled{QStringLiteral("Hostile")};

StationScript once(const QByteArray& answer) {
    StationScript script;
    script.rawAnswer = answer;
    script.isServedOnce = true;
    return script;
}

StationScript always(const QByteArray& answer) {
    StationScript script;
    script.rawAnswer = answer;
    return script;
}

/// Plays to the connection's end; all that was served is recorded.
HostileRow plays(const char* what, const QByteArray& answer, const QByteArray& bytes = mp3()) {
    return {what, once(answer), kLost, kUntitled, bytes};
}

HostileRow fails(const char* what, const QByteArray& answer, const char* said) {
    return {what, always(answer), said, {}, {}};
}

/// Each byte around the blocks is a segment of its own.
StationScript inSingleBytes(const QByteArray& audio, int metaint, const QList<QByteArray>& blocks) {
    StationScript script;
    script.isServedOnce = true;
    script.rawPieces.append(mp3Head({"icy-metaint: " + QByteArray::number(metaint)}));
    const QByteArray body = withBlocks(audio, metaint, blocks);
    constexpr int kAround = 3;
    for (int at = 0, number = 0; at < body.size(); ++number) {
        const int units =
            static_cast<unsigned char>(body.at(std::min(at + metaint, body.size() - 1)));
        const int block = at + metaint < body.size() ? 1 + 16 * units : 0;
        script.rawPieces.append(body.mid(at, metaint - kAround));
        const int end = std::min(body.size(), at + metaint + block);
        for (int n = at + metaint - kAround; n < end; ++n)
            script.rawPieces.append(body.mid(n, 1));
        at = end;
    }
    return script;
}

void addTitleBlocks(std::vector<HostileRow>& rows) {
    const QByteArray three = mp3(1) + mp3(2) + mp3(3);
    const int metaint = mp3(1).size() / 2 + 100;
    const QList<QByteArray> blocks{titled("A - 1"), titled("B - 2"), {}, titled("C - 3")};
    const QStringList titles{
        QStringLiteral("A - 1"), QStringLiteral("B - 2"), QStringLiteral("C - 3")};
    rows.push_back({"title blocks broken at every byte",
                    inSingleBytes(three, metaint, blocks),
                    kLost,
                    titles,
                    three});
    const auto withText = [&three, metaint](const QByteArray& text) {
        return mp3Head({"icy-metaint: " + QByteArray::number(metaint)}) +
               withBlocks(three, metaint, {text});
    };
    const auto named =
        [&rows, &three, &withText](const char* what, const QByteArray& text, const QString& name) {
            rows.push_back({what, once(withText(text)), kLost, {name}, three});
        };
    named("the longest block",
          titled("L - " + QByteArray(4060, 'x')).left(4080),
          QStringLiteral("L - ") + QString(kLongestName, QLatin1Char('x')));
    named("a title without quotes", "StreamTitle=A - Song;", QStringLiteral("A - Son"));
    named("a title that is not UTF-8", titled("A - Caf\xE9"), QStringLiteral("A - Caf\u00E9"));
    rows.push_back(plays("a block without a title", withText("StreamUrl='http://x/';"), three));
    rows.push_back(plays("a block of noise", withText(noise(200)), three));
    rows.push_back(plays("a title of blanks", withText(titled("   ")), three));
}

void addMetaints(std::vector<HostileRow>& rows) {
    for (const char* const metaint :
         {"0", "-1", "abc", "", "2147483648", "99999999999999999999999999", "0x10"})
        rows.push_back(plays(metaint, mp3Head({QByteArray("icy-metaint: ") + metaint}) + mp3()));
    rows.push_back(plays("metaint 1", mp3Head({"icy-metaint: 1"}) + withBlocks(mp3(), 1, {})));
    rows.push_back(
        plays("two metaints",
              mp3Head({"icy-metaint: 7", "icy-metaint: 500"}) + withBlocks(mp3(), 500, {})));
    rows.push_back(plays("a title block that breaks off",
                         mp3Head({"icy-metaint: " + QByteArray::number(mp3().size())}) + mp3() +
                             "\xFFStreamTitle='A"));
}

void addHeaders(std::vector<HostileRow>& rows) {
    for (const char* const type :
         {"text/html", "video/mp4", "audio/aacp", "application/vnd.apple.mpegurl", ";;;", ""})
        rows.push_back(plays(type, head({QByteArray("Content-Type: ") + type}) + mp3()));
    rows.push_back(plays("no header but the first", head({}) + mp3()));
    rows.push_back(plays("no head at all", mp3()));
    rows.push_back(
        plays("headers without sense",
              mp3Head({": no name", "\x01\x02\xFF: x", "a:b:c:d", "icy-br: \xFF"}) + mp3()));
    rows.push_back(fails("a line that is no header", mp3Head({"no colon"}) + mp3(), kNotOpened));
    rows.push_back(plays("header lines of sixty thousand bytes",
                         mp3Head({"X-Long: " + QByteArray(60000, 'x')}) + mp3()));
    rows.push_back(fails("header lines of megabytes",
                         mp3Head({"X-Long: " + QByteArray(4000000, 'x')}) + mp3(),
                         kNotOpened));
    HostileRow endless = fails("headers without end", "HTTP/1.1 200 OK\r\n", kNotOpened);
    endless.script.rawForEver = "X-Filler: 0123456789012345678901234567890123456789\r\n";
    rows.push_back(endless);
    endless = fails("a header line without end", "HTTP/1.1 200 OK\r\nX: ", kNotOpened);
    endless.script.rawForEver = QByteArray(4096, 'x');
    rows.push_back(endless);
    rows.push_back(fails("a status that is none", "HTTP/1.1 9999 ?\r\n\r\n" + mp3(), kNotOpened));
    rows.push_back(fails("nothing", "\r\n", kNoAudio));
    rows.push_back(fails("a head that breaks off", "HTTP/1.1 200 OK\r\nContent-Ty", kNotOpened));
}

void addRedirects(std::vector<HostileRow>& rows) {
    const auto redirect = [](const QByteArray& target) {
        return "HTTP/1.1 302 Found\r\nLocation: " + target + "\r\nContent-Length: 0\r\n\r\n";
    };
    rows.push_back(fails("a redirect to itself", redirect("/station"), kNotOpened));
    rows.push_back(fails("a redirect that grows", redirect("x/"), kNotOpened));
    rows.push_back(fails("a redirect to a file",
                         redirect("file:///etc/hostname"),
                         "Failed to connect at this time: "));
    rows.push_back(fails("a redirect nowhere", redirect(""), kNotOpened));
    rows.push_back(fails(
        "a redirect to no address", redirect("http://[::"), "Failed to connect at this time: "));
    HostileRow circle = fails("a circle of redirects", {}, kNotOpened);
    circle.script.page = [redirect](const QByteArray& request) {
        return redirect(request.startsWith("GET /a ") ? "/b" : "/a");
    };
    rows.push_back(circle);
}

void addBodies(std::vector<HostileRow>& rows) {
    const QByteArray audio = mp3();
    const auto length = [](const QByteArray& text) { return "Content-Length: " + text; };
    rows.push_back(plays("a length far too long", mp3Head({length("1000000000")}) + audio));
    rows.back().said = kFinished;
    rows.push_back(
        plays("a length beyond all numbers", mp3Head({length("99999999999999999999999")}) + audio));
    rows.push_back(fails("a length below zero", mp3Head({length("-5")}) + audio, kNotOpened));
    rows.push_back(plays("a length far too short",
                         mp3Head({length(QByteArray::number(audio.size() / 2))}) + audio,
                         {}));
    rows.back().said = kFinished;
    rows.back().seconds = kToneSeconds / 2;
    const QByteArray coded = "Transfer-Encoding: chunked";
    const QByteArray titles = withBlocks(audio, 1000, {});
    rows.push_back(plays("title blocks across chunks of HTTP",
                         mp3Head({coded, "icy-metaint: 1000"}) + chunked(titles, 7)));
    rows.push_back(plays("chunks of HTTP that break off",
                         mp3Head({coded}) + chunked(audio, 1000) + "FFFFFFF\r\n"));
    rows.push_back(plays("chunks of HTTP that turn to rubbish",
                         mp3Head({coded}) + chunked(audio, 1000) + "zz\r\n" + noise(5000)));
    rows.push_back(fails("a chunk beyond all numbers",
                         mp3Head({coded}) + "FFFFFFFFFFFFFFFFFFFF\r\n" + audio,
                         kNotOpened));
    rows.push_back(plays("gzip that is none", mp3Head({"Content-Encoding: gzip"}) + audio));
    rows.push_back(fails("gzip rubbish",
                         mp3Head({"Content-Encoding: gzip"}) + "\x1f\x8b\x08" + noise(60000),
                         kNoAudio));
    for (const int bytes : {1, 100})
        rows.push_back(fails("the end after a few bytes", mp3Head() + audio.left(bytes), kNoAudio));
    HostileRow hangs = fails("a head and then nothing", {}, kTimedOut);
    hangs.script.page = [](const QByteArray&) { return mp3Head(); };
    rows.push_back(hangs);
}

} // namespace

std::vector<HostileRow> hostileAnswers() {
    std::vector<HostileRow> rows;
    addTitleBlocks(rows);
    addMetaints(rows);
    addHeaders(rows);
    addRedirects(rows);
    addBodies(rows);
    return rows;
}
