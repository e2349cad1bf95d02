#include "audio/bass_defs.h"
#include "audio/encoding.h"
#include "audio/ffmpeg/external_encoder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

using namespace BASS;

TEST(EncoderCommand, FindsAProgramWhosePathHasBlanks) {
    struct Case {
        const char* line;
        QStringList words;
    };
    const auto text = [](const char* latin) { return QString::fromLatin1(latin); };
    const QString program = text("/my programs/lame");
    const Case cases[] = {
        {"/my programs/lame -b 128", {program, text("-b"), text("128")}},
        {"\"/my programs/lame\" - -", {program, text("-"), text("-")}},
        {"lame \"a b\"", {text("lame"), text("a b")}},
        {"/nowhere/x -q", {text("/nowhere/x"), text("-q")}},
        {"", {}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(
            splitEncoderCommand(text(c.line), [&](const QString& path) { return path == program; }),
            c.words)
            << c.line;
}

TEST(ExternalEncoder, AStuckOrBrokenProgramFailsAndIsKilled) {
    struct Case {
        const char* steps; ///< of the stand-in
        bool isEncoded;    ///< ten seconds of audio are taken
        bool isFinished;
    };
    const Case cases[] = {
        {"copy", true, true},
        {"hang", false, false},
        {"take; hang", true, false},
        {"take; exit 1", true, false},
        {"exit 1", false, false},
        {"noise 100000; copy", true, true}, // rubbish is the user's affair
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.steps);
        qint64 written = 0;
        ExternalEncoder::Setup setup;
        setup.commandLine = QString::fromLatin1(encoderStandIn(c.steps));
        if (std::strstr(c.steps, "hang") != nullptr)
            setup.patience = std::chrono::seconds(2);
        ExternalEncoder encoder(setup, [&](const auto*, std::size_t size, std::int64_t at) {
            EXPECT_EQ(at, written);
            written += static_cast<qint64>(size);
        });
        ASSERT_EQ(encoder.open(), BASS_OK);
        const std::vector<float> second(2 * 44100);
        bool isGood = true;
        for (int n = 0; n < 10 && isGood; ++n)
            isGood = encoder.encode(second.data(), 44100);
        EXPECT_EQ(isGood, c.isEncoded);
        EXPECT_EQ(isGood && encoder.finish(), c.isFinished);
        if (c.isFinished) {
            EXPECT_GE(written, 10 * 44100 * 4 + 44);
        }
    }
}
