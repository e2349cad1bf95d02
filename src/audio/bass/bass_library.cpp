#include "audio/bass/bass_library.h"

#include "audio/bass/bass_text.h"
#include "base/log.h"

// Session, devices and configuration; streams are in bass_library_streams.cpp, channels in
// bass_library_channels.cpp, encoders in bass_library_encode.cpp.

namespace BASS {
namespace {

std::string versionText(DWORD version) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += (text.empty() ? "" : ".") + std::to_string((version >> shift) & 0xFFU);
    return text;
}

} // namespace

BassLibrary::BassLibrary(std::unique_ptr<BassFiles> files)
    : m_files(std::move(files)), m_bass(m_files->functions()),
      m_description("BASS " + versionText(m_bass.GetVersion())), m_encoders(m_bass) {
    m_bass.SetConfig(BASS_CONFIG_UNICODE, 1); // device names in UTF-8, on every system
    if (m_files->isLoaded(BassFile::Fx))
        qCInfo(lcAudio, "effects version=%s", versionText(m_bass.FxGetVersion()).c_str());
}

BassLibrary::~BassLibrary() {
    Free();
}

bool BassLibrary::fail(int error) {
    setOwnBassError(error);
    return false;
}

int BassLibrary::ErrorGetCode() const {
    const int own = ownBassError();
    return own != BASS_OK ? own : m_bass.ErrorGetCode();
}

bool BassLibrary::Init(int device, DWORD freq, DWORD flags) {
    return m_bass.Init(device, freq, flags, nullptr, nullptr) != 0;
}

bool BassLibrary::Free() {
    for (const Stream& stream : bassStreams().all()) {
        if (stream->bass == &m_bass)
            closeStream(stream->handle);
    }
    return m_bass.Free() != 0;
}

bool BassLibrary::SetDevice(DWORD device) {
    return m_bass.SetDevice(device) != 0;
}

DWORD BassLibrary::GetDevice() const {
    return m_bass.GetDevice();
}

bool BassLibrary::GetDeviceInfo(DWORD device, BASS_DEVICEINFO* info) {
    return m_bass.GetDeviceInfo(device, info) != 0;
}

bool BassLibrary::SetConfig(DWORD option, DWORD value) {
    return m_bass.SetConfig(option, value) != 0;
}

DWORD BassLibrary::GetConfig(DWORD option) const {
    return m_bass.GetConfig(option);
}

bool BassLibrary::SetConfigPtr(DWORD option, const void* value) {
    const DWORD plain = option & ~BASS_UNICODE;
    if (value == nullptr)
        return m_bass.SetConfigPtr(plain, nullptr) != 0;
    std::u16string text = wideText(value, option);
    const std::lock_guard lock(m_textMutex);
    if (m_bass.SetConfigPtr(plain | BASS_UNICODE, text.c_str()) == 0)
        return false;
    // a short text lies inside its object: it must be given as it will stay
    std::u16string& kept = m_texts[plain];
    kept.swap(text);
    return m_bass.SetConfigPtr(plain | BASS_UNICODE, kept.c_str()) != 0;
}

HPLUGIN BassLibrary::PluginLoad(const char* file) {
    if (file == nullptr) {
        fail(BASS_ERROR_ILLPARAM);
        return 0;
    }
    const QString name = bassFileName(QString::fromLatin1(file));
    // effects are functions, not a format: loaded with the others, and no add-on to the library
    if (name == bassFileName(BassFile::Fx)) {
        if (m_files->isLoaded(BassFile::Fx))
            return 1;
        fail(BASS_ERROR_FILEOPEN);
        return 0;
    }
    return m_bass.PluginLoad(m_files->path(name).utf16(), BASS_UNICODE);
}

} // namespace BASS
