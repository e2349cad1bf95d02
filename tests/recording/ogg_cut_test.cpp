#include "recording/audio_tools.h"
#include "recording/ogg_cut_writer.h"
#include "recording/ogg_splitter.h"
#include "recording/recorder_rig.h"

#include <QDir>

#include <gtest/gtest.h>

#include <cmath>

namespace {

struct Codec {
    const char* name;
    const char* encoder;
    int sampleRate;
    const char* suffix;
    bool isExact; ///< samples of a file that begins inside a link are those of the whole
};

QByteArray link(const Codec& codec, int number, const char* title) {
    Tones tones;
    tones.seconds = 4;
    tones.sampleRate = codec.sampleRate;
    tones.first = 200 * number;
    return encoded(QStringLiteral("-c:a|%1|-metadata|title=%2|-metadata|artist=Ann|-f|ogg")
                       .arg(QLatin1String(codec.encoder), QLatin1String(title))
                       .split(QLatin1Char('|')),
                   tones);
}

std::vector<std::string> faultsOf(const BASS::RecordedFile& file, int sampleRate, double seconds) {
    std::vector<std::string> faults;
    const auto note = [&faults, seconds](const char* who, double told, double tolerance) {
        if (std::abs(told - seconds) > tolerance)
            faults.push_back(who + std::to_string(told) + " for " + std::to_string(seconds));
    };
    const Decoded decoded = decodedByFfmpeg(file.path);
    if (!decoded.messages.isEmpty())
        faults.push_back(decoded.messages.toStdString());
    note("told ", static_cast<double>(file.duration.count()) / 1000, 0.002);
    note("probed ", probedSeconds(file.path), 0.09); // which counts the pre-skip
    note("decoded ", static_cast<double>(decoded.samples.size()) / 2 / sampleRate, 0.001);
    return faults;
}

class Bytes final : public BASS::ByteSink {
  public:
    bool append(const std::uint8_t* data, std::size_t size) override {
        bytes.append(reinterpret_cast<const char*>(data), static_cast<int>(size));
        return true;
    }
    bool rewriteStart(const std::uint8_t*, std::size_t) override { return false; }
    bool truncate(qint64) override { return false; }
    [[nodiscard]] qint64 size() const override { return bytes.size(); }

    QByteArray bytes;
};

std::vector<QByteArray> packetsOf(const QByteArray& file) {
    BASS::OggSplitter splitter(0);
    BASS::FrameList frames;
    splitter.push(file.constData(), file.size(), frames);
    std::vector<QByteArray> packets;
    for (const BASS::AudioFrame& frame : frames)
        packets.push_back(frame.bytes);
    return packets;
}

class OggCut : public testing::TestWithParam<Codec> {};

} // namespace

TEST_P(OggCut, EveryLinkBecomesAFileOfTheSameSound) {
    const std::vector<QByteArray> links{
        link(GetParam(), 1, "One"), link(GetParam(), 2, "Two"), link(GetParam(), 3, "Three")};
    RecorderRig rig;
    rig.start(QString());
    rig.feed(links[0] + links[1] + links[2], {{100, QStringLiteral("not from the links")}});
    rig.stop();
    const QString suffix = QLatin1String(GetParam().suffix);
    EXPECT_EQ(rig.names(),
              (QStringList{QStringLiteral("Ann - One.") + suffix,
                           QStringLiteral("Ann - Two.") + suffix,
                           QStringLiteral("Ann - Three.") + suffix}));
    for (std::size_t n = 0; n < rig.files.size(); ++n) {
        EXPECT_EQ(faultsOf(rig.files[n], GetParam().sampleRate, 4.0), std::vector<std::string>());
        const Decoded served = decodedByFfmpeg(fileWith(links[n], suffix));
        const Decoded recorded = decodedByFfmpeg(rig.files[n].path);
        EXPECT_EQ(recorded.samples.size(), served.samples.size());
        EXPECT_EQ(difference(served.samples, recorded.samples).largest, 0);
    }
}

TEST_P(OggCut, StartsAndStopsInsideALink) {
    const QByteArray stream = link(GetParam(), 1, "One");
    const Decoded served = decodedByFfmpeg(fileWith(stream, QStringLiteral("ogg")));
    for (const int cut : {stream.size() / 4, stream.size() / 4 + 1, stream.size() / 3}) {
        for (const int end : {stream.size() * 19 / 20, stream.size()}) {
            RecorderRig rig;
            rig.recorder.connectionBegan();
            rig.feedPart(stream.left(cut));
            rig.start();
            rig.feedPart(stream.mid(cut, end - cut));
            rig.stop();
            ASSERT_EQ(rig.files.size(), 1U);
            const double seconds = static_cast<double>(rig.files[0].duration.count()) / 1000;
            EXPECT_GT(seconds, 0.7);
            EXPECT_EQ(faultsOf(rig.files[0], GetParam().sampleRate, seconds),
                      std::vector<std::string>());
            // the end mark stands on the last page
            const QByteArray bytes = fileBytes(rig.files[0].path);
            EXPECT_EQ(bytes.at(bytes.lastIndexOf("OggS") + 5) & 4, 4);
            const Decoded part = decodedByFfmpeg(rig.files[0].path);
            EXPECT_LT(part.samples.size(), served.samples.size());
            if (GetParam().isExact && end == stream.size()) {
                EXPECT_EQ(difference(served.samples, part.samples).largest, 0);
            }
        }
    }
}

/// What is left of a link may be less than a decoder needs to find its way in.
TEST_P(OggCut, StartRightBeforeTheEndOfALinkLeavesNoSilentFile) {
    const QByteArray first = link(GetParam(), 1, "One");
    const int cut = first.lastIndexOf("OggS");
    RecorderRig rig;
    rig.recorder.connectionBegan();
    rig.feedPart(first.left(cut));
    rig.start();
    rig.feedPart(first.mid(cut));
    rig.feedPart(link(GetParam(), 2, "Two"));
    rig.stop();
    ASSERT_FALSE(rig.files.empty());
    EXPECT_EQ(QDir(rig.options.folder).entryList(QDir::Files).size(),
              static_cast<int>(rig.files.size()));
    for (const BASS::RecordedFile& file : rig.files)
        EXPECT_FALSE(decodedByFfmpeg(file.path).samples.empty()) << qPrintable(file.path);
}

TEST_P(OggCut, OneFileHoldsAllLinksWithoutSplitting) {
    const QByteArray stream = link(GetParam(), 1, "One") + link(GetParam(), 2, "Two");
    RecorderRig rig;
    rig.options.mode = BASS::RecordMode::NoSplit;
    rig.start();
    rig.feed(stream);
    rig.stop();
    ASSERT_EQ(rig.files.size(), 1U);
    EXPECT_NEAR(static_cast<double>(rig.files[0].duration.count()), 8000, 2);
    const Decoded served = decodedByFfmpeg(fileWith(stream, QStringLiteral("ogg")));
    const Decoded recorded = decodedByFfmpeg(rig.files[0].path);
    EXPECT_EQ(recorded.samples.size(), served.samples.size());
    EXPECT_EQ(difference(served.samples, recorded.samples).largest, 0);
}

TEST_P(OggCut, ReconnectWithTheSameTitleGoesOnInTheFile) {
    const QByteArray stream = link(GetParam(), 1, "One");
    RecorderRig rig;
    rig.start();
    rig.feed(stream.left(stream.size() / 2));
    rig.feed(stream);
    rig.feed(link(GetParam(), 2, "Two"));
    rig.stop();
    ASSERT_EQ(rig.files.size(), 2U);
    EXPECT_GT(rig.files[0].duration.count(), 5000);
    EXPECT_EQ(fileBytes(rig.files[0].path).count("One"), 2);
    EXPECT_EQ(faultsOf(rig.files[1], GetParam().sampleRate, 4.0), std::vector<std::string>());
}

/// What a kill leaves is what was flushed: after each page of the server nothing may be held back.
TEST_P(OggCut, AFlushHoldsNothingBack) {
    const QByteArray stream = link(GetParam(), 1, "One") + link(GetParam(), 2, "Two");
    Bytes file;
    BASS::OggSplitter splitter(0);
    BASS::OggCutWriter writer(file, {}, 7);
    std::vector<QByteArray> given;
    const auto feed = [&](int at, int end) {
        BASS::FrameList frames;
        splitter.push(stream.constData() + at, end - at, frames);
        for (const BASS::AudioFrame& frame : frames) {
            writer.write(frame);
            given.push_back(frame.bytes);
        }
        writer.flush();
    };
    for (int at = 0; at < stream.size();) {
        const int next = stream.indexOf("OggS", at + 4);
        feed(at, next < 0 ? stream.size() : next);
        at = next < 0 ? stream.size() : next;
        EXPECT_EQ(packetsOf(file.bytes), given) << "at byte " << at;
    }
    writer.finish();
    const Decoded served = decodedByFfmpeg(fileWith(stream, QStringLiteral("ogg")));
    const Decoded written = decodedByFfmpeg(fileWith(file.bytes, QStringLiteral("ogg")));
    EXPECT_EQ(written.samples.size(), served.samples.size());
    EXPECT_EQ(difference(served.samples, written.samples).largest, 0);
}

/// A recording that is stopped behind a flush ends with a page of the end mark alone.
TEST_P(OggCut, EndsBehindAFlushLikeAnyOther) {
    const QByteArray stream = link(GetParam(), 1, "One");
    std::vector<Decoded> decoded;
    for (const bool isFlushed : {false, true}) {
        Bytes file;
        BASS::OggSplitter splitter(0);
        BASS::OggCutWriter writer(file, {}, 7);
        BASS::FrameList frames;
        splitter.push(stream.constData(), stream.size() / 2, frames);
        for (const BASS::AudioFrame& frame : frames)
            writer.write(frame);
        if (isFlushed)
            writer.flush();
        writer.finish();
        const int last = file.bytes.lastIndexOf("OggS");
        EXPECT_EQ(file.bytes.at(last + 5) & 4, 4);
        EXPECT_EQ(file.bytes.size() - last == 27, isFlushed);
        const QString path = fileWith(file.bytes, QLatin1String(GetParam().suffix));
        EXPECT_NEAR(probedSeconds(path), writer.seconds(), 0.09);
        decoded.push_back(decodedByFfmpeg(path));
        EXPECT_EQ(decoded.back().messages.toStdString(), "");
    }
    EXPECT_TRUE(decoded[0].samples == decoded[1].samples);
}

INSTANTIATE_TEST_SUITE_P(Codecs,
                         OggCut,
                         testing::Values(Codec{"vorbis", "libvorbis", 44100, "ogg", true},
                                         Codec{"opus", "libopus", 48000, "ogg", false},
                                         Codec{"flac", "flac", 44100, "oga", true}),
                         [](const auto& test) { return std::string(test.param.name); });
