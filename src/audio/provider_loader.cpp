#include "audio/provider_loader.h"

#include "base/log.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>

namespace BASS {
namespace {

const QLatin1String kEmbedded("ffmpeg");
const QLatin1String kClosed("bass");

QString moduleOf(QLatin1String provider) {
    return QStringLiteral("wavelark_") + provider;
}

/// Why a module that is here makes no library. It is of no use any more.
QString refusalOf(QLibrary& module) {
    const auto refusal =
        reinterpret_cast<AudioLibraryRefusalProc*>(module.resolve(kAudioLibraryRefusalSymbol));
    const QString text = refusal != nullptr ? QString::fromUtf8(refusal()) : QString();
    module.unload();
    return text;
}

} // namespace

QStringList audioProviderFolders() {
    const QString program = QCoreApplication::applicationDirPath();
    return {program, QDir(program).filePath(QStringLiteral("../lib/wavelark"))};
}

Result<std::shared_ptr<AudioLibrary>> loadAudioProvider(const QString& moduleName,
                                                        const QStringList& folders) {
    QString lastError = QCoreApplication::translate("AudioProvider", "no such file");
    for (const QString& folder : folders) {
        // absolute, so that the system's own search path is never asked
        QLibrary module(QDir(QDir(folder).absolutePath()).filePath(moduleName));
        const auto create =
            reinterpret_cast<CreateAudioLibraryProc*>(module.resolve(kCreateAudioLibrarySymbol));
        if (create == nullptr) {
            qCDebug(lcAudio,
                    "provider not here module=%s folder=%s reason=%s",
                    qPrintable(moduleName),
                    qPrintable(folder),
                    qPrintable(module.errorString()));
            if (!module.fileName().isEmpty())
                lastError = module.errorString();
            continue;
        }
        std::shared_ptr<AudioLibrary> library(create());
        if (library == nullptr) {
            lastError = refusalOf(module);
            break;
        }
        qCInfo(lcAudio,
               "provider loaded module=%s library=%s",
               qPrintable(module.fileName()),
               library->Description());
        return library;
    }
    return Error{QCoreApplication::translate("AudioProvider",
                                             "The audio library \"%1\" cannot be loaded: %2")
                     .arg(moduleName, lastError)};
}

Result<ChosenProvider> loadChosenProvider(const QString& name, const QStringList& folders) {
    QStringList notes;
    if (name == kClosed) {
        const auto library = loadAudioProvider(moduleOf(kClosed), folders);
        if (library)
            return ChosenProvider{library.value(), notes};
        notes << QCoreApplication::translate("AudioProvider",
                                             "%1\nThe embedded audio library is used instead.")
                     .arg(library.error());
    } else if (name != kEmbedded) {
        qCWarning(lcAudio, "provider not known name=%s", qPrintable(name));
    }
    for (const QString& note : notes)
        qCWarning(lcAudio, "%s", qPrintable(note));
    const auto library = loadAudioProvider(moduleOf(kEmbedded), folders);
    if (!library)
        return Error{library.error()};
    return ChosenProvider{library.value(), notes};
}

} // namespace BASS
