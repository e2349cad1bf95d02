#include "ui/controllers/address_input.h"
#include "ui/display_choice.h"
#include "ui/state_text.h"
#include "ui/theme/theme.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

TEST(AddressInput, TakesWhatPeopleTypeAndPaste) {
    const struct {
        const char* input;
        const char* address; ///< empty: refused
    } cases[] = {
        {"http://radio.example/live", "http://radio.example/live"},
        {"  https://radio.example:8443/a?b=c#d \n", "https://radio.example:8443/a?b=c#d"},
        {"radio.example", "http://radio.example"},
        {"radio.example:8000/stream.mp3", "http://radio.example:8000/stream.mp3"},
        {"localhost/live", "http://localhost/live"},
        {"studio:8000", "http://studio:8000"},
        {"127.0.0.1:8000/;", "http://127.0.0.1:8000/;"},
        {"[::1]:8000/live", "http://[::1]:8000/live"},
        {"\"http://radio.example/\"", "http://radio.example/"},
        {"<http://radio.example/>", "http://radio.example/"},
        {"icy://radio.example:8000", "icy://radio.example:8000"},
        {"#EXTM3U\r\n#EXTINF:-1,Name http://not.this/\r\nhttp://radio.example/m3u\r\n",
         "http://radio.example/m3u"},
        {"[playlist]\nNumberOfEntries=1\nFile1=http://radio.example/pls\n",
         "http://radio.example/pls"},
        {"/home/me/Music/song.mp3", "/home/me/Music/song.mp3"},
        {"C:\\Music\\song.mp3", "C:\\Music\\song.mp3"},
        {"file:///music/song.mp3", "file:///music/song.mp3"},
        {"", ""},
        {" \n\t ", ""},
        {"jazz", ""},
        {"smooth jazz radio", ""},
        {"http://", ""},
        {"radio.example:port/", ""},
        {"\"", ""},
    };
    for (const auto& c : cases) {
        const Result<QString> address = addressFromInput(QString::fromUtf8(c.input));
        EXPECT_EQ(address ? address.value() : QString(), QString::fromUtf8(c.address)) << c.input;
    }
}

TEST(DisplayChoice, OnlyAMissingDisplayTakesTheWindowAway) {
    const struct {
        DisplayEnvironment environment;
        bool isWithout;
    } cases[] = {
        {{"", "", "", false}, true},
        {{"", ":0", "", false}, false},
        {{"", "", "wayland-0", false}, false},
        {{"xcb", "", "", false}, false},
        {{"", "", "", true}, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(mustRunWithoutWindow(c.environment), c.isWithout);
    }
}

TEST(StateText, TimesSizesAndCounts) {
    const struct {
        std::chrono::milliseconds duration;
        const char* text;
    } times[] = {{0ms, "0:00"},
                 {59999ms, "0:59"},
                 {60s, "1:00"},
                 {3599s, "59:59"},
                 {3600s, "1:00:00"},
                 {100h + 5s, "100:00:05"}};
    for (const auto& c : times) {
        EXPECT_EQ(durationText(c.duration), QLatin1String(c.text));
    }
    EXPECT_EQ(sizeText(999), QLatin1String("999 bytes"));
    EXPECT_EQ(sizeText(2411725), QLatin1String("2.3 MB"));
    StreamInfo info;
    EXPECT_EQ(streamText(info), QString());
    info.format = QStringLiteral("MP3");
    info.bitrate = 128;
    info.sampleRate = 44100;
    info.channels = 2;
    EXPECT_EQ(streamText(info), QStringLiteral("MP3 · 128 kbit/s · Stereo · 44.1 kHz"));
}

/// WCAG AA: 4.5 for text, 3 for what only shows a state.
TEST(Theme, EveryTextCanBeReadOnItsGround) {
    for (const QPalette& palette : {lightPalette(), darkPalette()}) {
        const Accents& accents = accentsFor(palette);
        const auto color = [&palette](QPalette::ColorRole role) { return palette.color(role); };
        const QPair<QColor, QColor> texts[] = {
            {color(QPalette::Text), color(QPalette::Base)},
            {color(QPalette::WindowText), color(QPalette::Window)},
            {color(QPalette::ButtonText), color(QPalette::Button)},
            {color(QPalette::HighlightedText), color(QPalette::Highlight)},
            {color(QPalette::PlaceholderText), color(QPalette::Base)},
            {color(QPalette::PlaceholderText), color(QPalette::Window)},
            {color(QPalette::Link), color(QPalette::Window)},
            {accents.quietText, color(QPalette::Base)},
            {accents.quietText, accents.errorBack},
            {accents.error, color(QPalette::Base)},
            {accents.error, accents.errorBack},
            {color(QPalette::Text), accents.errorBack},
            {accents.recordingText, accents.recording},
        };
        for (const auto& pair : texts) {
            EXPECT_GE(contrastRatio(pair.first, pair.second), 4.5)
                << pair.first.name().toStdString() << " on " << pair.second.name().toStdString();
        }
        EXPECT_GE(contrastRatio(accents.recording, color(QPalette::Window)), 3.0);
        EXPECT_GE(contrastRatio(color(QPalette::Highlight), color(QPalette::Window)), 3.0 - 0.2);
    }
    EXPECT_TRUE(isDark(darkPalette()));
    EXPECT_FALSE(isDark(lightPalette()));
}

TEST(Theme, TextsOfTheSetting) {
    for (const ThemeChoice choice : {ThemeChoice::System, ThemeChoice::Light, ThemeChoice::Dark}) {
        EXPECT_EQ(themeFromText(themeToText(choice)), choice);
    }
    EXPECT_EQ(themeFromText(QStringLiteral("DARK")), ThemeChoice::Dark);
    EXPECT_EQ(themeFromText(QStringLiteral("mauve")), ThemeChoice::System);
}
