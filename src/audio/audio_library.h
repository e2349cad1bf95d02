#pragma once

#include "audio/audio_encoding.h"
#include "audio/effect_settings.h"

namespace BASS {

/// Called on the library's network thread for every stream created from an address, in the order in
/// which the server sent things:
///  - length 0 and buffer not null: the answer's header lines (each zero-terminated, ended by an
///  empty
///    one), once per connection, before its first byte (only with BASS_STREAM_STATUS);
///  - length above 0: audio bytes as they came, title blocks taken out;
///  - buffer null: the connection has ended.
/// It must return quickly, never blocks, and never frees its own stream.
using DOWNLOADPROC = void(const void* buffer, DWORD length, void* user);

/// Called on a thread of the library. `data` depends on the sync's type.
using SYNCPROC = void(HSYNC handle, DWORD channel, DWORD data, void* user);

/// A title as the network thread met it, before it is heard.
struct StreamTitle {
    QWORD position;   ///< audio bytes of this connection that came before it
    DWORD tagType;    ///< BASS_TAG_META (an ICY block), BASS_TAG_OGG (comments of a new link, timed
                      ///< metadata) or BASS_TAG_HLS_EXTINF (a segment begins)
    const char* data; ///< in the tag type's layout; valid during the call only
    DWORD length;     ///< bytes, the terminating zeros not counted
};

/// Same thread and same user pointer as the stream's DOWNLOADPROC, in order with its calls: the
/// bytes before the title have been handed over, the bytes after it have not.
using TITLEPROC = void(const StreamTitle& title, void* user);

/// The audio library as the engine sees it: one virtual function per library call, with the
/// library's names, handles, flags and error codes. Handles are plain numbers, 0 is none; a failed
/// call returns 0 or false and leaves its reason in ErrorGetCode().
///
/// Thread: every function may be called from any thread; ErrorGetCode() is per thread.
/// StreamCreate...URL block the caller until the first audio is decodable or the attempt failed;
/// StreamCancel() ends them early. All other functions return without waiting for network or
/// device. Owner: whoever made it destroys it; that closes every stream and ends every thread.
/// Life: Init() first. After StreamFree() has returned, no callback of that stream runs or starts.
class AudioLibrary : public AudioEncoding {
  public:
    AudioLibrary() = default;
    ~AudioLibrary() override = default;
    AudioLibrary(const AudioLibrary&) = delete;
    AudioLibrary& operator=(const AudioLibrary&) = delete;

    /// A name for the log, "embedded FFmpeg 5.1.9" for example.
    [[nodiscard]] virtual const char* Description() const = 0;

    // --- session and devices ------------------------------------------------------------------
    /// device: -1 the system's default, 0 no sound (silent, driven by the clock), 1.. the list.
    virtual bool Init(int device, DWORD freq, DWORD flags) = 0;
    virtual bool Free() = 0;
    [[nodiscard]] virtual int ErrorGetCode() const = 0;
    virtual bool SetDevice(DWORD device) = 0;
    [[nodiscard]] virtual DWORD GetDevice() const = 0;
    /// Number 0 is "No sound"; false with BASS_ERROR_DEVICE past the end.
    virtual bool GetDeviceInfo(DWORD device, BASS_DEVICEINFO* info) = 0;
    virtual bool SetConfig(DWORD option, DWORD value) = 0;
    [[nodiscard]] virtual DWORD GetConfig(DWORD option) const = 0;
    /// With BASS_UNICODE in the option the text is UTF-16, else Latin-1; the library keeps a copy.
    virtual bool SetConfigPtr(DWORD option, const void* value) = 0;
    /// Add-ons; a provider that has the format built in answers with a non-zero handle.
    virtual HPLUGIN PluginLoad(const char* file) = 0;

    // --- streams ------------------------------------------------------------------------------
    /// url: UTF-16 (char16_t) with BASS_UNICODE, else Latin-1.
    virtual HSTREAM
    StreamCreateURL(const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) = 0;
    virtual HSTREAM MP4_StreamCreateURL(
        const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) = 0;
    virtual HSTREAM FLAC_StreamCreateURL(
        const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) = 0;
    virtual HSTREAM HLS_StreamCreateURL(
        const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) = 0;
    virtual HSTREAM OPUS_StreamCreateURL(
        const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) = 0;
    virtual HSTREAM WMA_StreamCreateURL(
        const void* url, DWORD offset, DWORD flags, DOWNLOADPROC* proc, void* user) = 0;
    /// Ends a StreamCreate...URL that waits in another thread with this user pointer: it returns 0
    /// within 200 ms.
    virtual bool StreamCancel(void* user) = 0;
    /// Titles of every stream as they arrive; null: none. Set before the streams are created.
    virtual void SetTitleProc(TITLEPROC* proc) = 0;

    /// file: path, UTF-16 with BASS_UNICODE, else in the system's 8-bit encoding.
    virtual HSTREAM StreamCreateFile(const void* file, DWORD flags) = 0;
    virtual HSTREAM AAC_StreamCreateFile(const void* file, DWORD flags) = 0;
    virtual HSTREAM WMA_StreamCreateFile(const void* file, DWORD flags) = 0;
    virtual HSTREAM OPUS_StreamCreateFile(const void* file, DWORD flags) = 0;
    virtual HSTREAM FLAC_StreamCreateFile(const void* file, DWORD flags) = 0;
    virtual HSTREAM MP4_StreamCreateFile(const void* file, DWORD flags) = 0;
    virtual HSTREAM HLS_StreamCreateFile(const void* file, DWORD flags) = 0;

    /// Not of the library's own: what a recording device hears, as a stream without an end that
    /// plays, is shaped and is encoded as any other. device: -1 the system's default, or a place in
    /// the list of RecordGetDeviceInfo().
    virtual HSTREAM StreamCreateRecordingDevice(int device, DWORD flags) = 0;
    /// Number 0 is the system's default; false with BASS_ERROR_DEVICE past the end.
    virtual bool RecordGetDeviceInfo(DWORD device, BASS_DEVICEINFO* info) = 0;

    /// Not of the library's own: a stream whose bytes the caller brings, for encoders alone. It is
    /// not heard; from ChannelPlay() on it is decoded as fast as its encoders take it, and shaped
    /// as a new channel is. Without what is decoded from bytes before `begin`, which only help to
    /// decode the rest. Returns when the first audio is there, so `data` must hold some. 0: it does
    /// not, or this library has no such streams.
    virtual HSTREAM StreamCreatePush(const void* /*data*/, QWORD /*length*/, QWORD /*begin*/) {
        return 0;
    }
    /// More bytes; returns at once. At most 32 MB wait.
    virtual bool StreamPutData(HSTREAM /*handle*/, const void* /*data*/, QWORD /*length*/) {
        return false;
    }
    /// What follows comes from another connection, and may be of another format.
    virtual bool StreamPutGap(HSTREAM /*handle*/) { return false; }
    /// Nothing follows. Once all is decoded the encoders end as with Encode_StopEx(handle, true);
    /// StreamFree() waits for that, where ChannelPlay() was called.
    virtual bool StreamPutEnd(HSTREAM /*handle*/) { return false; }

    virtual bool StreamFree(HSTREAM handle) = 0;
    /// mode: BASS_FILEPOS_...; all ones on failure.
    virtual QWORD StreamGetFilePosition(HSTREAM handle, DWORD mode) = 0;

    // --- channels -----------------------------------------------------------------------------
    virtual bool ChannelPlay(DWORD handle, bool restart) = 0;
    virtual bool ChannelPause(DWORD handle) = 0;
    /// A live stream that has been paused goes on with the newest audio; what lies between is not
    /// heard. False: this library or this kind of stream cannot do it.
    virtual bool ChannelJumpToLive(DWORD /*handle*/) { return false; }
    virtual bool ChannelStop(DWORD handle) = 0;
    virtual DWORD ChannelIsActive(DWORD handle) = 0;
    virtual bool ChannelGetInfo(DWORD handle, BASS_CHANNELINFO* info) = 0;
    /// What is heard now, in the tag type's layout; null where there is none. Valid until the next
    /// call with the same handle and type, or the stream is freed.
    virtual const char* ChannelGetTags(DWORD handle, DWORD tags) = 0;
    /// Sets those of a channel's flags that are in `mask`: BASS_STREAM_AUTOFREE alone. All that it
    /// has now; ~0 on failure.
    virtual DWORD ChannelFlags(DWORD handle, DWORD flags, DWORD mask) = 0;
    virtual bool ChannelSetAttribute(DWORD handle, DWORD attribute, float value) = 0;
    virtual bool ChannelGetAttribute(DWORD handle, DWORD attribute, float* value) = 0;
    /// Not of the library's own: shapes the channel's sound from now on, without a click; also what
    /// its encoders get. With handle 0 every channel created from now on, from its first sample.
    virtual bool ChannelSetEffects(DWORD handle, const EffectSettings& settings) = 0;
    /// Moves an attribute to a value over `time` milliseconds of heard time; BASS_SYNC_SLIDE
    /// follows.
    virtual bool ChannelSlideAttribute(DWORD handle, DWORD attribute, float value, DWORD time) = 0;
    virtual bool ChannelIsSliding(DWORD handle, DWORD attribute) = 0;
    /// The same kinds and parameters as in bass_defs.h; 0 on failure.
    virtual HSYNC
    ChannelSetSync(DWORD handle, DWORD type, QWORD param, SYNCPROC* proc, void* user) = 0;
    virtual bool ChannelRemoveSync(DWORD handle, HSYNC sync) = 0;
    /// Heard position in bytes of float samples; all ones on failure.
    virtual QWORD ChannelGetPosition(DWORD handle, DWORD mode) = 0;
    virtual bool ChannelSetPosition(DWORD handle, QWORD position, DWORD mode) = 0;
    virtual QWORD ChannelGetLength(DWORD handle, DWORD mode) = 0;
    virtual double ChannelBytes2Seconds(DWORD handle, QWORD bytes) = 0;
    virtual QWORD ChannelSeconds2Bytes(DWORD handle, double seconds) = 0;
    /// Peak of the last moments: left in the low, right in the high 16 bits, 0 to 32768; all ones
    /// on failure.
    virtual DWORD ChannelGetLevel(DWORD handle) = 0;
    static constexpr unsigned kSpectrumBins = 1024;
    /// Amplitudes of the last moments before the volume, 0 to 1, into kSpectrumBins places. Returns
    /// the step from one place to the next in Hz; 0: none yet, as the first time it is asked.
    virtual double ChannelGetSpectrum(DWORD handle, float* bins) = 0;
};

/// What a provider module exports under this name: makes the library, owned by the caller. Null
/// where it cannot; then nothing of it but the module itself is left in the process.
using CreateAudioLibraryProc = AudioLibrary*();
constexpr const char* kCreateAudioLibrarySymbol = "wavelark_create_audio_library";
/// May be exported beside it: why the last call has made none, for the user, in UTF-8.
using AudioLibraryRefusalProc = const char*();
constexpr const char* kAudioLibraryRefusalSymbol = "wavelark_audio_library_refusal";

} // namespace BASS
