#include "audio/bass/bass_library.h"

namespace BASS {

bool BassLibrary::ChannelPlay(DWORD handle, bool restart) {
    return m_bass.ChannelPlay(handle, restart ? 1 : 0) != 0;
}

bool BassLibrary::ChannelPause(DWORD handle) {
    return m_bass.ChannelPause(handle) != 0;
}

bool BassLibrary::ChannelStop(DWORD handle) {
    return m_bass.ChannelStop(handle) != 0;
}

DWORD BassLibrary::ChannelIsActive(DWORD handle) {
    return m_bass.ChannelIsActive(handle);
}

bool BassLibrary::ChannelGetInfo(DWORD handle, BASS_CHANNELINFO* info) {
    BassChannelInfo filled{};
    if (m_bass.ChannelGetInfo(handle, &filled) == 0)
        return false;
    *info = {
        filled.freq, filled.chans, filled.flags, filled.ctype, filled.origres & BASS_ORIGRES_BITS};
    return true;
}

const char* BassLibrary::ChannelGetTags(DWORD handle, DWORD tags) {
    return m_bass.ChannelGetTags(handle, tags);
}

bool BassLibrary::ChannelSetAttribute(DWORD handle, DWORD attribute, float value) {
    return m_bass.ChannelSetAttribute(handle, attribute, value) != 0;
}

bool BassLibrary::ChannelGetAttribute(DWORD handle, DWORD attribute, float* value) {
    if (attribute != BASS_ATTRIB_AUTO_GAIN)
        return m_bass.ChannelGetAttribute(handle, attribute, value) != 0;
    const auto stream = streamOf(handle).second;
    const std::lock_guard lock(m_effectsMutex);
    if (stream == nullptr)
        return fail(BASS_ERROR_HANDLE);
    *value = stream->effects ? stream->effects->chain().autoGainDb() : 0.0F;
    return true;
}

bool BassLibrary::ChannelSetEffects(DWORD handle, const EffectSettings& settings) {
    if (handle == 0) {
        const std::lock_guard lock(m_effectsMutex);
        m_effects = settings;
        return true;
    }
    const auto [token, stream] = streamOf(handle);
    if (stream == nullptr)
        return fail(BASS_ERROR_HANDLE);
    const std::lock_guard lock(m_effectsMutex);
    return setEffects(*stream, token, settings);
}

bool BassLibrary::setEffects(BassStream& stream, void* token, const EffectSettings& settings) {
    if (stream.effects != nullptr) {
        stream.effects->chain().set(settings);
        return true;
    }
    if (isChangingNothing(settings))
        return true;
    BassChannelInfo info{};
    if (m_bass.ChannelGetInfo(stream.handle, &info) == 0)
        return false;
    stream.effects = std::make_unique<BassEffects>(static_cast<int>(info.freq), info.chans);
    stream.effects->chain().set(settings);
    if (m_bass.ChannelSetDsp(stream.handle, &onBassDsp, token, 0) != 0)
        return true;
    stream.effects.reset();
    return false;
}

DWORD BassLibrary::ChannelFlags(DWORD handle, DWORD flags, DWORD mask) {
    return m_bass.ChannelFlags(handle, flags, mask);
}

bool BassLibrary::ChannelSlideAttribute(DWORD handle, DWORD attribute, float value, DWORD time) {
    return m_bass.ChannelSlideAttribute(handle, attribute, value, time) != 0;
}

bool BassLibrary::ChannelIsSliding(DWORD handle, DWORD attribute) {
    return m_bass.ChannelIsSliding(handle, attribute) != 0;
}

HSYNC
BassLibrary::ChannelSetSync(DWORD handle, DWORD type, QWORD param, SYNCPROC* proc, void* user) {
    if (proc == nullptr) {
        fail(BASS_ERROR_ILLPARAM);
        return 0;
    }
    auto record = std::make_shared<BassSync>();
    record->proc = proc;
    record->user = user;
    record->channel = handle;
    record->isOneTime = (type & BASS_SYNC_ONETIME) != 0;
    record->stream = bassStreams()
                         .findIf([this, handle](const BassStream& stream) {
                             return stream.bass == &m_bass && stream.handle == handle;
                         })
                         .second;
    void* const token = bassSyncs().add(record);
    const HSYNC sync = m_bass.ChannelSetSync(handle, type, param, &onBassSync, token);
    record->sync = sync;
    if (sync == 0)
        bassSyncs().remove(token);
    return sync;
}

bool BassLibrary::ChannelRemoveSync(DWORD handle, HSYNC sync) {
    if (m_bass.ChannelRemoveSync(handle, sync) == 0)
        return false;
    bassSyncs().removeIf([handle, sync](const BassSync& record) {
        return record.channel == handle && record.sync == sync;
    });
    return true;
}

QWORD BassLibrary::ChannelGetPosition(DWORD handle, DWORD mode) {
    return m_bass.ChannelGetPosition(handle, mode);
}

bool BassLibrary::ChannelSetPosition(DWORD handle, QWORD position, DWORD mode) {
    return m_bass.ChannelSetPosition(handle, position, mode) != 0;
}

QWORD BassLibrary::ChannelGetLength(DWORD handle, DWORD mode) {
    return m_bass.ChannelGetLength(handle, mode);
}

double BassLibrary::ChannelBytes2Seconds(DWORD handle, QWORD bytes) {
    return m_bass.ChannelBytes2Seconds(handle, bytes);
}

QWORD BassLibrary::ChannelSeconds2Bytes(DWORD handle, double seconds) {
    return m_bass.ChannelSeconds2Bytes(handle, seconds);
}

DWORD BassLibrary::ChannelGetLevel(DWORD handle) {
    return m_bass.ChannelGetLevel(handle);
}

double BassLibrary::ChannelGetSpectrum(DWORD handle, float* bins) {
    constexpr DWORD kFailed = ~DWORD{0};
    BASS_CHANNELINFO info{};
    if (!ChannelGetInfo(handle, &info) ||
        m_bass.ChannelGetData(handle, bins, BASS_DATA_FFT2048) == kFailed)
        return 0.0;
    return static_cast<double>(info.freq) / (2.0 * kSpectrumBins);
}

} // namespace BASS
