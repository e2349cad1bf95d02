#pragma once

#include "audio/audio_library.h"
#include "audio/encoder_options.h"
#include "audio/ffmpeg/encoder.h"
#include "audio/ffmpeg/mixer.h"
#include "audio/ffmpeg/net_engine.h"
#include "audio/ffmpeg/output_control.h"
#include "audio/ffmpeg/stream_channel.h"
#include "audio/ffmpeg/wma_file.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace BASS {

/// The embedded audio library: curl for the network, FFmpeg for decoding, SDL for the devices.
/// Contract, threads and life as AudioLibrary says.
///
/// Where SDL_AUDIODRIVER is "dummy", device 0 is asked for or no device opens, sound is paced by
/// the clock and goes nowhere (see NullOutput, which also names WAVELARK_NULL_SPEED).
class FfmpegLibrary final : public AudioLibrary {
  public:
    FfmpegLibrary();
    ~FfmpegLibrary() override;

    [[nodiscard]] const char* Description() const override { return m_description.c_str(); }

    bool Init(int device, DWORD freq, DWORD flags) override;
    bool Free() override;
    [[nodiscard]] int ErrorGetCode() const override;
    bool SetDevice(DWORD device) override;
    [[nodiscard]] DWORD GetDevice() const override;
    bool GetDeviceInfo(DWORD device, BASS_DEVICEINFO* info) override;
    bool SetConfig(DWORD option, DWORD value) override;
    [[nodiscard]] DWORD GetConfig(DWORD option) const override;
    bool SetConfigPtr(DWORD option, const void* value) override;
    HPLUGIN PluginLoad(const char* file) override;

    HSTREAM StreamCreateURL(
        const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) override;
    HSTREAM MP4_StreamCreateURL(
        const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) override;
    HSTREAM FLAC_StreamCreateURL(
        const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) override;
    HSTREAM HLS_StreamCreateURL(
        const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) override;
    HSTREAM OPUS_StreamCreateURL(
        const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) override;
    HSTREAM WMA_StreamCreateURL(
        const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) override;
    bool StreamCancel(void* user) override;
    void SetTitleProc(TITLEPROC* proc) override { m_titleProc.store(proc); }

    HSTREAM StreamCreateFile(const void* file, DWORD flags) override;
    HSTREAM AAC_StreamCreateFile(const void* file, DWORD flags) override;
    HSTREAM WMA_StreamCreateFile(const void* file, DWORD flags) override;
    HSTREAM OPUS_StreamCreateFile(const void* file, DWORD flags) override;
    HSTREAM FLAC_StreamCreateFile(const void* file, DWORD flags) override;
    HSTREAM MP4_StreamCreateFile(const void* file, DWORD flags) override;
    HSTREAM HLS_StreamCreateFile(const void* file, DWORD flags) override;

    HSTREAM StreamCreateRecordingDevice(int device, DWORD flags) override;
    bool RecordGetDeviceInfo(DWORD device, BASS_DEVICEINFO* info) override;

    HSTREAM StreamCreatePush(const void* data, QWORD length, QWORD begin) override;
    bool StreamPutData(HSTREAM handle, const void* data, QWORD length) override;
    bool StreamPutGap(HSTREAM handle) override;
    bool StreamPutEnd(HSTREAM handle) override;
    bool StreamFree(HSTREAM handle) override;
    QWORD StreamGetFilePosition(HSTREAM handle, DWORD mode) override;

    bool ChannelPlay(DWORD handle, bool restart) override;
    bool ChannelPause(DWORD handle) override;
    bool ChannelJumpToLive(DWORD handle) override;
    bool ChannelStop(DWORD handle) override;
    DWORD ChannelIsActive(DWORD handle) override;
    bool ChannelGetInfo(DWORD handle, BASS_CHANNELINFO* info) override;
    const char* ChannelGetTags(DWORD handle, DWORD tags) override;
    bool ChannelSetAttribute(DWORD handle, DWORD attribute, float value) override;
    bool ChannelGetAttribute(DWORD handle, DWORD attribute, float* value) override;
    bool ChannelSetEffects(DWORD handle, const EffectSettings& settings) override;
    DWORD ChannelFlags(DWORD handle, DWORD flags, DWORD mask) override;
    bool ChannelSlideAttribute(DWORD handle, DWORD attribute, float value, DWORD time) override;
    bool ChannelIsSliding(DWORD handle, DWORD attribute) override;
    HSYNC
    ChannelSetSync(DWORD handle, DWORD type, QWORD param, SYNCPROC* proc, void* user) override;
    bool ChannelRemoveSync(DWORD handle, HSYNC sync) override;
    QWORD ChannelGetPosition(DWORD handle, DWORD mode) override;
    bool ChannelSetPosition(DWORD handle, QWORD position, DWORD mode) override;
    QWORD ChannelGetLength(DWORD handle, DWORD mode) override;
    double ChannelBytes2Seconds(DWORD handle, QWORD bytes) override;
    QWORD ChannelSeconds2Bytes(DWORD handle, double seconds) override;
    DWORD ChannelGetLevel(DWORD handle) override;
    double ChannelGetSpectrum(DWORD handle, float* bins) override;

    HENCODE Encode_MP3_Start(
        DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) override;
    HENCODE Encode_OGG_Start(
        DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) override;
    HENCODE Encode_FLAC_Start(
        DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) override;
    HENCODE Encode_AAC_Start(
        DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) override;
    HENCODE Encode_WMA_Start(
        DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) override;
    HENCODE Encode_Start(
        DWORD handle, const void* commandLine, DWORD flags, ENCODEPROC* proc, void* user) override;
    HENCODE Encode_StartAs(DWORD handle,
                           const void* commandLine,
                           const ProgramInput& input,
                           DWORD flags,
                           ENCODEPROC* proc,
                           void* user) override;
    DWORD Encode_IsActive(DWORD handle) override;
    bool Encode_SetPaused(HENCODE handle, bool isPaused) override;
    bool Encode_StopEx(DWORD handle, bool queue) override;
    bool Encode_SetChannel(HENCODE handle, DWORD channel) override;
    HENCODE
    Encode_CutAt(HENCODE old, QWORD position, DWORD delayMs, ENCODEPROC* proc, void* user) override;
    double Encode_GetSeconds(HENCODE handle) override;
    double Encode_GetSecondsAt(HENCODE handle, QWORD position) override;
    void SetEncodeRewriteProc(ENCODEREWRITEPROC* proc) override { m_rewriteProc.store(proc); }
    const DWORD* WMA_EncodeGetRates(DWORD freq, DWORD chans, DWORD flags) override;
    HWMENCODE WMA_EncodeOpenFile(
        DWORD freq, DWORD chans, DWORD flags, DWORD bitrate, const void* file) override;
    bool WMA_EncodeWrite(HWMENCODE handle, const void* buffer, DWORD length) override;
    bool WMA_EncodeClose(HWMENCODE handle) override;

  private:
    using Channel = std::shared_ptr<StreamChannel>;
    using Accepts = bool(StreamFormat);
    struct UrlArguments {
        const void* url;
        DWORD offset;
        DWORD flags;
        DOWNLOADPROC* proc;
        void* user;
        bool isFile = false; ///< the user's own
    };

    struct EncoderArguments {
        DWORD handle;
        const void* options;
        DWORD flags;
        ENCODEPROC* proc;
        void* user;
        bool isProven = false; ///< its settings have opened before
    };
    using MakeEncoder = std::function<std::unique_ptr<PcmEncoder>(PcmEncoder::Write)>;
    HENCODE startCodec(EncoderKind kind, const EncoderArguments& arguments);
    HENCODE startEncoder(const EncoderArguments& arguments, MakeEncoder make);
    std::shared_ptr<Encoder> makeEncoder(const EncoderArguments& arguments, MakeEncoder make);
    std::shared_ptr<Encoder> findEncoder(HENCODE handle) const;
    /// The encoder itself, or those of a channel.
    std::vector<std::shared_ptr<Encoder>> encodersOf(DWORD handle) const;
    void endEncoders(StreamChannel& channel);
    void sweepEncoders();

    std::shared_ptr<StreamSource>
    makeSource(HttpRequest request, std::shared_ptr<StreamTap> tap, Accepts* accepts);
    HSTREAM createUrl(const UrlArguments& arguments, Accepts* accepts);
    HSTREAM createFile(const void* file, DWORD flags, Accepts* accepts);
    HSTREAM finishCreate(const Channel& channel,
                         std::chrono::seconds limit = StreamChannel::kLongestCreate);
    Channel newChannel(DWORD flags);
    HttpRequest requestFor(const UrlArguments& arguments) const;
    std::size_t bufferBytes() const;
    Channel find(DWORD handle) const;
    /// Null as well where its bytes do not come from the caller.
    Channel findPushed(HSTREAM handle) const;
    bool freeChannel(DWORD handle);
    std::vector<Channel> channels() const;
    void runDispatcher();
    static bool fail(int error);
    static bool succeed();

    std::string m_description;
    Mixer m_mixer;
    Semaphore m_signal; ///< something for the dispatcher
    OutputControl m_output;
    std::atomic<TITLEPROC*> m_titleProc{nullptr};
    std::atomic<ENCODEREWRITEPROC*> m_rewriteProc{nullptr};
    std::atomic<int> m_rate{44100};
    std::mutex m_encodeMutex; ///< one start, cut or end of encoders at a time

    mutable std::mutex m_mutex; ///< guards the tables, texts and options below
    std::map<DWORD, Channel> m_channels;
    std::multimap<void*, Channel> m_creating;
    std::map<HENCODE, std::shared_ptr<Encoder>> m_encoders;
    std::map<HWMENCODE, std::shared_ptr<WmaFile>> m_wmaFiles;
    DWORD m_nextHandle = 0x80000001;
    std::map<DWORD, DWORD> m_options;
    std::string m_userAgent;
    std::string m_proxy;
    std::string m_deviceName;
    std::string m_deviceDriver;
    std::string m_recordDeviceName;
    std::string m_recordDeviceDriver;
    EffectSettings m_effects; ///< of channels to come

    std::unique_ptr<NetEngine> m_net;
    std::atomic<bool> m_isStopping{false};
    std::thread m_dispatcher;
};

} // namespace BASS
