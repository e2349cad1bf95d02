#pragma once

#include "audio/ffmpeg/codec_encoder.h"

#include <filesystem>
#include <fstream>
#include <mutex>
#include <vector>

namespace BASS {

/// A WMA file made of PCM that somebody brings. Any thread.
class WmaFile {
  public:
    struct Format {
        int rate;
        int channels;
        bool isFloat;
        EncoderOptions options;
    };

    WmaFile(const std::filesystem::path& path, const Format& format);
    ~WmaFile();
    WmaFile(const WmaFile&) = delete;
    WmaFile& operator=(const WmaFile&) = delete;

    /// BASS_OK, or why not.
    int open();
    /// False: it could not be encoded or written.
    bool write(const void* samples, std::size_t bytes);
    bool close();

  private:
    void writeBytes(const std::uint8_t* data, std::size_t size, std::int64_t offset);

    std::mutex m_mutex; ///< guards all below
    const Format m_format;
    std::ofstream m_file;
    CodecEncoder m_encoder;
    std::vector<float> m_samples;
    bool m_isOpen = false;
};

} // namespace BASS
