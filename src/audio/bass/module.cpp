#include "audio/bass/bass_library.h"

#include <QCoreApplication>

#include <type_traits>

namespace {
QByteArray lastRefusal;
}

// The symbols of the provider module (see audio_library.h); named as types so that a change of the
// contract does not go unnoticed.
extern "C" {

Q_DECL_EXPORT BASS::AudioLibrary* wavelark_create_audio_library() {
    auto files = BASS::BassFiles::load(QCoreApplication::applicationDirPath());
    if (!files) {
        lastRefusal = files.error().toUtf8();
        return nullptr;
    }
    return new BASS::BassLibrary(std::move(files.value())); // owned by the caller
}

Q_DECL_EXPORT const char* wavelark_audio_library_refusal() {
    return lastRefusal.constData();
}
}

static_assert(
    std::is_same_v<decltype(wavelark_create_audio_library), BASS::CreateAudioLibraryProc>);
static_assert(
    std::is_same_v<decltype(wavelark_audio_library_refusal), BASS::AudioLibraryRefusalProc>);
