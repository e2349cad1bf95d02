#include "audio/provider_loader.h"

#include "base/log.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>

namespace BASS {

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

} // namespace BASS
