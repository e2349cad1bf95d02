#pragma once

#include <QString>
#include <QStringList>
#include <QTranslator>
#include <QVector>

#include <memory>
#include <vector>

/// The two files of a language: the texts, and additional ones (those of the toolkit's dialogs).
struct LanguageFiles {
    QString main;
    QString extra;
};

/// The files that the setting `LanguageFile` means: ".xml", its older ending, becomes ".lng", and
/// for the additional ones ".ex.lng". Pure.
LanguageFiles languageFiles(const QString& setting);

/// A language that can be chosen. A plain value.
struct Language {
    QString file; ///< as `LanguageFile` keeps it: "German.lng"
    QString name; ///< in the language itself: "Deutsch"
};

/// Finds the files of languages (compiled texts of Qt Linguist) and puts one language in force.
///
/// *Thread*: main thread. *Owner*: main(). *Life*: after the application object, and before every
/// widget, for those take their texts when they are made. Its end takes the language out of force.
class LanguageManager final {
    Q_DISABLE_COPY_MOVE(LanguageManager)

  public:
    /// Folders are searched in order; a file of the first hides one of the same name.
    explicit LanguageManager(QStringList folders);
    ~LanguageManager();

    /// "Languages" beside the executable, then ../share/wavelark/Languages.
    static QStringList standardFolders();

    /// Sorted by name.
    [[nodiscard]] QVector<Language> languages() const;

    /// Puts the language of the setting in force; letter case does not count. False: its file is
    /// not there or damaged, one line in the log says so, and the texts stay English. Additional
    /// texts may be missing.
    bool load(const QString& setting);

  private:
    [[nodiscard]] QString find(const QString& fileName) const;
    bool install(const QString& path);

    const QStringList m_folders;
    std::vector<std::unique_ptr<QTranslator>> m_installed;
};
