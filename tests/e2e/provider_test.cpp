#include "e2e/program_run.h"
#include "support/system.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>

using namespace std::chrono_literals;

namespace {

bool hasLoaded(const QStringList& libraries, const char* pattern) {
    const QRegularExpression name{QString::fromLatin1(pattern)};
    return std::any_of(libraries.begin(), libraries.end(), [&name](const QString& path) {
        return name.match(QFileInfo(path).fileName()).hasMatch();
    });
}

} // namespace

/// The setting asks for the closed library. Whatever lies beside the program, there is a provider,
/// never two of them in one process, and the user hears of what is missing.
TEST(Provider, ClosedLibraryIsUsedWhereItLiesBesideTheProgram) {
    const struct {
        const char* variant;
        const char* library;
        const char* missing;
    } cases[] = {
        {"all", "library=BASS 2.4.17.1", nullptr},
        {"bare", "library=BASS 2.4.17.1", nullptr},
        {"incomplete", "library=embedded FFmpeg", "BASS_ChannelSlideAttribute"},
        {nullptr, "library=embedded FFmpeg", "embedded audio library is used instead"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.variant == nullptr ? "nothing" : c.variant);
        const QTemporaryDir folder;
        ProgramRun run;
        run.setProgram(copyOfProgram(folder.path()));
        if (c.variant != nullptr) {
            const QString stubs = QStringLiteral(BASS_STUBS);
            ASSERT_TRUE(putFiles(stubs + QLatin1Char('/') + QLatin1String(c.variant),
                                 QStringLiteral("*bass*"),
                                 folder.path()));
            ASSERT_TRUE(putFiles(
                QFileInfo(stubs).path(), QStringLiteral("*bass_stub_state.*"), folder.path()));
        }
        run.setSetting(QStringLiteral("AudioProvider"), QStringLiteral("bass"));
        run.start({QStringLiteral("/url=http://127.0.0.1:9/live"), QStringLiteral("/name=Live")});
        ASSERT_TRUE(run.waitForLog(QStringLiteral("library initialised"), 30s))
            << run.output().toStdString() << run.log().toStdString();
        EXPECT_TRUE(run.log().contains(QLatin1String(c.library))) << run.log().toStdString();
        const bool isClosed = c.missing == nullptr;
        EXPECT_TRUE(isClosed || run.waitForOutput(QLatin1String(c.missing), 10s))
            << run.output().toStdString();
        const QStringList loaded = test_system::loadedLibraries(run.processId());
        EXPECT_TRUE(hasLoaded(loaded, "Qt5Core")); // that it sees anything at all
        EXPECT_EQ(hasLoaded(loaded, "^(lib)?bass[.]"), isClosed);
        EXPECT_EQ(hasLoaded(loaded, "avcodec"), !isClosed);
    }
}
