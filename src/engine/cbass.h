#pragma once

#include "audio/audio_library.h"
#include "engine/engine_types.h"
#include "engine/sound_options.h"
#include "stations/song.h"

#include <QObject>
#include <QStringList>
#include <QVariant>

#include <atomic>
#include <memory>
#include <mutex>

namespace BASS {

/// The process's one stream volume: 0 to 100, the last one before muting; negative: not known.
extern int g_Volume;
extern bool g_VolMuted;

/// The audio engine's ground: the library session, the output device, volume, mute and fades of the
/// playing channel, and the way of its notifications.
///
/// *Thread*: GUI. Sync handlers (on...) run on a thread of the library and touch what m_tagMutex
/// guards, nothing else. *Owner*: the layers above derive from it; there is one engine.
/// *Life*: InitLibrary() before any channel; it may be called again after FreeLibrary().
class CBass : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CBass)

  public:
    explicit CBass(std::shared_ptr<AudioLibrary> library, QObject* parent = nullptr);
    ~CBass() override;

    // --- session ------------------------------------------------------------------------------
    void setSettings(const EngineSettings& settings) { m_settings = settings; }
    [[nodiscard]] const EngineSettings& settings() const { return m_settings; }
    /// Does nothing when already initialised. On failure lastError() holds a text for the user.
    bool InitLibrary();
    void FreeLibrary();
    [[nodiscard]] bool isInitialised() const { return m_isInitialised; }
    [[nodiscard]] const QString& lastError() const { return m_lastError; }
    /// Index of the last device that is marked as the system's default under a name other than
    /// "default"; -1: none.
    int GetDefaultSoundDeviceIndex();
    /// Moves what plays to another output device. On failure lastError() holds a text for the user.
    bool SelectDevice(int index);
    /// As above, by its name; empty: the system's default.
    bool SelectDevice(const QString& name);
    /// Names of the output devices, without "no sound" and the default.
    [[nodiscard]] QStringList outputDevices() const;
    /// Names of the recording devices, without the system's default.
    [[nodiscard]] QStringList recordingDevices() const;
    /// Text for a library error; code 0 asks the library for its last one.
    [[nodiscard]] QString errorText(int code = 0) const;
    /// A text option of the library.
    bool SetConfigPtr(DWORD option, const QString& text);

    // --- sound --------------------------------------------------------------------------------
    /// In force at once for what plays, and for every channel to come from its first sample.
    void setSoundOptions(const SoundOptions& options);
    [[nodiscard]] const SoundOptions& soundOptions() const { return m_soundOptions; }
    /// Chooses the dynamic boost that the options ask for.
    virtual void SetDynamicBoostFromParams(const SoundOptions& options);
    virtual void SetDynamicAmpLow();
    virtual void SetDynamicAmpMedium();
    virtual void SetDynamicAmpHigh();
    [[nodiscard]] bool isDynamicBoostOn() const;
    /// Peaks of what is heard, before the volume: left in the low, right in the high 16 bits, 0 to
    /// 32768; 0 without a channel.
    [[nodiscard]] DWORD ChannelGetLevel() const;
    /// As AudioLibrary::ChannelGetSpectrum(); 0 without a channel.
    double ChannelGetSpectrum(float* bins) const;

    // --- volume -------------------------------------------------------------------------------
    /// 0 to 100, for all streams.
    void SetVolume(int volume);
    void SetVolumeMute(bool isMuted);
    /// The stream's own volume, clamped to 0.0 to 1.0; used by the next play or unmute.
    void SetChannelVolumeFloat(float volume);
    [[nodiscard]] float channelVolumeFloat() const { return m_channelVolume; }

    // --- channel ------------------------------------------------------------------------------
    /// 0: none. Operations on no channel do nothing and return 0 or false.
    [[nodiscard]] virtual DWORD GetHandle() const { return m_handle; }
    /// Back to the state of nothing connected.
    virtual void Clear();
    virtual void ClearConnect();
    virtual void CancelConnect();
    virtual bool ChannelSetAttribute(DWORD attribute, float value);
    virtual bool ChannelGetAttribute(DWORD attribute, float* value);
    /// Milliseconds of fade-in; negative: the default fade time.
    virtual bool ChannelPlay(int fadeInMs);
    /// Slides the channel's volume to nothing or back over `timeMs`.
    virtual bool ChannelMute(bool isMuted, int timeMs);
    /// timeMs 0 sets the attribute at once.
    virtual bool ChannelSlideAttribute(DWORD attribute, float value, int timeMs);
    virtual HSYNC SetSync(DWORD type, QWORD param, SYNCPROC* proc, void* user);
    [[nodiscard]] bool ChannelIsMuted() const { return m_isChannelMuted; }
    virtual void AddLog(const QString& text, bool isError, bool isEnabled = true);

  protected:
    /// Hands a notification to the owner; may be called on any thread.
    virtual void Notify(int code, const QVariant& payload) = 0;
    /// Effects are attached here, before the channel plays.
    virtual void prePlay();
    /// Decibels with which the automatic volume of the next channel begins.
    void setAutoVolumeStart(float decibel);

    void setHandle(DWORD handle) { m_handle = handle; }
    /// Registers the handlers below on the channel.
    void registerSyncs();

    // --- sync handlers: a thread of the library -------------------------------------------------
    virtual void onMetaChanged(DWORD channel);
    virtual void onSync(DWORD type, DWORD channel, DWORD data);
    /// Reads the channel's tags again into m_song; m_tagMutex is held.
    virtual void readTags(DWORD channel) = 0;
    /// The song that is heard has changed to another one; m_tagMutex is held.
    virtual void startNewTrack(const Song& /*song*/) {}
    virtual bool isTrackChange(const Song& previous, const Song& song) = 0;

    AudioLibrary& library() const { return *m_library; }

    mutable std::mutex m_tagMutex; ///< guards m_song and m_previousSong
    Song m_song;                   ///< heard now
    Song m_previousSong;
    std::atomic<bool> m_isConnectCanceled{false};
    std::atomic<bool> m_isPlaying{false};

  private:
    void applyNetworkSettings();
    int deviceIndex();
    int deviceIndex(const QString& name) const;
    int followedDeviceIndex();
    void applyEffects();
    template <DWORD Type>
    static void syncCallback(HSYNC sync, DWORD channel, DWORD data, void* user);
    static void metaCallback(HSYNC sync, DWORD channel, DWORD data, void* user);

    std::shared_ptr<AudioLibrary> m_library;
    EngineSettings m_settings;
    SoundOptions m_soundOptions;
    EffectSettings m_effects;
    std::atomic<DWORD> m_handle{0};
    float m_channelVolume = 0.0F; ///< 0.0: not taken yet
    bool m_isChannelMuted = false;
    bool m_isInitialised = false;
    bool m_isPlaylistProcessed = false;
    QString m_lastError;
};

} // namespace BASS
