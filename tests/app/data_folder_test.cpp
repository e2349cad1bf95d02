#include "app/data_folder.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

TEST(DataFolder, InstalledProgramsKeepTheirDataInTheHomeFolder) {
    const ProgramFolders programFiles{{QStringLiteral("C:/Program Files")}, FolderMatch::Anywhere};
    const ProgramFolders packages{{QStringLiteral("/usr"), QStringLiteral("/opt")},
                                  FolderMatch::AtStart};
    struct Case {
        const char* applicationDir;
        ProgramFolders folders;
        const char* chosen;
        bool isPortable;
        const char* dataFolder;
    };
    const Case cases[] = {
        {"C:/PROGRAM FILES (x86)/Wavelark", programFiles, "", false, "/home/ann/Wavelark"},
        {"C:/program files/Wavelark", programFiles, "", false, "/home/ann/Wavelark"},
        {"E:/Wavelark", programFiles, "", true, "E:/Wavelark"},
        {"/usr/bin", packages, "", false, "/home/ann/Wavelark"},
        {"/usr/local/bin", packages, "", false, "/home/ann/Wavelark"},
        {"/opt/wavelark", packages, "", false, "/home/ann/Wavelark"},
        {"/home/ann/usr/wavelark", packages, "", true, "/home/ann/usr/wavelark"},
        {"/usrlocal", packages, "", true, "/usrlocal"},
        {"/usr/bin", packages, "/data/../data/w/", true, "/data/w"},
        {"/x", {{QString()}, FolderMatch::Anywhere}, "", true, "/x"},
    };
    for (const Case& c : cases) {
        for (const char* home : {"/home/ann", "/home/ann/"}) {
            const DataFolder folder = decideDataFolder({QString::fromLatin1(c.applicationDir),
                                                        c.folders,
                                                        QString::fromLatin1(home),
                                                        QString::fromLatin1(c.chosen)});
            EXPECT_EQ(folder.isPortable, c.isPortable) << c.applicationDir;
            QString expected = QString::fromLatin1(c.dataFolder);
            if (*c.chosen != '\0')
                expected = QFileInfo(expected).absoluteFilePath();
            EXPECT_EQ(folder.path, QDir::toNativeSeparators(expected)) << c.applicationDir;
        }
    }
}
