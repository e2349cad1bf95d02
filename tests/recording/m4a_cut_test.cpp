#include "recording/audio_tools.h"
#include "recording/recorder_rig.h"

#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

/// Without the noise that a decoder makes up by itself, at every start another one.
QByteArray adts(const char* arguments = "-c:a aac -aac_pns 0 -b:a 96k -f adts",
                const Tones& tones = {}) {
    return encoded(QString::fromLatin1(arguments).split(QLatin1Char(' ')), tones);
}

/// The decodes of the files, one after the other; each must be clean and as long as it says.
std::vector<float> joinedSamples(const RecorderRig& rig) {
    std::vector<float> sum;
    for (const BASS::RecordedFile& file : rig.files) {
        EXPECT_EQ(QFileInfo(file.path).suffix(), QStringLiteral("m4a"));
        const Decoded part = decodedByFfmpeg(file.path);
        EXPECT_EQ(part.messages.toStdString(), "") << qPrintable(file.path);
        // which counts the frame that is not heard as well
        EXPECT_NEAR(
            probedSeconds(file.path), static_cast<double>(file.duration.count()) / 1000, 0.05);
        sum.insert(sum.end(), part.samples.begin(), part.samples.end());
    }
    return sum;
}

void expectWhole(const RecorderRig& rig, const QByteArray& stream) {
    const std::vector<float> sum = joinedSamples(rig);
    const Decoded whole = decodedByFfmpeg(fileWith(stream, QStringLiteral("aac")));
    EXPECT_EQ(sum.size(), whole.samples.size());
    EXPECT_EQ(difference(whole.samples, sum).largest, 0);
}

} // namespace

TEST(M4aCut, FilesDecodeLikeTheWholeStream) {
    Tones mono;
    mono.channels = 1;
    mono.sampleRate = 24000;
    for (const QByteArray& stream : {adts(), adts("-c:a aac -aac_pns 0 -b:a 40k -f adts", mono)}) {
        RecorderRig rig;
        rig.options.isM4aUsed = true;
        rig.options.hasTags = true; // which move everything behind the header
        rig.start();
        rig.feed(stream,
                 {{stream.size() / 3, QStringLiteral("B")},
                  {stream.size() / 3 + 9000, QStringLiteral("C")}});
        rig.stop();
        ASSERT_EQ(rig.files.size(), 3U);
        expectWhole(rig, stream);
    }
}

/// The tail that moves to the next file lies in fragments that are written already.
TEST(M4aCut, TitlesThatComeLateMoveWhatWasWritten) {
    const QByteArray stream = adts();
    for (const int late : {100, 5000, 30000, 60000}) {
        SCOPED_TRACE(late);
        RecorderRig rig;
        rig.options.isM4aUsed = true;
        rig.recorder.connectionBegan();
        rig.start();
        rig.feedPart(stream.left(80000));
        rig.title(QStringLiteral("B"), 80000 - late);
        rig.feedPart(stream.mid(80000));
        rig.recorder.connectionEnded();
        rig.stop();
        ASSERT_EQ(rig.files.size(), 2U);
        EXPECT_NEAR(static_cast<double>(rig.files[0].bytes), 80000 - late, 3500);
        expectWhole(rig, stream);
    }
}

/// As after a power cut: all but the last fragment plays.
TEST(M4aCut, ATornFilePlays) {
    const QByteArray stream = adts();
    RecorderRig rig;
    rig.options.isM4aUsed = true;
    rig.start();
    rig.feed(stream);
    rig.stop();
    ASSERT_EQ(rig.files.size(), 1U);
    const QByteArray file = fileBytes(rig.files[0].path);
    const Decoded whole = decodedByFfmpeg(rig.files[0].path);
    for (const int part : {1, 2, 3}) {
        const Decoded torn =
            decodedByFfmpeg(fileWith(file.left(file.size() * part / 4), QStringLiteral("m4a")));
        const double seconds = static_cast<double>(torn.samples.size()) / (2 * 44100);
        EXPECT_GT(seconds, 12.0 * part / 4 - 1.5);
        EXPECT_EQ(difference(
                      std::vector<float>(whole.samples.begin(),
                                         whole.samples.begin() + static_cast<std::ptrdiff_t>(
                                                                     torn.samples.size() * 9 / 10)),
                      std::vector<float>(torn.samples.begin(),
                                         torn.samples.begin() + static_cast<std::ptrdiff_t>(
                                                                    torn.samples.size() * 9 / 10)))
                      .largest,
                  0);
    }
}
