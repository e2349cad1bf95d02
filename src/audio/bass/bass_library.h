#pragma once

#include "audio/audio_library.h"
#include "audio/bass/bass_encoders.h"
#include "audio/bass/bass_files.h"
#include "audio/bass/bass_stream.h"
#include "audio/bass/token_table.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace BASS {

/// The closed audio library, where a user has put it beside the program. Contract, threads and life
/// as AudioLibrary says, with what that library does in another way:
///  - It tells of a title when that is decoded, not when it arrives: TITLEPROC comes on a thread of
///    the library after the bytes behind the title; its position is where the decoder stands.
///  - StreamCancel() depends on a recent version of it; else the create call returns when the time
///    limit for connecting is over, and what it has made is freed.
///  - Encode_AAC_Start() and Encode_WMA_Start() are not its own: BASS_ERROR_NOTAVAIL.
///  - Encode_CutAt() cuts `delayMs` behind what is decoded at the moment of the call, whatever the
///    position: called from a TITLEPROC, that is the title's place.
/// Functions and add-ons that are not there fail with BASS_ERROR_NOTAVAIL and are logged by name.
class BassLibrary final : public AudioLibrary {
  public:
    explicit BassLibrary(std::unique_ptr<BassFiles> files);
    ~BassLibrary() override;

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

    /// Not with this provider: BASS_ERROR_NOTAVAIL.
    HSTREAM StreamCreateRecordingDevice(int device, DWORD flags) override;
    bool RecordGetDeviceInfo(DWORD device, BASS_DEVICEINFO* info) override;
    bool StreamFree(HSTREAM handle) override;
    QWORD StreamGetFilePosition(HSTREAM handle, DWORD mode) override;

    bool ChannelPlay(DWORD handle, bool restart) override;
    bool ChannelPause(DWORD handle) override;
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
    HENCODE Encode_StartAs(DWORD handle,
                           const void* commandLine,
                           const ProgramInput& input,
                           DWORD flags,
                           ENCODEPROC* proc,
                           void* user) override;
    HENCODE Encode_Start(
        DWORD handle, const void* commandLine, DWORD flags, ENCODEPROC* proc, void* user) override;
    DWORD Encode_IsActive(DWORD handle) override;
    bool Encode_SetPaused(HENCODE handle, bool isPaused) override;
    bool Encode_StopEx(DWORD handle, bool queue) override;
    bool Encode_SetChannel(HENCODE handle, DWORD channel) override;
    HENCODE
    Encode_CutAt(HENCODE old, QWORD position, DWORD delayMs, ENCODEPROC* proc, void* user) override;
    void SetEncodeRewriteProc(ENCODEREWRITEPROC* proc) override { m_encoders.setRewriteProc(proc); }
    const DWORD* WMA_EncodeGetRates(DWORD freq, DWORD chans, DWORD flags) override;
    HWMENCODE WMA_EncodeOpenFile(
        DWORD freq, DWORD chans, DWORD flags, DWORD bitrate, const void* file) override;
    bool WMA_EncodeWrite(HWMENCODE handle, const void* buffer, DWORD length) override;
    bool WMA_EncodeClose(HWMENCODE handle) override;

  private:
    using Stream = std::shared_ptr<BassStream>;
    struct UrlArguments {
        const void* url;
        DWORD offset;
        DWORD flags;
        DOWNLOADPROC* proc;
        void* user;
    };
    struct EncoderArguments {
        DWORD handle;
        const void* text;
        DWORD flags;
        ENCODEPROC* proc;
        void* user;
    };
    HENCODE startEncoder(BassEncoders::Kind kind, const EncoderArguments& arguments);
    using CreateUrl = BassFunction<BassFunctions::Url>;
    using CreateFile = BassFunction<BassFunctions::File>;
    HSTREAM createUrl(const CreateUrl& create, const UrlArguments& arguments);
    HSTREAM createFile(const CreateFile& create, const void* file, DWORD flags);
    /// Before and after the library's create call: the record by which callbacks find their way.
    void* beginStream(DOWNLOADPROC* proc, void* user);
    HSTREAM endStream(void* token, HSTREAM handle);
    void watchTitles(const Stream& stream, void* token);
    void closeStream(HSTREAM handle);
    bool setEffects(BassStream& stream, void* token, const EffectSettings& settings);
    /// By its handle; null: not one of this provider's.
    [[nodiscard]] std::pair<void*, Stream> streamOf(HSTREAM handle) const;
    static bool fail(int error);

    std::unique_ptr<BassFiles> m_files;
    const BassFunctions& m_bass;
    std::string m_description;
    std::atomic<TITLEPROC*> m_titleProc{nullptr};

    std::mutex m_effectsMutex; ///< guards m_effects and the making of a stream's own
    EffectSettings m_effects;  ///< of streams to come
    std::mutex m_textMutex;
    std::map<DWORD, std::u16string> m_texts; ///< options whose text the library may only point to
    BassEncoders m_encoders;
};

} // namespace BASS
