#pragma once

#include "audio/audio_library.h"
#include "recording/c_encoder_params.h"
#include "recording/recording_types.h"

#include <QStringList>

#include <functional>
#include <variant>

namespace BASS {

/// The parameters of the built-in encoder for a setting: kbit/s, or for MP3 1 to 9 as a quality.
/// `mode`: one of the three with a bitrate; encoders that have no choice keep to their own.
CEncoderParams encoderParams(int encoder, int bitrate, EncoderMode mode);
/// Their argument string; empty for codes without one.
QString encoderArguments(int encoder, int bitrate, EncoderMode mode = EncoderMode::ConstantBitrate);

/// The one of the rates on offer (bit/s, ended by 0) that is nearest to a wish. 0: there is none.
DWORD nearestRate(const DWORD* rates, DWORD wish);

/// Names under which an external encoder may be found, the best first; without the ending that a
/// system gives its programs.
QStringList encoderProgramNames(int encoder);
/// The external encoder's path: looked for beside the program, in "Encoders" there and in PATH.
/// Empty: not found. Looks at the disk.
QString findEncoderProgram(int encoder);

/// "Do not encode if stream type and bitrate are the same". `channelType`: BASS_CTYPE_...,
/// bitrates in kbit/s.
bool isSameAsEncoded(int encoder, int bitrate, DWORD channelType, int streamBitrate);

struct EncoderRequest {
    DWORD channel = 0;
    int encoder = 0; ///< code
    int bitrate = 0; ///< as in the settings
    EncoderMode mode = EncoderMode::ConstantBitrate;
    QString params;        ///< see RecordingOptions
    QString userArguments; ///< see RecordingOptions
    ENCODEPROC* proc = nullptr;
    void* user = nullptr;
    QString outputPath; ///< for messages
    /// The text of a library error code.
    std::function<QString(int)> errorText;
};

/// Starts the built-in encoder, else the external program of the code. The handle, or what to tell
/// the user. Any thread.
std::variant<HENCODE, RecordingError> startEncoder(AudioLibrary& library,
                                                   const EncoderRequest& request);

/// Holds the encoders of one recording and ends them by their rules: a new handle stops the one
/// before with everything queued encoded; going does the same. *Thread*: one at a time.
class EncoderHolder final {
    Q_DISABLE_COPY_MOVE(EncoderHolder)

  public:
    explicit EncoderHolder(AudioLibrary& library) : m_library(library) {}
    ~EncoderHolder() { stop(); }

    void setEncoder(HENCODE encoder);
    void setWmaEncoder(HWMENCODE encoder);
    /// The library lets the one before end by itself, at the cut.
    void cutTo(HENCODE encoder) { m_encoder = encoder; }
    void stop();
    [[nodiscard]] HENCODE encoder() const { return m_encoder; }

  private:
    AudioLibrary& m_library;
    HENCODE m_encoder = 0;
    HWMENCODE m_wmaEncoder = 0;
};

} // namespace BASS
