#pragma once

#include <QByteArray>
#include <QString>

namespace BASS {

// What is told to encoders. Plain values and pure functions, any thread.

/// The codes that settings hold; 5, 7 and 9 select nothing.
enum EncoderCode {
    EncoderNone = 0, ///< the stream's own data
    EncoderMp3 = 1,
    EncoderWma = 2,
    EncoderAacPlus = 3,
    EncoderOgg = 4,
    EncoderFlac = 6,
    EncoderAac = 8,
    EncoderFlacOgg = 10,
};

enum class EncoderMode { ConstantBitrate, VariableBitrate, AverageBitrate, Quality, Compression };

/// The parameters of one encoder and their argument string. Bitrates are bit/s; the strings of MP3
/// and Ogg Vorbis tell them in kbit/s, as these encoders want them.
class CEncoderParams final {
  public:
    explicit CEncoderParams(int encoder = EncoderNone);

    /// The string for the built-in encoder; empty where the encoder or the mode has none.
    [[nodiscard]] QString arguments() const;
    /// Takes the fields from such a string; tokens that are not known are passed over, fields that
    /// it does not tell keep their values.
    void parse(const QString& arguments);

    /// A value below 1000 is taken as kbit/s; 0: not set.
    void setBitrate(int bitrate);
    void setBitrateRange(int minimum, int maximum);

    [[nodiscard]] int encoder() const { return m_encoder; }
    [[nodiscard]] int bitrate() const { return m_bitrate; }
    [[nodiscard]] int minBitrate() const { return m_minBitrate; }
    [[nodiscard]] int maxBitrate() const { return m_maxBitrate; }

    EncoderMode mode = EncoderMode::ConstantBitrate;
    double quality = 4; ///< or the compression level
    int sampleRate = 44100;
    int channels = 2;

  private:
    [[nodiscard]] QString mp3Arguments() const;
    [[nodiscard]] QString wmaArguments() const;
    [[nodiscard]] QString oggArguments() const;
    void takeToken(const QString& token, const QString& following);
    void takeShort(QChar letter, double value);

    int m_encoder;
    int m_bitrate = 0;
    int m_minBitrate = 0;
    int m_maxBitrate = 0;
};

bool operator==(const CEncoderParams& a, const CEncoderParams& b);

/// The external encoder's file name; empty for codes without one.
QString encoderProgram(int encoder);

/// The extension of an encoder's files, "mp3" for every code that it does not know: so also for
/// AAC, deliberately. `isDotted`: with a leading ".".
QString encoderExtension(int encoder, bool isDotted);

/// What an external encoder is told; it reads 16-bit PCM from its standard input.
struct ExternalEncoding {
    int sampleRate = 0; ///< of the stream, Hz; 0: not known
    int channels = 0;   ///< 0: not known
    int bitsPerSample = 16;
    int bitrate = 0;       ///< the setting: bit/s or kbit/s; MP3 takes 1 to 9 as a quality
    QString userArguments; ///< of the settings, for this encoder
};

/// The arguments behind the program's name; empty for codes without an external encoder.
QString externalArguments(int encoder, const ExternalEncoding& encoding);

/// The samples that a program reads which is started with these arguments.
struct ExternalInput {
    int sampleRate = 0;
    int channels = 0;
    bool hasHeader = false; ///< a WAV header comes first: it was not told the format
};
/// `arguments`: as externalArguments() has built them. The user's own may name another format than
/// the stream's, or none.
ExternalInput
externalInput(int encoder, const ExternalEncoding& encoding, const QString& arguments);

} // namespace BASS
