// How long a cut holds the thread that brings the bytes: a recording without re-encoding, with tags
// and lists written beside it, and one through each built-in encoder. Usage: bench_cut [CUTS]
#include "audio/provider_loader.h"
#include "recording/stream_recorder.h"
#include "support/media_tools.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kChunk = 1448;      // what a packet of TCP brings
constexpr int kChunksATitle = 22; // two seconds of 128 kbit/s
constexpr std::chrono::milliseconds kPause{20};

class Times {
  public:
    template <typename Work>
    void measure(Work work) {
        const auto begin = Clock::now();
        work();
        m_times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }
    void print(const char* what) {
        std::sort(m_times.begin(), m_times.end());
        std::printf("%-24s cuts %zu, milliseconds: median %.3f, 99 %% %.3f, longest %.3f\n",
                    what,
                    m_times.size(),
                    m_times[m_times.size() / 2],
                    m_times[m_times.size() * 99 / 100],
                    m_times.back());
    }

  private:
    std::vector<double> m_times;
};

QByteArray stream() {
    const QStringList codec{QStringLiteral("-c:a"),
                            QStringLiteral("libmp3lame"),
                            QStringLiteral("-b:a"),
                            QStringLiteral("128k")};
    return media::encodeTone({440, 60, codec, QStringLiteral("mp3"), {}});
}

BASS::Song song(int n) {
    BASS::Song result;
    result.artist = QStringLiteral("Artist");
    result.title = QStringLiteral("Song %1").arg(n);
    result.track = result.artist + QStringLiteral(" - ") + result.title;
    return result;
}

void cutRecordings(const QByteArray& audio, int cuts) {
    const QTemporaryDir folder;
    BASS::RecordingOptions options;
    options.folder = folder.path();
    options.patternSplit = QStringLiteral("%track%");
    options.hasTags = options.hasTrackList = options.isTitleListKept = true;
    options.station.station = QStringLiteral("Bench");
    BASS::StreamRecorder recorder;
    int files = 0;
    QObject::connect(
        &recorder, &BASS::StreamRecorder::sig_fileFinished, &recorder, [&files] { ++files; });
    recorder.connectionBegan();
    recorder.start(options, song(0));
    Times times;
    int at = 0;
    const auto feed = [&] {
        recorder.append(audio.constData() + at, kChunk);
        at = (at + kChunk) % (audio.size() - 2 * kChunk);
    };
    for (int n = 1; n <= cuts; ++n) {
        for (int chunk = 0; chunk < kChunksATitle; ++chunk)
            feed();
        std::this_thread::sleep_for(kPause);
        times.measure([&] {
            recorder.trackChanged(song(n));
            feed();
        });
        QCoreApplication::processEvents();
    }
    recorder.stopAndWait();
    QCoreApplication::processEvents();
    times.print("without re-encoding");
    std::printf("%-24s files %d\n", "", files);
}

std::atomic<int> ended{0};

void countEnds(BASS::HENCODE, BASS::DWORD, const void*, BASS::DWORD length, void*) {
    if (length == 0)
        ++ended;
}

void cutEncoder(BASS::AudioLibrary& library, const QByteArray& audio, int cuts, int kind) {
    using Start = BASS::HENCODE (BASS::AudioEncoding::*)(
        BASS::DWORD, const void*, BASS::DWORD, BASS::ENCODEPROC*, void*);
    const struct {
        const char* name;
        Start start;
    } kinds[] = {{"through MP3", &BASS::AudioEncoding::Encode_MP3_Start},
                 {"through Ogg Vorbis", &BASS::AudioEncoding::Encode_OGG_Start},
                 {"through FLAC", &BASS::AudioEncoding::Encode_FLAC_Start}};
    const QByteArray first = audio.left(64 * kChunk);
    const BASS::DWORD channel =
        library.StreamCreatePush(first.constData(), static_cast<BASS::QWORD>(first.size()), 0);
    BASS::HENCODE encoder = (library.*kinds[kind].start)(channel, "", 0, &countEnds, nullptr);
    library.ChannelPlay(channel, false);
    int at = first.size();
    Times times;
    for (int n = 1; n <= cuts; ++n) {
        times.measure([&] {
            const BASS::HENCODE next =
                library.Encode_CutAt(encoder, static_cast<BASS::QWORD>(at), 0, &countEnds, nullptr);
            encoder = next != 0 ? next : encoder;
        });
        for (int chunk = 0; chunk < kChunksATitle; ++chunk) {
            library.StreamPutData(
                channel, audio.constData() + at % (audio.size() - kChunk), kChunk);
            at += kChunk;
        }
        std::this_thread::sleep_for(kPause);
    }
    library.StreamPutEnd(channel);
    library.StreamFree(channel);
    times.print(kinds[kind].name);
    std::printf("%-24s files %d\n", "", ended.exchange(0));
}

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication app(argc, argv);
    const int cuts = argc > 1 ? std::atoi(argv[1]) : 250;
    const QByteArray audio = stream();
    auto library =
        BASS::loadAudioProvider(QStringLiteral("wavelark_ffmpeg"), BASS::audioProviderFolders());
    if (audio.isEmpty() || !library.isOk() || !library.value()->Init(0, 44100, 0))
        return 1;
    cutRecordings(audio, cuts);
    for (int kind = 0; kind < 3; ++kind)
        cutEncoder(*library.value(), audio, cuts, kind);
    return 0;
}
