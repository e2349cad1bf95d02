#include "audio/ffmpeg/ffmpeg_library.h"

#include <QtGlobal>

#include <type_traits>

// The one symbol of the provider module (see audio_library.h); named as a type so that a change of
// the contract does not go unnoticed.
extern "C" Q_DECL_EXPORT BASS::AudioLibrary* wavelark_create_audio_library() {
    return new BASS::FfmpegLibrary; // owned by the caller
}

static_assert(
    std::is_same_v<decltype(wavelark_create_audio_library), BASS::CreateAudioLibraryProc>);
