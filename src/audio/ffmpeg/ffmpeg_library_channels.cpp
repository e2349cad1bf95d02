#include "audio/ffmpeg/ffmpeg_library.h"

#include <algorithm>

namespace BASS {
namespace {

constexpr QWORD kFailed = ~QWORD{0};

} // namespace

bool FfmpegLibrary::ChannelPlay(DWORD handle, bool restart) {
    const Channel channel = find(handle);
    if (!channel)
        return false;
    if (channel->isPushed()) {
        channel->startPushed();
        return succeed();
    }
    Voice& voice = channel->voice();
    if (channel->isFile() && (restart || voice.hasEnded()))
        channel->seek(0.0);
    else if (voice.hasEnded())
        return fail(BASS_ERROR_ENDED);
    voice.setMode(Voice::Mode::Playing);
    m_output.wake(); // what a device asks for first is sound already
    return succeed();
}

bool FfmpegLibrary::ChannelPause(DWORD handle) {
    const Channel channel = find(handle);
    if (!channel)
        return false;
    const DWORD activity = channel->activity();
    if (activity != BASS_ACTIVE_PLAYING && activity != BASS_ACTIVE_STALLED)
        return fail(activity == BASS_ACTIVE_PAUSED ? BASS_ERROR_ALREADY : BASS_ERROR_NOPLAY);
    channel->voice().setMode(Voice::Mode::Paused);
    return succeed();
}

bool FfmpegLibrary::ChannelJumpToLive(DWORD handle) {
    const Channel channel = find(handle);
    if (!channel)
        return false;
    return channel->jumpToLive() ? succeed() : fail(BASS_ERROR_NOTAVAIL);
}

bool FfmpegLibrary::ChannelStop(DWORD handle) {
    const Channel channel = find(handle);
    if (!channel)
        return false;
    channel->voice().setMode(Voice::Mode::Stopped);
    if ((channel->flags() & BASS_STREAM_AUTOFREE) != 0)
        return freeChannel(handle);
    return succeed();
}

DWORD FfmpegLibrary::ChannelIsActive(DWORD handle) {
    const Channel channel = find(handle);
    return channel ? channel->activity() : BASS_ACTIVE_STOPPED;
}

bool FfmpegLibrary::ChannelGetInfo(DWORD handle, BASS_CHANNELINFO* info) {
    const Channel channel = find(handle);
    if (!channel)
        return false;
    channel->info(*info);
    return true;
}

const char* FfmpegLibrary::ChannelGetTags(DWORD handle, DWORD tags) {
    const Channel channel = find(handle);
    if (!channel)
        return nullptr;
    const char* const text = channel->tags(tags);
    if (text == nullptr)
        fail(BASS_ERROR_NOTAVAIL);
    return text;
}

bool FfmpegLibrary::ChannelSetAttribute(DWORD handle, DWORD attribute, float value) {
    const Channel channel = find(handle);
    if (!channel)
        return false;
    if (attribute != BASS_ATTRIB_VOL)
        return fail(BASS_ERROR_ILLTYPE);
    if (!(value >= 0.0F && value <= 1.0F))
        return fail(BASS_ERROR_ILLPARAM);
    channel->setVolume(value);
    if (value > 0.0F)
        m_output.unmute();
    return true;
}

bool FfmpegLibrary::ChannelGetAttribute(DWORD handle, DWORD attribute, float* value) {
    const Channel channel = find(handle);
    if (!channel)
        return false;
    BASS_CHANNELINFO info{};
    switch (attribute) {
    case BASS_ATTRIB_VOL:
        *value = channel->voice().volume().current();
        return true;
    case BASS_ATTRIB_BITRATE:
        *value = static_cast<float>(channel->bitrate());
        return true;
    case BASS_ATTRIB_AUTO_GAIN:
        *value = channel->effects().autoGainDb();
        return true;
    case BASS_ATTRIB_FREQ:
        channel->info(info);
        *value = static_cast<float>(info.freq);
        return true;
    default:
        return fail(BASS_ERROR_ILLTYPE);
    }
}

bool FfmpegLibrary::ChannelSetEffects(DWORD handle, const EffectSettings& settings) {
    if (handle == 0) {
        {
            const std::lock_guard lock(m_mutex);
            m_effects = settings;
        }
        for (const Channel& channel : channels())
            if (channel->isPushed()) // what nobody hears sounds like what is heard
                channel->effects().set(settings);
        return succeed();
    }
    const Channel channel = find(handle);
    if (!channel)
        return false;
    channel->effects().set(settings);
    return true;
}

DWORD FfmpegLibrary::ChannelFlags(DWORD handle, DWORD flags, DWORD mask) {
    const Channel channel = find(handle);
    return channel ? channel->setFlags(flags, mask & BASS_STREAM_AUTOFREE) : ~DWORD{0};
}

bool FfmpegLibrary::ChannelSlideAttribute(DWORD handle, DWORD attribute, float value, DWORD time) {
    const Channel channel = find(handle);
    if (!channel)
        return false;
    if (attribute != BASS_ATTRIB_VOL)
        return fail(BASS_ERROR_ILLTYPE);
    channel->slideVolume(std::clamp(value, 0.0F, 1.0F), time);
    if (value > 0.0F)
        m_output.unmute();
    return true;
}

bool FfmpegLibrary::ChannelIsSliding(DWORD handle, DWORD attribute) {
    const Channel channel = find(handle);
    return channel && (attribute == 0 || attribute == BASS_ATTRIB_VOL) &&
           channel->voice().volume().isSliding();
}

HSYNC
FfmpegLibrary::ChannelSetSync(DWORD handle, DWORD type, QWORD param, SYNCPROC* proc, void* user) {
    const Channel channel = find(handle);
    if (!channel)
        return 0;
    if (proc == nullptr) {
        fail(BASS_ERROR_ILLPARAM);
        return 0;
    }
    return channel->addSync(type, param, proc, user);
}

bool FfmpegLibrary::ChannelRemoveSync(DWORD handle, HSYNC sync) {
    const Channel channel = find(handle);
    if (!channel)
        return false;
    return channel->syncs().remove(sync) ? succeed() : fail(BASS_ERROR_HANDLE);
}

QWORD FfmpegLibrary::ChannelGetPosition(DWORD handle, DWORD mode) {
    const Channel channel = find(handle);
    if (!channel)
        return kFailed;
    if (mode != BASS_POS_BYTE) {
        fail(BASS_ERROR_NOTAVAIL);
        return kFailed;
    }
    return channel->bytes(channel->heardSeconds());
}

bool FfmpegLibrary::ChannelSetPosition(DWORD handle, QWORD position, DWORD mode) {
    const Channel channel = find(handle);
    if (!channel)
        return false;
    if (mode != BASS_POS_BYTE || !channel->isFile())
        return fail(BASS_ERROR_NOTAVAIL);
    const double seconds = channel->seconds(position);
    if (channel->duration() > 0.0 && seconds > channel->duration())
        return fail(BASS_ERROR_POSITION);
    m_output.wake(); // what has ended goes on
    channel->seek(seconds);
    return true;
}

QWORD FfmpegLibrary::ChannelGetLength(DWORD handle, DWORD mode) {
    const Channel channel = find(handle);
    if (!channel)
        return kFailed;
    const double duration = channel->duration();
    if (mode != BASS_POS_BYTE || duration <= 0.0) {
        fail(BASS_ERROR_NOTAVAIL);
        return kFailed;
    }
    return channel->bytes(duration);
}

double FfmpegLibrary::ChannelBytes2Seconds(DWORD handle, QWORD bytes) {
    const Channel channel = find(handle);
    return channel ? channel->seconds(bytes) : -1.0;
}

QWORD FfmpegLibrary::ChannelSeconds2Bytes(DWORD handle, double seconds) {
    const Channel channel = find(handle);
    return channel ? channel->bytes(seconds) : kFailed;
}

DWORD FfmpegLibrary::ChannelGetLevel(DWORD handle) {
    const Channel channel = find(handle);
    return channel ? channel->voice().level() : ~DWORD{0};
}

double FfmpegLibrary::ChannelGetSpectrum(DWORD handle, float* bins) {
    static_assert(kSpectrumBins == HeardSpectrum::kBins);
    const Channel channel = find(handle);
    if (!channel || !channel->voice().spectrum(bins))
        return 0.0;
    return static_cast<double>(channel->voice().rate()) / HeardSpectrum::kFrames;
}

} // namespace BASS
