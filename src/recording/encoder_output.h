#pragma once

#include <QByteArray>

namespace BASS {

/// What the first bytes of a file that an encoder writes are good for.
enum class EncoderOutput {
    Header,  ///< what comes before the first audio, or too little to tell
    Audio,   ///< a player has something to play
    Foreign, ///< cannot be what the encoder gives out
};

/// `encoder`: its code. `bytes`: all from the file's beginning; 256 KiB of them are never a header
/// alone. `isEnd`: there will be no more.
EncoderOutput encoderOutput(int encoder, const QByteArray& bytes, bool isEnd);

} // namespace BASS
