#include "recording/split_planner.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using BASS::SplitPlanner;
using std::chrono::milliseconds;

struct PlannedTitle {
    int atFrame; ///< told before this frame is asked for
    qint64 position;
    const char* name;
};

struct Case {
    const char* name;
    int delayMs;
    std::vector<PlannedTitle> titles;
    std::string cuts; ///< "frame:song" in a row
};

/// Frames of 100 bytes and 100 ms.
std::string cutsOf(const Case& c) {
    SplitPlanner planner{milliseconds(c.delayMs)};
    std::string cuts;
    for (int frame = 0; frame < 60; ++frame) {
        for (const PlannedTitle& title : c.titles) {
            if (title.atFrame == frame)
                planner.addTitle(BASS::songFromTrack(QLatin1String(title.name)), title.position);
        }
        if (const auto song = planner.beforeFrame(frame * 100, milliseconds(frame * 100)))
            cuts += std::to_string(frame) + ":" + song->track.toStdString() + " ";
    }
    return cuts;
}

class SplitPlan : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(SplitPlan, CutsWhereItShould) {
    EXPECT_EQ(cutsOf(GetParam()), GetParam().cuts);
}

INSTANTIATE_TEST_SUITE_P(
    Cases,
    SplitPlan,
    testing::Values(
        Case{"atABoundary", 0, {{5, 500, "A"}}, "5:A "},
        Case{"behindABoundary", 0, {{6, 501, "A"}}, "6:A "},
        Case{"aheadOfItsPlace", 0, {{2, 1000, "A"}}, "10:A "},
        Case{"delayOf150IsNotWaitedFor", 150, {{5, 500, "A"}}, "5:A "},
        Case{"delayOf200IsNotWaitedFor", 200, {{5, 500, "A"}}, "5:A "},
        Case{"delayOf201Waits", 201, {{5, 500, "A"}}, "8:A "},
        Case{"delayOf250Waits", 250, {{5, 500, "A"}}, "8:A "},
        Case{"twoTitlesInTheDelay", 1000, {{5, 500, "A"}, {9, 900, "B"}}, "15:B 19:B "},
        Case{"twoTitlesApart", 1000, {{5, 500, "A"}, {20, 2000, "B"}}, "15:A 30:B "},
        Case{"secondTitleAsTheFirstFires", 1000, {{5, 500, "A"}, {15, 1500, "B"}}, "15:B 25:B "},
        Case{"titleFarAheadNamesNothingYet", 500, {{5, 500, "A"}, {6, 2000, "B"}}, "10:A 25:B "},
        Case{"twoTitlesInOneFrame", 0, {{5, 401, "A"}, {5, 450, "B"}}, "5:B "}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(SplitPlanner, TitleBehindTheEndOfAConnectionBelongsToTheNext) {
    SplitPlanner planner{milliseconds(0)};
    planner.addTitle(BASS::songFromTrack(QStringLiteral("A")), 100000);
    EXPECT_FALSE(planner.beforeFrame(400, milliseconds(400)));
    planner.endConnection(500);
    EXPECT_TRUE(planner.beforeFrame(500, milliseconds(500)));
}

TEST(SplitPlanner, AskingAgainForOldFramesFindsOnlyNewTitles) {
    SplitPlanner planner{milliseconds(300)};
    planner.addTitle(BASS::songFromTrack(QStringLiteral("A")), 100);
    for (int frame = 0; frame < 4; ++frame)
        EXPECT_FALSE(planner.beforeFrame(frame * 100, milliseconds(frame * 100)));
    for (int frame = 2; frame < 4; ++frame)
        EXPECT_FALSE(planner.beforeFrame(frame * 100, milliseconds(frame * 100)));
    EXPECT_TRUE(planner.beforeFrame(400, milliseconds(400)));
    EXPECT_FALSE(planner.beforeFrame(500, milliseconds(500)));
}
