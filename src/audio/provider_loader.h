#pragma once

#include "audio/audio_library.h"
#include "base/result.h"

#include <QStringList>

#include <memory>

namespace BASS {

/// Makes the library of a provider module ("wavelark_ffmpeg", "wavelark_bass"). Each provider is a
/// module of its own and only the chosen one is loaded into the process; a loaded module stays.
/// Folders are searched in order. GUI thread, at start-up.
Result<std::shared_ptr<AudioLibrary>> loadAudioProvider(const QString& moduleName,
                                                        const QStringList& folders);

/// The provider that is in use, and what the user should know about it.
struct ChosenProvider {
    std::shared_ptr<AudioLibrary> library;
    QStringList notes;
};

/// The provider of the setting's value ("ffmpeg", "bass"); where it cannot be had or is not known,
/// the embedded one, with a note that says why. Fails only where that cannot be had either.
Result<ChosenProvider> loadChosenProvider(const QString& name, const QStringList& folders);

/// Beside the executable, then ../lib/wavelark.
QStringList audioProviderFolders();

} // namespace BASS
