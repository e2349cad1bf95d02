#include "app/command_line.h"
#include "app/startup.h"

#include <gtest/gtest.h>

namespace {
CommandRecord parse(std::initializer_list<const char*> arguments) {
    QStringList list{QStringLiteral("/path/wavelark")};
    for (const char* argument : arguments)
        list.append(QString::fromUtf8(argument));
    return parseCommandLine(list);
}

QStringList started(std::initializer_list<const char*> arguments) {
    QStringList list{QStringLiteral("wavelark")};
    for (const char* argument : arguments)
        list.append(QString::fromLatin1(argument));
    return list;
}
} // namespace

TEST(CommandLine, ReadsAScheduledStart) {
    const CommandRecord record = parse({"/station_id=4711",
                                        "/action=\"Record (Split)\"",
                                        "/name=\"My = Radio\"",
                                        "/show=minimizedtotray",
                                        "/duration=5400",
                                        "/end_action=1",
                                        "/id=abc"});
    EXPECT_EQ(record.stationId, QStringLiteral("4711"));
    EXPECT_EQ(record.recordAction, RecordAction::Split);
    EXPECT_EQ(record.name, QStringLiteral("My = Radio"));
    EXPECT_EQ(record.show, ShowMode::MinimizedToTray);
    EXPECT_EQ(record.duration, 5400);
    EXPECT_EQ(record.endAction, EndAction::Exit);
    EXPECT_EQ(record.id, QStringLiteral("abc"));
    EXPECT_FALSE(record.url);
    EXPECT_FALSE(record.isMuteOnStart);
}

TEST(CommandLine, ActionsAndMuting) {
    struct Case {
        const char* argument;
        RecordAction action;
        bool isMute;
    };
    const Case cases[] = {{"/action=Play", RecordAction::None, false},
                          {"/action=Record (Split)", RecordAction::Split, false},
                          {"/action=Record (No Split)", RecordAction::NoSplit, false},
                          {"/action=Record", RecordAction::Record, false},
                          {"/action=Recordings", RecordAction::Record, false},
                          {"/action=record", RecordAction::None, false},
                          {"/action=MuteVolume", RecordAction::None, false},
                          {"/action=Play MuteVolume", RecordAction::None, true},
                          {"/action=\"MuteVolume\"", RecordAction::None, false},
                          {"/action=Record (Split)MuteVolume", RecordAction::Split, true},
                          {"/action=", RecordAction::None, false}};
    for (const Case& c : cases) {
        const CommandRecord record = parse({c.argument});
        EXPECT_EQ(record.recordAction, c.action) << c.argument;
        EXPECT_EQ(record.isMuteOnStart, c.isMute) << c.argument;
    }
}

TEST(CommandLine, NormalisesAndMatchesInOrder) {
    EXPECT_EQ(parse({"url=\"http://a/b?c=d\""}).url, QStringLiteral("http://a/b?c=d"));
    EXPECT_EQ(parse({"/url=one", "/url=two"}).url, QStringLiteral("two"));
    EXPECT_FALSE(parse({"/URL=one"}).url);
    EXPECT_FALSE(parse({" /url=one"}).url);
    EXPECT_EQ(parse({"/show=minimizedtotrayX"}).show, ShowMode::MinimizedToTray);
    EXPECT_EQ(parse({"/show=minimized"}).show, ShowMode::Minimized);
    EXPECT_EQ(parse({"/SHOW=MINIMIZED"}).show, ShowMode::Normal);
    EXPECT_EQ(parse({"/show=normal"}).show, ShowMode::Normal);
    EXPECT_TRUE(parse({"startlast"}).isStartLast);
    EXPECT_TRUE(parse({"/playlast"}).isPlayLast);
    EXPECT_TRUE(parse({"/restart"}).isRestart);
    EXPECT_EQ(parse({"/duration=x"}).duration, 0);
    EXPECT_TRUE(parse({}).isEmpty());
    EXPECT_TRUE(parseCommandLine({}).isEmpty());
    EXPECT_EQ(parse({"http://stream"}).arguments, QStringList(QStringLiteral("/http://stream")));
}

TEST(CommandLine, EndActionsChangeTheirNumbering) {
    const std::optional<EndAction> cases[] = {EndAction::StopPlaying,
                                              EndAction::Exit,
                                              EndAction::Sleep,
                                              EndAction::Hibernate,
                                              EndAction::Shutdown,
                                              std::nullopt};
    for (int code = 0; code < 6; ++code)
        EXPECT_EQ(endActionFromScheduleCode(QString::number(code)), cases[code]) << code;
    EXPECT_FALSE(endActionFromScheduleCode(QStringLiteral("-1")));
    EXPECT_FALSE(endActionFromScheduleCode(QStringLiteral("x")));
    EXPECT_FALSE(endActionFromScheduleCode(QString()));
    EXPECT_EQ(static_cast<int>(EndAction::Shutdown), 1);
    EXPECT_EQ(static_cast<int>(EndAction::Exit), 4);
}

TEST(CommandLine, AMillionCharactersGoThroughUnharmed) {
    const QString value(1000000, QChar(0x00e9));
    const QStringList arguments{QStringLiteral("w"), QStringLiteral("/name=") + value};
    EXPECT_EQ(parseCommandLine(forwardedArguments(forwardMessage(arguments))).name, value);
}

TEST(CommandLine, ForwardedTextDropsEmptyParts) {
    EXPECT_EQ(forwardedArguments("w\n\n/url=\xc3\xa4\n"),
              QStringList({QStringLiteral("w"), QStringLiteral("/url=\u00e4")}));
    EXPECT_TRUE(forwardedArguments("").isEmpty());
    EXPECT_EQ(
        storedCommandArguments(QStringLiteral("w /url=a b /playlast")),
        QStringList({QStringLiteral("w"), QStringLiteral("url=a b"), QStringLiteral("playlast")}));
}

TEST(Startup, FirstArgumentDecidesInAnyLetterCase) {
    using Kind = StartupSwitch::Kind;
    struct Case {
        const char* argument;
        bool isLanguageSet;
        Kind kind;
        const char* file;
    };
    const Case cases[] = {
        {"/uninstall", true, Kind::Uninstall, ""},
        {"/UnInstall", false, Kind::Uninstall, ""},
        {"/uninstalled", false, Kind::None, ""},
        {"/LANG=german", false, Kind::Language, "german.lng"},
        {"/lang=german", true, Kind::None, ""},
        {"/lang=chinese_simplified", false, Kind::Language, "chinese (simplified).lng"},
        {"/lang=Chinese_Traditional", false, Kind::Language, "chinese (traditional).lng"},
        {"/lang=portuguese_br", false, Kind::Language, "portuguese (brazilian).lng"},
        {"/lang=../x", false, Kind::None, ""},
        {"/url=/lang=german", false, Kind::None, ""},
    };
    for (const Case& c : cases) {
        const StartupSwitch decision = decideStartupSwitch(started({c.argument}), c.isLanguageSet);
        EXPECT_EQ(decision.kind, c.kind) << c.argument;
        EXPECT_EQ(decision.languageFile, QLatin1String(c.file)) << c.argument;
    }
    EXPECT_EQ(decideStartupSwitch(started({"/a", "/uninstall"}), false).kind, Kind::None);
    EXPECT_EQ(decideStartupSwitch(started({}), false).kind, Kind::None);
}

TEST(Startup, OnlyASecondaryWithoutRestartForwards) {
    struct Case {
        QStringList arguments;
        bool isSecondary;
        bool areManyAllowed;
        bool isForwarding;
    };
    const Case cases[] = {{started({"/url=x"}), true, false, true},
                          {started({}), true, false, true},
                          {started({"/url=x"}), false, false, false},
                          {started({"/url=x"}), true, true, false},
                          {started({"/url=x", "/restart"}), true, false, false},
                          {started({"/Restart"}), true, false, true}};
    for (const Case& c : cases)
        EXPECT_EQ(isForwarding({c.arguments, c.isSecondary, c.areManyAllowed}), c.isForwarding);
    EXPECT_FALSE(isWindowShownAtStart(started({"/show=minimized"})));
    EXPECT_TRUE(isWindowShownAtStart(started({"/SHOW=MINIMIZED"})));
    EXPECT_TRUE(isWindowShownAtStart(started({"/show=minimizedtotray"})));
}
