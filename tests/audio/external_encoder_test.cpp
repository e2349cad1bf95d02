#include "audio/ffmpeg/external_encoder.h"

#include <gtest/gtest.h>

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
