#include "audio/bass/stub_session.h"
#include "audio/provider_loader.h"

#include <QTemporaryDir>

namespace BASS {
namespace {

TEST(BassBinding, EverythingIsFoundInItsFile) {
    const auto files = BassFiles::load(stubFolder("all"));
    ASSERT_TRUE(files) << files.error().toStdString();
    // an add-on of any age lacks some that have another way
    const QStringList expected{
        QStringLiteral("BASS_StreamCancel (%1)").arg(bassFileName(BassFile::Core)),
        QStringLiteral("BASS_MP4_StreamCreateURL (%1)").arg(bassFileName(BassFile::Aac)),
        QStringLiteral("BASS_WMA_StreamCreateURL (%1)").arg(bassFileName(BassFile::Wma))};
    EXPECT_EQ(files.value()->missing(), expected);
}

struct Refused {
    const char* variant;
    std::vector<QString> named;
};

TEST(BassBinding, WhatIsRefusedIsNamedAndUnloaded) {
    const QTemporaryDir empty;
    const QString core = bassFileName(BassFile::Core);
    const Refused table[] = {
        {"nothing here", {core}},
        {"incomplete", {core, QStringLiteral("BASS_ChannelSlideAttribute")}},
        {"newer", {core, QStringLiteral("3.0")}},
    };
    for (const Refused& row : table) {
        const auto files = BassFiles::load(stubFolder(row.variant));
        ASSERT_FALSE(files) << row.variant;
        for (const QString& name : row.named)
            EXPECT_TRUE(files.error().contains(name)) << files.error().toStdString();
        QLibrary left(stubFolder(row.variant) + QLatin1Char('/') + core);
        EXPECT_FALSE(left.isLoaded()) << row.variant;
    }
}

TEST(BassBinding, MissingAddOnsAreNamedAndTheirCallsFail) {
    auto files = BassFiles::load(stubFolder("bare"));
    ASSERT_TRUE(files) << files.error().toStdString();
    for (const BassFile file : {BassFile::Aac, BassFile::Fx, BassFile::Enc, BassFile::EncFlac})
        EXPECT_TRUE(files.value()->missing().contains(bassFileName(file)));
    BassLibrary library(std::move(files.value()));
    EXPECT_EQ(library.FLAC_StreamCreateURL(u"http://a/b.flac", 0, BASS_UNICODE, nullptr, nullptr),
              0U);
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_NOTAVAIL);
    EXPECT_EQ(library.PluginLoad("bass_fx.dll"), 0U);
    EXPECT_EQ(library.ErrorGetCode(), BASS_ERROR_FILEOPEN);
    // the next call that the library has carried out clears it
    EXPECT_TRUE(library.ChannelPlay(7, false));
    EXPECT_EQ(library.ErrorGetCode(), BASS_OK);
}

TEST(BassBinding, FileNamesFollowTheSystem) {
    const QString core = bassFileName(BassFile::Core);
    EXPECT_TRUE(core == QLatin1String("bass.dll") || core == QLatin1String("libbass.so"));
    EXPECT_EQ(bassFileName(QStringLiteral("basswma.dll")), bassFileName(BassFile::Wma));
    EXPECT_EQ(bassFileName(QStringLiteral("bass_aac.dll")), bassFileName(BassFile::Aac));
}

// The closed library does not lie beside this program, so that the setting cannot be followed.
TEST(ChosenProvider, EmbeddedOneAnswersWithANote) {
    struct Row {
        const char* setting;
        int notes;
    };
    for (const Row& row : {Row{"bass", 1}, Row{"ffmpeg", 0}, Row{"../nonsense", 0}}) {
        const auto chosen =
            loadChosenProvider(QLatin1String(row.setting), {QStringLiteral(MODULES)});
        ASSERT_TRUE(chosen) << chosen.error().toStdString();
        EXPECT_EQ(std::string(chosen.value().library->Description()).rfind("embedded FFmpeg", 0),
                  0U);
        ASSERT_EQ(chosen.value().notes.size(), row.notes) << row.setting;
        const QString note = chosen.value().notes.join(QLatin1Char('\n'));
        EXPECT_EQ(note.contains(bassFileName(BassFile::Core)), row.notes > 0);
    }
}

} // namespace
} // namespace BASS
