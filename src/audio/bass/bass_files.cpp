#include "audio/bass/bass_files.h"

#include "base/log.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>

namespace BASS {
namespace {

struct FileRow {
    BassFile file;
    const char* name;
};

/// In the order of loading: the add-ons ask the system for the library itself, which is there then.
constexpr FileRow kFiles[] = {
    {BassFile::Core, "bass"},
    {BassFile::Aac, "bass_aac"},
    {BassFile::Flac, "bassflac"},
    {BassFile::Hls, "basshls"},
    {BassFile::Opus, "bassopus"},
    {BassFile::Wma, "basswma"},
    {BassFile::Fx, "bass_fx"},
    {BassFile::Enc, "bassenc"},
    {BassFile::EncMp3, "bassenc_mp3"},
    {BassFile::EncOgg, "bassenc_ogg"},
    {BassFile::EncFlac, "bassenc_flac"},
};

QString systemName(const QString& stem) {
    return QLatin1String(BASS_FILE_PREFIX) + stem + QLatin1String(BASS_FILE_SUFFIX);
}

QString text(const char* source) {
    return QCoreApplication::translate("AudioProvider", source);
}

constexpr const char* kNotThere = QT_TRANSLATE_NOOP("AudioProvider", "\"%1\" cannot be loaded: %2");
constexpr const char* kLacksFunctions =
    QT_TRANSLATE_NOOP("AudioProvider", "\"%1\" lacks functions that are needed: %2");
constexpr const char* kOtherVersion =
    QT_TRANSLATE_NOOP("AudioProvider", "\"%1\" is version %2.%3; version 2.4 is needed");

} // namespace

QString bassFileName(BassFile file) {
    return systemName(QLatin1String(kFiles[static_cast<std::size_t>(file)].name));
}

QString bassFileName(const QString& asked) {
    QString stem = asked;
    if (stem.endsWith(QLatin1String(".dll"), Qt::CaseInsensitive))
        stem.chop(4);
    return systemName(stem);
}

Result<std::unique_ptr<BassFiles>> BassFiles::load(const QString& folder) {
    std::unique_ptr<BassFiles> files(new BassFiles(folder));
    const Status loaded = files->loadAll();
    if (!loaded) {
        files->unload(); // what was refused has no business in the process
        return Error{loaded.error()};
    }
    return files;
}

BassFiles::BassFiles(QString folder)
    : m_folder(QDir(folder).absolutePath()), m_libraries(std::size(kFiles)) {}

QString BassFiles::path(const QString& fileName) const {
    return QDir(m_folder).filePath(fileName);
}

bool BassFiles::isLoaded(BassFile file) const {
    return m_libraries[static_cast<std::size_t>(file)] != nullptr;
}

Status BassFiles::loadAll() {
    for (const FileRow& row : kFiles) {
        loadFile(row.file);
        if (!isLoaded(BassFile::Core))
            return Error{text(kNotThere).arg(bassFileName(BassFile::Core), m_coreError)};
    }
    const Status bound = bindAll();
    return bound ? checkVersion() : bound;
}

void BassFiles::loadFile(BassFile file) {
    const QString name = bassFileName(file);
    // the full path, so that the system's own search never finds another
    auto library = std::make_unique<QLibrary>(path(name));
    if (file == BassFile::Core)
        library->setLoadHints(QLibrary::ExportExternalSymbolsHint); // the add-ons call it
    if (library->load()) {
        m_libraries[static_cast<std::size_t>(file)] = std::move(library);
        return;
    }
    if (file == BassFile::Core)
        m_coreError = library->errorString();
    m_missing << name;
    qCInfo(lcAudio,
           "add-on not here file=%s reason=%s",
           qPrintable(name),
           qPrintable(library->errorString()));
}

Status BassFiles::bindAll() {
    QStringList needed;
    for (BassFunctionEntry* const entry : m_functions.table) {
        const auto& library = m_libraries[static_cast<std::size_t>(entry->file())];
        if (library == nullptr)
            continue;
        entry->bind(library->resolve(entry->name()));
        if (entry->isBound())
            continue;
        const QString name = QString::fromLatin1(entry->name());
        const QString file = bassFileName(entry->file());
        m_missing << QStringLiteral("%1 (%2)").arg(name, file);
        if (entry->need() == BassNeed::Required)
            needed << name;
        qCInfo(lcAudio, "function not here name=%s file=%s", entry->name(), qPrintable(file));
    }
    if (needed.isEmpty())
        return Done{};
    return Error{
        text(kLacksFunctions).arg(bassFileName(BassFile::Core), needed.join(QStringLiteral(", ")))};
}

Status BassFiles::checkVersion() const {
    const DWORD version = m_functions.GetVersion();
    if (version >> 16 == kBassApiVersion)
        return Done{};
    return Error{text(kOtherVersion)
                     .arg(bassFileName(BassFile::Core))
                     .arg(version >> 24)
                     .arg((version >> 16) & 0xFFU)};
}

void BassFiles::unload() {
    for (BassFunctionEntry* const entry : m_functions.table)
        entry->bind(nullptr);
    std::for_each(m_libraries.rbegin(), m_libraries.rend(), [](std::unique_ptr<QLibrary>& library) {
        if (library != nullptr)
            library->unload();
        library.reset();
    });
}

} // namespace BASS
