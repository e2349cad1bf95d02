#include "engine/cbass.h"

#include "base/log.h"
#include "engine/engine_events.h"
#include "engine/library_errors.h"

#include <QCoreApplication>

#include <algorithm>

namespace BASS {

int g_Volume = -1;
bool g_VolMuted = false;

namespace {
constexpr DWORD kOutputRate = 44100;
/// One step of the volume slider in the library's unit.
constexpr DWORD kVolumeStep = 100;
const QLatin1String kDefaultName("default");
constexpr DWORD kConnectTimeoutMs = 5 * 1000;
constexpr DWORD kCurrentDevice = ~DWORD{0};
} // namespace

CBass::CBass(std::shared_ptr<AudioLibrary> library, QObject* parent)
    : QObject(parent), m_library(std::move(library)) {}

CBass::~CBass() = default;

// --- session ------------------------------------------------------------------------------------

bool CBass::InitLibrary() {
    if (m_isInitialised)
        return true;
    m_library->Free();
    int device = deviceIndex();
    m_library->SetConfig(BASS_CONFIG_DEV_DEFAULT, 1);
    bool isOk = m_library->Init(device, kOutputRate, 0);
    if (!isOk && m_library->ErrorGetCode() == BASS_ERROR_DEVICE) {
        device = -1;
        isOk = m_library->Init(device, kOutputRate, 0);
    }
    if (!isOk) {
        m_lastError =
            QStringLiteral("%1\n\n%2.")
                .arg(errorText(),
                     tr("Go to settings and make sure the sound device is set correctly"));
        AddLog(m_lastError, true);
        return false;
    }
    m_library->SetConfig(BASS_CONFIG_FLOATDSP, 1);
    m_library->SetConfig(BASS_CONFIG_UNICODE, 1);
    for (const char* addOn : {"basswma.dll", "bass_aac.dll", "bass_fx.dll"}) {
        if (m_library->PluginLoad(addOn) == 0)
            qCInfo(lcEngine, "add-on not loaded name=%s reason=%s", addOn, qPrintable(errorText()));
    }
    applyNetworkSettings();
    if (!SelectDevice(device))
        return false;
    m_isPlaylistProcessed = m_library->GetConfig(BASS_CONFIG_NET_PLAYLIST) != 0;
    m_isInitialised = true;
    qCInfo(lcEngine,
           "library initialised library=%s device=%u",
           m_library->Description(),
           m_library->GetDevice());
    return true;
}

void CBass::FreeLibrary() {
    m_library->Free();
    m_isInitialised = false;
}

void CBass::applyNetworkSettings() {
    m_library->SetConfig(BASS_CONFIG_NET_TIMEOUT, kConnectTimeoutMs);
    m_library->SetConfig(BASS_CONFIG_NET_READTIMEOUT,
                         static_cast<DWORD>(std::max(1, m_settings.timeoutSeconds)) * 1000U);
    m_library->SetConfig(BASS_CONFIG_NET_PREBUF, 0);
    m_library->SetConfig(BASS_CONFIG_WMA_PREBUF, 1);
    m_library->SetConfig(BASS_CONFIG_NET_PLAYLIST, 2);
    m_library->SetConfig(BASS_CONFIG_NET_BUFFER,
                         static_cast<DWORD>(std::max(500, m_settings.bufferMs)));
    if (m_settings.proxy.isEmpty())
        m_library->SetConfigPtr(BASS_CONFIG_NET_PROXY, nullptr);
    else
        SetConfigPtr(BASS_CONFIG_NET_PROXY, m_settings.proxy);
    if (!m_settings.userAgent.isEmpty()) {
        qCInfo(lcEngine, "CBass::SetConfigPtr User Agent");
        SetConfigPtr(BASS_CONFIG_NET_AGENT, m_settings.userAgent);
    }
}

int CBass::deviceIndex() {
    if (m_settings.outputDeviceName.isEmpty())
        return m_settings.outputDevice;
    return deviceIndex(m_settings.outputDeviceName);
}

int CBass::deviceIndex(const QString& name) const {
    BASS_DEVICEINFO info{};
    for (DWORD n = 1; m_library->GetDeviceInfo(n, &info); ++n) {
        if (QString::fromUtf8(info.name) == name)
            return static_cast<int>(n);
    }
    qCWarning(lcEngine, "output device not found name=%s", qPrintable(name));
    return -1;
}

bool CBass::SelectDevice(int index) {
    if (m_library->SetDevice(static_cast<DWORD>(index)))
        return true;
    if (!m_library->Init(index, kOutputRate, 0) &&
        m_library->ErrorGetCode() != BASS_ERROR_ALREADY) {
        m_lastError =
            tr("Failed to initialize sound libraries") + QStringLiteral("\n\n") + errorText();
        AddLog(m_lastError, true);
    }
    return m_library->SetDevice(kCurrentDevice);
}

bool CBass::SelectDevice(const QString& name) {
    m_settings.outputDeviceName = name;
    m_settings.outputDevice = -1;
    m_lastError.clear();
    if (!m_isInitialised)
        return true; // the next station opens it
    const int index = name.isEmpty() ? followedDeviceIndex() : deviceIndex(name);
    return SelectDevice(index) && m_lastError.isEmpty();
}

/// The entry that follows the system's choice, else what is the choice now.
int CBass::followedDeviceIndex() {
    BASS_DEVICEINFO info{};
    for (DWORD n = 1; m_library->GetDeviceInfo(n, &info); ++n) {
        if (QString::fromUtf8(info.name).compare(kDefaultName, Qt::CaseInsensitive) == 0)
            return static_cast<int>(n);
    }
    return GetDefaultSoundDeviceIndex();
}

QStringList CBass::outputDevices() const {
    QStringList names;
    BASS_DEVICEINFO info{};
    for (DWORD n = 1; m_library->GetDeviceInfo(n, &info); ++n) {
        const QString name = QString::fromUtf8(info.name);
        const bool isUsable = (info.flags & BASS_DEVICE_ENABLED) != 0;
        if (isUsable && name.compare(kDefaultName, Qt::CaseInsensitive) != 0)
            names.append(name);
    }
    return names;
}

QStringList CBass::recordingDevices() const {
    QStringList names;
    BASS_DEVICEINFO info{};
    for (DWORD n = 1; m_library->RecordGetDeviceInfo(n, &info); ++n)
        names.append(QString::fromUtf8(info.name));
    return names;
}

int CBass::GetDefaultSoundDeviceIndex() {
    int result = -1;
    BASS_DEVICEINFO info{};
    for (DWORD n = 0; m_library->GetDeviceInfo(n, &info); ++n) {
        const QString name = QString::fromUtf8(info.name);
        qCDebug(lcEngine,
                "CBass::GetDefaultSoundDeviceIndex() Device=%s Index=%u",
                qPrintable(name),
                n);
        const bool isDefault = (info.flags & BASS_DEVICE_DEFAULT) != 0;
        if (isDefault && name.compare(kDefaultName, Qt::CaseInsensitive) != 0)
            result = static_cast<int>(n);
    }
    return result;
}

QString CBass::errorText(int code) const {
    return libraryErrorText(code == 0 ? m_library->ErrorGetCode() : code);
}

bool CBass::SetConfigPtr(DWORD option, const QString& text) {
    return m_library->SetConfigPtr(option | BASS_UNICODE, text.utf16());
}

// --- sound ---------------------------------------------------------------------------------------

void CBass::setSoundOptions(const SoundOptions& options) {
    m_soundOptions = options;
    const float start = m_effects.autoVolumeStartDb;
    m_effects = effectsFor(options);
    m_effects.autoVolumeStartDb = start;
    SetDynamicBoostFromParams(options);
}

void CBass::SetDynamicBoostFromParams(const SoundOptions& options) {
    switch (options.boost) {
    case DynamicBoost::Low:
        SetDynamicAmpLow();
        return;
    case DynamicBoost::Medium:
        SetDynamicAmpMedium();
        return;
    case DynamicBoost::High:
        SetDynamicAmpHigh();
        return;
    case DynamicBoost::Custom:
        m_effects.compressor = options.customBoost;
        m_effects.compressor.isOn = true;
        break;
    case DynamicBoost::Off:
        m_effects.compressor =
            options.isCompressorOn ? gentleCompressor() : EffectSettings::Compressor{};
        break;
    }
    applyEffects();
}

void CBass::SetDynamicAmpLow() {
    qCDebug(lcEngine, "CBass::SetDynamicAmpLow()");
    m_effects.compressor = compressorFor(DynamicBoost::Low);
    applyEffects();
}

void CBass::SetDynamicAmpMedium() {
    qCDebug(lcEngine, "CBass::SetDynamicAmpMedium()");
    m_effects.compressor = compressorFor(DynamicBoost::Medium);
    applyEffects();
}

void CBass::SetDynamicAmpHigh() {
    qCDebug(lcEngine, "CBass::SetDynamicAmpHigh()");
    m_effects.compressor = compressorFor(DynamicBoost::High);
    applyEffects();
}

bool CBass::isDynamicBoostOn() const {
    return m_soundOptions.boost != DynamicBoost::Off;
}

void CBass::setAutoVolumeStart(float decibel) {
    m_effects.autoVolumeStartDb = decibel;
    m_library->ChannelSetEffects(0, m_effects);
}

void CBass::applyEffects() {
    m_library->ChannelSetEffects(0, m_effects);
    const DWORD handle = GetHandle();
    if (handle != 0)
        m_library->ChannelSetEffects(handle, m_effects);
}

/// The channel may have been made before the last change.
void CBass::prePlay() {
    applyEffects();
}

DWORD CBass::ChannelGetLevel() const {
    constexpr DWORD kFailed = ~DWORD{0};
    const DWORD handle = GetHandle();
    const DWORD level = handle == 0 ? 0 : m_library->ChannelGetLevel(handle);
    return level == kFailed ? 0 : level;
}

double CBass::ChannelGetSpectrum(float* bins) const {
    const DWORD handle = GetHandle();
    return handle == 0 ? 0.0 : m_library->ChannelGetSpectrum(handle, bins);
}

// --- volume -------------------------------------------------------------------------------------

void CBass::SetVolume(int volume) {
    qCDebug(lcEngine, "CBass::SetVolume Volume=%d", volume);
    const auto wanted = static_cast<DWORD>(std::clamp(volume, 0, 100)) * kVolumeStep;
    m_library->SetConfig(BASS_CONFIG_GVOL_STREAM, wanted);
    if (wanted != 0)
        g_VolMuted = false;
    // a library that stores volumes coarsely may answer with a value just below
    DWORD stored = m_library->GetConfig(BASS_CONFIG_GVOL_STREAM);
    if (stored % kVolumeStep != 0) {
        stored = (stored / kVolumeStep + 1) * kVolumeStep;
        m_library->SetConfig(BASS_CONFIG_GVOL_STREAM, stored);
    }
    g_Volume = static_cast<int>(stored / kVolumeStep);
    qCDebug(lcEngine, "CBass::SetVolume g_VolMuted=%d", g_VolMuted);
}

void CBass::SetVolumeMute(bool isMuted) {
    qCDebug(lcEngine, "CBass::SetVolumeMute Mute=%d", isMuted);
    if (isMuted) {
        if (!g_VolMuted)
            g_Volume =
                static_cast<int>(m_library->GetConfig(BASS_CONFIG_GVOL_STREAM) / kVolumeStep);
        qCDebug(lcEngine, "CBass::SetVolumeMute g_Volume=%d", g_Volume);
        m_library->SetConfig(BASS_CONFIG_GVOL_STREAM, 0);
        g_VolMuted = true;
        return;
    }
    qCDebug(lcEngine, "CBass::SetVolumeMute g_Volume=%d", g_Volume);
    if (g_Volume >= 0)
        SetVolume(g_Volume);
    g_VolMuted = false;
}

void CBass::SetChannelVolumeFloat(float volume) {
    qCDebug(
        lcEngine, "CBass::SetChannelVolumeFloat before=%f", static_cast<double>(m_channelVolume));
    m_channelVolume = std::clamp(volume, 0.0F, 1.0F);
    qCDebug(
        lcEngine, "CBass::SetChannelVolumeFloat after=%f", static_cast<double>(m_channelVolume));
}

// --- channel ------------------------------------------------------------------------------------

void CBass::Clear() {
    qCDebug(lcEngine, "CBass::Clear()");
    m_handle = 0;
    m_channelVolume = 0.0F;
    m_isChannelMuted = false;
    m_isPlaying = false;
    const std::lock_guard lock(m_tagMutex);
    m_song = {};
    m_previousSong = {};
}

void CBass::ClearConnect() {
    qCDebug(lcEngine, "CBass::ClearConnect()");
    m_isConnectCanceled = false;
}

void CBass::CancelConnect() {
    qCDebug(lcEngine, "CBass::CancelConnect()");
    m_isConnectCanceled = true;
}

bool CBass::ChannelSetAttribute(DWORD attribute, float value) {
    const DWORD handle = GetHandle();
    return handle != 0 && m_library->ChannelSetAttribute(handle, attribute, value);
}

bool CBass::ChannelGetAttribute(DWORD attribute, float* value) {
    const DWORD handle = GetHandle();
    return handle != 0 && m_library->ChannelGetAttribute(handle, attribute, value);
}

bool CBass::ChannelPlay(int fadeInMs) {
    const DWORD handle = GetHandle();
    if (handle == 0)
        return false;
    const int fade = fadeInMs < 0 ? static_cast<int>(m_settings.fadeIn.count()) : fadeInMs;
    qCDebug(
        lcEngine, "CBass::ChannelPlay fade_in=%d isMuteOnPlay=%d", fade, m_settings.isMuteOnPlay);
    float volume = 1.0F;
    ChannelGetAttribute(BASS_ATTRIB_VOL, &volume);
    if (m_channelVolume == 0.0F)
        m_channelVolume = volume;
    if (fade != 0 || m_settings.isMuteOnPlay)
        ChannelSetAttribute(BASS_ATTRIB_VOL, 0.0F);
    prePlay();
    const bool isOk = m_library->ChannelPlay(handle, false);
    if (isOk && fade != 0 && !m_settings.isMuteOnPlay && !m_isChannelMuted) {
        qCDebug(
            lcEngine, "CBass::ChannelPlay fade_in=%d ChannelIsMuted()=%d", fade, m_isChannelMuted);
        ChannelSlideAttribute(BASS_ATTRIB_VOL, m_channelVolume, fade);
    }
    m_isPlaying = isOk;
    return isOk;
}

bool CBass::ChannelMute(bool isMuted, int timeMs) {
    qCDebug(lcEngine, "CBass::ChannelMute()");
    if (GetHandle() == 0)
        return false;
    if (isMuted && !m_isChannelMuted && m_channelVolume == 0.0F)
        ChannelGetAttribute(BASS_ATTRIB_VOL, &m_channelVolume);
    const bool isOk =
        ChannelSlideAttribute(BASS_ATTRIB_VOL, isMuted ? 0.0F : m_channelVolume, timeMs);
    m_isChannelMuted = isMuted;
    qCDebug(lcEngine, "CBass::setMuteFlag %d", isMuted);
    return isOk;
}

bool CBass::ChannelSlideAttribute(DWORD attribute, float value, int timeMs) {
    const DWORD handle = GetHandle();
    if (handle == 0)
        return false;
    if (attribute == BASS_ATTRIB_VOL)
        qCDebug(lcEngine,
                "CBass::ChannelSlideAttribute BASS_ATTRIB_VOL %f time=(%d",
                static_cast<double>(value),
                timeMs);
    if (timeMs == 0)
        return m_library->ChannelSetAttribute(handle, attribute, value);
    return m_library->ChannelSlideAttribute(handle, attribute, value, static_cast<DWORD>(timeMs));
}

HSYNC CBass::SetSync(DWORD type, QWORD param, SYNCPROC* proc, void* user) {
    const DWORD handle = GetHandle();
    return handle == 0 ? 0 : m_library->ChannelSetSync(handle, type, param, proc, user);
}

void CBass::AddLog(const QString& text, bool isError, bool isEnabled) {
    if (!isEnabled)
        return;
    qCInfo(lcEngine, "CBass::AddLog %s", qPrintable(text));
    Notify(isError ? kNotifyErrorLog : kNotifyLog, text);
}

// --- syncs --------------------------------------------------------------------------------------

template <DWORD Type>
void CBass::syncCallback(HSYNC /*sync*/, DWORD channel, DWORD data, void* user) {
    if (user != nullptr)
        static_cast<CBass*>(user)->onSync(Type, channel, data);
}

void CBass::metaCallback(HSYNC /*sync*/, DWORD channel, DWORD /*data*/, void* user) {
    if (user != nullptr)
        static_cast<CBass*>(user)->onMetaChanged(channel);
}

void CBass::registerSyncs() {
    for (DWORD type :
         {BASS_SYNC_META, BASS_SYNC_OGG_CHANGE, BASS_SYNC_WMA_CHANGE, BASS_SYNC_WMA_META})
        SetSync(type, 0, &CBass::metaCallback, this);
    SetSync(BASS_SYNC_HLS_SEGMENT, 0, &CBass::syncCallback<BASS_SYNC_HLS_SEGMENT>, this);
    SetSync(BASS_SYNC_STALL, 0, &CBass::syncCallback<BASS_SYNC_STALL>, this);
    SetSync(BASS_SYNC_DOWNLOAD, 0, &CBass::syncCallback<BASS_SYNC_DOWNLOAD>, this);
    SetSync(BASS_SYNC_END, 0, &CBass::syncCallback<BASS_SYNC_END>, this);
}

void CBass::onMetaChanged(DWORD channel) {
    const std::lock_guard lock(m_tagMutex);
    Notify(kNotifyMetaChanged, QVariant());
    readTags(channel);
    if (!isTrackChange(m_previousSong, m_song))
        return;
    m_previousSong = m_song;
    startNewTrack(m_song);
}

void CBass::onSync(DWORD type, DWORD channel, DWORD data) {
    const QVariant notice = QVariant::fromValue(ChannelNotice{channel, data});
    switch (type) {
    case BASS_SYNC_STALL:
        Notify(kNotifyStall, notice);
        break;
    case BASS_SYNC_END:
        Notify(kNotifyEnd, notice);
        break;
    case BASS_SYNC_DOWNLOAD:
        Notify(kNotifyDownloadEnded, notice);
        break;
    case BASS_SYNC_HLS_SEGMENT:
        Notify(kNotifyHlsSegment, notice);
        break;
    default:
        break;
    }
}

} // namespace BASS
