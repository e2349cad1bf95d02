#include "app/language_manager.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// The languages that the build made.
QString builtFolder() {
    return QStringLiteral(WAVELARK_LANGUAGES);
}

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QString said() {
    return QCoreApplication::translate("BASS::CBass", "Connection timed out");
}

} // namespace

TEST(LanguageManager, FilesOfASetting) {
    const struct {
        const char* setting;
        const char* main;
        const char* extra;
    } cases[] = {
        {"English.lng", "English.lng", "English.ex.lng"},
        {"lang.english.xml", "lang.english.lng", "lang.english.ex.lng"},
        {"german.XML", "german.lng", "german.ex.lng"},
        {"portuguese (brazilian).lng",
         "portuguese (brazilian).lng",
         "portuguese (brazilian).ex.lng"},
        {"../../etc/x.lng", "x.lng", "x.ex.lng"},
        {"C:\\x\\y.lng", "y.lng", "y.ex.lng"},
        {"", "", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.setting);
        const LanguageFiles files = languageFiles(QString::fromLatin1(c.setting));
        EXPECT_EQ(files.main, QLatin1String(c.main));
        EXPECT_EQ(files.extra, QLatin1String(c.extra));
    }
}

TEST(LanguageManager, PutsALanguageInForceAndTakesItBack) {
    const QString english = said();
    for (const char* setting : {"german.lng", "GERMAN.xml"}) {
        LanguageManager manager({QStringLiteral("/nowhere"), builtFolder()});
        EXPECT_TRUE(manager.load(QString::fromLatin1(setting)));
        EXPECT_EQ(said(), QString::fromUtf8("Zeitüberschreitung der Verbindung"));
        EXPECT_EQ(QCoreApplication::translate("StateText", "%n tracks", nullptr, 2),
                  QStringLiteral("2 Titel"));
        EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"),
                  QStringLiteral("Abbrechen"));
    }
    EXPECT_EQ(said(), english);
    LanguageManager manager({builtFolder()});
    EXPECT_TRUE(manager.load(QStringLiteral("English.lng")));
    EXPECT_EQ(QCoreApplication::translate("StateText", "%n tracks", nullptr, 1),
              QStringLiteral("1 track"));
}

TEST(LanguageManager, MissingAndDamagedFilesLeaveEnglish) {
    const QString english = said();
    QTemporaryDir folder;
    const QByteArray whole = bytesOf(builtFolder() + QStringLiteral("/German.lng"));
    ASSERT_GT(whole.size(), 1000);
    write(folder.filePath(QStringLiteral("Empty.lng")), {});
    write(folder.filePath(QStringLiteral("Noise.lng")), QByteArray(5000, '\xa5'));
    write(folder.filePath(QStringLiteral("Half.lng")), whole.left(whole.size() / 2));
    QDir(folder.path()).mkdir(QStringLiteral("Folder.lng"));
    LanguageManager manager({folder.path()});
    for (const char* name : {"Empty", "Noise", "Half", "Folder", "Missing", ""}) {
        EXPECT_FALSE(manager.load(QString::fromLatin1(name) + QStringLiteral(".lng"))) << name;
        EXPECT_EQ(said(), english);
    }
    EXPECT_FALSE(manager.load({}));
    EXPECT_TRUE(manager.languages().isEmpty());
}

TEST(LanguageManager, ListsEachLanguageOnceUnderItsOwnName) {
    QTemporaryDir folder;
    ASSERT_TRUE(QFile::copy(builtFolder() + QStringLiteral("/English.lng"),
                            folder.filePath(QStringLiteral("Klingon.lng"))));
    ASSERT_TRUE(QFile::copy(builtFolder() + QStringLiteral("/German.lng"),
                            folder.filePath(QStringLiteral("german.lng"))));
    QStringList found;
    for (const Language& language : LanguageManager({builtFolder(), folder.path()}).languages())
        found.append(language.file + QLatin1Char('=') + language.name);
    EXPECT_EQ(found,
              QStringList({QStringLiteral("German.lng=Deutsch"),
                           QStringLiteral("English.lng=English"),
                           QStringLiteral("Klingon.lng=Klingon")}));
}
