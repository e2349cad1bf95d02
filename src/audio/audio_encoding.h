#pragma once

#include "audio/bass_defs.h"

namespace BASS {

/// Encoded bytes, in the order of the file, on the encoder's own thread. The last call has length 0
/// and comes exactly once for every encoder that a start call has returned: the file is complete,
/// or Encode_IsActive() says 0 before it because the encoder has failed. An encoder that got no
/// audio gives out nothing but that call. It may block (the queue behind it holds 20 seconds), and
/// must not stop or free its own encoder's channel.
using ENCODEPROC =
    void(HENCODE handle, DWORD channel, const void* buffer, DWORD length, void* user);

/// Bytes that replace what was delivered at `offset` of the file (durations, checksums); same
/// thread and user pointer as ENCODEPROC, only between the last audio and the call with length 0.
using ENCODEREWRITEPROC =
    void(HENCODE handle, DWORD channel, const void* buffer, DWORD length, QWORD offset, void* user);

/// Encoders on channels: they get what is decoded, after the effects and before the volume.
///
/// Each encoder has a thread of its own behind a bounded queue, so that neither a slow disk nor a
/// stuck program holds up what is heard; one that is 20 seconds behind has failed. An encoder runs
/// on any channel, any number of them at a time, whether it plays or is muted; what is paused is
/// not encoded. Audio reaches an encoder half a second after it is decoded (a tenth where the
/// caller brings the bytes), so that a cut can still be made at a place just passed; nothing of it
/// is lost at the end.
///
/// Options are texts, UTF-16 with BASS_UNICODE in the flags, else Latin-1; bitrates below 1000 are
/// kbit/s, others bit/s. What a text does not say has a sensible default; a switch that is not
/// known is left out and logged; a number out of range fails with BASS_ERROR_ILLPARAM.
///
/// Thread: any. Life: StreamFree() of a channel ends its encoders as Encode_StopEx(handle, true)
/// does and waits for their last call.
class AudioEncoding {
  public:
    AudioEncoding() = default;
    virtual ~AudioEncoding() = default;
    AudioEncoding(const AudioEncoding&) = delete;
    AudioEncoding& operator=(const AudioEncoding&) = delete;

    /// "--cbr -b128", "--vbr-new -V4 -b96 -B192", "--abr 160"; also with a blank before the number.
    virtual HENCODE Encode_MP3_Start(
        DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) = 0;
    /// "-q5", "-b128 -m96 -M192". A page at least every half second.
    virtual HENCODE Encode_OGG_Start(
        DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) = 0;
    /// "--compression-level-5", with "--ogg" in an Ogg container. 16 bits without
    /// BASS_ENCODE_FP_24BIT or BASS_ENCODE_FP_AUTO.
    virtual HENCODE Encode_FLAC_Start(
        DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) = 0;
    /// Not of the library's own: AAC-LC. "--br 96" or "-b96"; ADTS frames, with "--m4a" an M4A file
    /// in fragments of one second.
    virtual HENCODE Encode_AAC_Start(
        DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) = 0;
    /// Not of the library's own: WMA in ASF, given out like the others. "--cbr -b128 -s44100 -c2",
    /// "--vbr -q75 -s44100 -c2".
    virtual HENCODE Encode_WMA_Start(
        DWORD handle, const void* options, DWORD flags, ENCODEPROC* proc, void* user) = 0;
    /// A program with arguments (no shell): PCM of the channel's rate and channels on its standard
    /// input behind a WAV header of unknown length, its standard output to `proc`. Samples are
    /// floats on a channel made with BASS_SAMPLE_FLOAT and without BASS_ENCODE_FP_16BIT, else 16
    /// bits. BASS_ERROR_FILEOPEN: no such program. A program that takes nothing for 5 seconds, or
    /// does not end within 5 seconds of its last input, is killed.
    virtual HENCODE Encode_Start(
        DWORD handle, const void* commandLine, DWORD flags, ENCODEPROC* proc, void* user) = 0;

    /// What a program reads.
    struct ProgramInput {
        DWORD rate = 0;     ///< Hz; 0: the channel's
        DWORD channels = 0; ///< 0: the channel's
    };
    /// Not of the library's own: as Encode_Start(), for a program that takes samples of one kind
    /// only. BASS_ERROR_FORMAT: this library cannot convert the channel's.
    virtual HENCODE Encode_StartAs(DWORD handle,
                                   const void* commandLine,
                                   const ProgramInput& /*input*/,
                                   DWORD flags,
                                   ENCODEPROC* proc,
                                   void* user) {
        return Encode_Start(handle, commandLine, flags, proc, user);
    }

    /// BASS_ACTIVE_PLAYING, BASS_ACTIVE_PAUSED, or BASS_ACTIVE_STOPPED (0): not there, ended or
    /// failed. handle: an encoder, or a channel for "any of its encoders".
    virtual DWORD Encode_IsActive(DWORD handle) = 0;
    virtual bool Encode_SetPaused(HENCODE handle, bool isPaused) = 0;
    /// Takes the encoder (or every encoder of a channel) off and returns at once. The rest of its
    /// audio, with `queue` false only what it holds already, and the end of the file follow on its
    /// thread; the call with length 0 says that they are done.
    virtual bool Encode_StopEx(DWORD handle, bool queue) = 0;
    /// An encoder goes on with another channel's audio, from what that decodes next; what is left
    /// of the old channel's comes first. For a stream that has been connected anew.
    virtual bool Encode_SetChannel(HENCODE handle, DWORD channel) = 0;
    /// Not of the library's own: a second encoder, with the settings of the first, takes over at
    /// one sample: the first one that is decoded from the stream's byte `position` or later,
    /// `delayMs` after it. The old one ends there by itself (length 0); no sample is lost or
    /// doubled. The new one starts with its first sample. A place whose audio has reached the
    /// encoder is cut as early as still possible. Stopping the new one before the cut is reached
    /// stops the old one with it, there and then. An external program is started a second time. 0:
    /// `old` does not run (BASS_ERROR_HANDLE) or waits for another cut already
    /// (BASS_ERROR_ALREADY). May be called from a TITLEPROC, where no byte of the title has been
    /// decoded yet and every cut is exact.
    virtual HENCODE
    Encode_CutAt(HENCODE old, QWORD position, DWORD delayMs, ENCODEPROC* proc, void* user) = 0;
    /// Not of the library's own: seconds of audio that an encoder has been given, complete when the
    /// call with length 0 comes. For a callback too. Negative: this library cannot tell.
    virtual double Encode_GetSeconds(HENCODE /*handle*/) { return -1; }
    /// Not of the library's own: the place in the encoder's audio, in seconds, of the first sample
    /// that was decoded from the stream's byte `position` or later. Negative: it has not been given
    /// to the encoder yet, or this library cannot tell.
    virtual double Encode_GetSecondsAt(HENCODE /*handle*/, QWORD /*position*/) { return -1; }
    /// Without one, files are made so that nothing needs to be replaced: they play, but MP3 lacks
    /// its Info frame, FLAC and ASF their length. Set before encoders start; null: none.
    virtual void SetEncodeRewriteProc(ENCODEREWRITEPROC* proc) = 0;

    /// Bitrates in bit/s (or with BASS_WMA_ENCODE_VBR qualities, 1 to 100) for this format, rising,
    /// ended by 0; null with BASS_ERROR_NOTAVAIL. Valid for ever.
    virtual const DWORD* WMA_EncodeGetRates(DWORD freq, DWORD chans, DWORD flags) = 0;
    /// Writes a file from PCM that the caller brings. bitrate: bit/s, 0 to 100 a quality. flags:
    /// BASS_SAMPLE_FLOAT for floats, else 16 bits; BASS_UNICODE for the file's name.
    virtual HWMENCODE
    WMA_EncodeOpenFile(DWORD freq, DWORD chans, DWORD flags, DWORD bitrate, const void* file) = 0;
    /// length: bytes. Encodes and writes before it returns.
    virtual bool WMA_EncodeWrite(HWMENCODE handle, const void* buffer, DWORD length) = 0;
    virtual bool WMA_EncodeClose(HWMENCODE handle) = 0;
};

} // namespace BASS
