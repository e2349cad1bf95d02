#include "audio/tracks.h"
#include "e2e/hostile_bytes.h"
#include "e2e/hostile_rows.h"

namespace {

constexpr auto kLost = "The connection to the station was lost";
constexpr auto kNoAudio = "Failed to connect at this time: Unsupported file format";
const QStringList kUntitled{QStringLiteral("Hostile")};
const QStringList kFourUntitled = kUntitled + kUntitled + kUntitled + kUntitled;

StationScript body(const QByteArray& bytes, const char* type) {
    StationScript script;
    script.rawAnswer = head({QByteArray("Content-Type: ") + type}) + bytes;
    return script;
}

HostileRow fails(const char* what, const QByteArray& bytes, const char* path = "/station") {
    return {what, body(bytes, "audio/mpeg"), kNoAudio, {}, {}, 0.0, path};
}

HostileRow plays(const char* what,
                 const QByteArray& served,
                 const char* type,
                 const QStringList& titles,
                 const QByteArray& bytes,
                 double seconds = 0.0) {
    HostileRow row{what, body(served, type), kLost, titles, bytes, seconds};
    row.script.isServedOnce = true;
    return row;
}

void addCutFrames(std::vector<HostileRow>& rows) {
    constexpr int kFront = 300;
    constexpr int kBack = 50;
    const auto cut = [](const QByteArray& audio) {
        return audio.mid(kFront, audio.size() - kFront - kBack);
    };
    rows.push_back(plays("MP3 from half a frame to half a frame",
                         cut(mp3()),
                         "audio/mpeg",
                         kUntitled,
                         {},
                         kToneSeconds - 0.05));
    rows.push_back(plays("AAC from half a frame to half a frame",
                         cut(adts()),
                         "audio/aac",
                         kUntitled,
                         {},
                         kToneSeconds - 0.05));
    rows.push_back(plays("Ogg that begins within a link",
                         track(Track::Vorbis).mid(5000) + track(Track::Vorbis, "Second"),
                         "application/ogg",
                         {QStringLiteral("Second")},
                         {},
                         kTrackSeconds));
    rows.push_back(
        plays("MP3 behind rubbish", noise(3000) + mp3(), "audio/mpeg", kUntitled, mp3()));
    rows.push_back(
        plays("rubbish behind MP3", mp3() + noise(50000), "audio/mpeg", kUntitled, mp3()));
}

void addChanges(std::vector<HostileRow>& rows) {
    rows.push_back(plays("MP3 of changing rates and channels",
                         mp3(1) + mp3(1, 22050, 1) + mp3(1, 48000) + mp3(1, 44100, 1),
                         "audio/mpeg",
                         kFourUntitled,
                         {},
                         4 * kToneSeconds));
    rows.push_back(plays("AAC of changing rates and channels",
                         adts(1) + adts(1, 22050, 1) + adts(1, 48000) + adts(1, 44100, 1),
                         "audio/aac",
                         kFourUntitled,
                         {},
                         4 * kToneSeconds));
    rows.push_back(plays("AAC that becomes MP3",
                         adts() + mp3(1) + mp3(2) + mp3(3),
                         "audio/aac",
                         kUntitled + kUntitled,
                         {},
                         4 * kToneSeconds));
    rows.push_back(
        plays("Ogg that becomes MP3 and Ogg again",
              track(Track::Vorbis) + mp3(1) + mp3(2) + mp3(3) + track(Track::Opus, "Third"),
              "application/ogg",
              {QStringLiteral("First"), QStringLiteral("First"), QStringLiteral("Third")},
              {},
              2 * kTrackSeconds + 3 * kToneSeconds));
    for (const QByteArray& between : {noise(60000), noise(200000), track(Track::Flac)})
        rows.push_back(plays("Ogg with something between its links",
                             track(Track::Vorbis) + between + track(Track::Opus, "Second"),
                             "application/ogg",
                             {QStringLiteral("First"), QStringLiteral("Second")},
                             {},
                             2 * kTrackSeconds));
    rows.push_back(plays("Ogg of changing codecs",
                         track(Track::Vorbis) + track(Track::Opus, "Second") +
                             track(Track::OggFlac, "Third") + track(Track::Vorbis, "Fourth"),
                         "application/ogg",
                         {QStringLiteral("First"),
                          QStringLiteral("Second"),
                          QStringLiteral("Third"),
                          QStringLiteral("Fourth")},
                         {},
                         4 * kTrackSeconds));
}

/// A format's first bytes, and then no sense any more.
void addNoise(std::vector<HostileRow>& rows) {
    const QByteArray rubbish = noise(200000);
    const struct {
        const char* what;
        QByteArray start;
        const char* path;
    } starts[] = {
        {"noise", {}, "/station"},
        {"an MP3 header before noise", mp3().left(4), "/station"},
        {"an ADTS header before noise", adts().left(7), "/station.aac"},
        {"an Ogg page of nothing", track(Track::Vorbis).left(28), "/station.ogg"},
        {"a Vorbis header before noise", track(Track::Vorbis).left(58), "/station.ogg"},
        {"an Opus header before noise", track(Track::Opus).left(47), "/station.opus"},
        {"FLAC's first bytes before noise", track(Track::Flac).left(4), "/station.flac"},
        {"FLAC's headers before noise", track(Track::Flac).left(42), "/station.flac"},
        {"MP4's first box before noise", track(Track::M4a).left(32), "/station.m4a"},
        {"a box of MP4 without end", QByteArray("\xFF\xFF\xFF\xF0moov", 8), "/station.m4a"},
        {"half an index of MP4", track(Track::M4a).left(300), "/station.m4a"},
        {"WMA's first bytes before noise", track(Track::Wma).left(30), "/station.wma"},
        {"half the headers of WMA", track(Track::Wma).left(300), "/station.wma"},
        {"AIFF's first bytes before noise", track(Track::Aiff).left(12), "/station"},
        {"WAV's first bytes before noise", track(Track::Wav).left(12), "/station"},
        {"a tag of ID3 that is longer than all",
         QByteArray("ID3\x04\0\0\x7F\x7F\x7F\x7F", 10),
         "/station"},
    };
    for (const auto& start : starts)
        rows.push_back(fails(start.what, start.start + rubbish, start.path));
    QByteArray wav = track(Track::Wav).left(44);
    for (int n = 22; n < 36; ++n)
        wav[n] = '\0';
    rows.push_back(fails("WAV without channels and rate", wav + rubbish));
    for (int n = 22; n < 36; ++n)
        wav[n] = '\xFF';
    rows.push_back(fails("WAV with too many channels", wav + rubbish));
}

/// Good for two seconds, then no sense any more.
void addTurns(std::vector<HostileRow>& rows) {
    const QByteArray rubbish = noise(100000);
    const struct {
        const char* what;
        Track which;
        const char* type;
        const char* path;
    } turns[] = {
        {"Vorbis that turns to noise", Track::Vorbis, "application/ogg", "/station"},
        {"Opus that turns to noise", Track::Opus, "application/ogg", "/station"},
        {"FLAC that turns to noise", Track::Flac, "audio/flac", "/station.flac"},
        {"WMA that turns to noise", Track::Wma, "audio/x-ms-wma", "/station.wma"},
        {"MP4 that turns to noise", Track::M4a, "audio/mp4", "/station.m4a"},
    };
    for (const auto& turn : turns) {
        const QByteArray& whole = track(turn.which);
        HostileRow row =
            plays(turn.what, whole.left(whole.size() * 2 / 3) + rubbish, turn.type, {}, {});
        row.path = turn.path;
        rows.push_back(row);
    }
}

} // namespace

std::vector<HostileRow> hostileAudio() {
    std::vector<HostileRow> rows;
    addCutFrames(rows);
    addChanges(rows);
    addNoise(rows);
    addTurns(rows);
    return rows;
}
