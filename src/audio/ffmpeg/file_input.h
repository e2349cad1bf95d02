#pragma once

#include "audio/ffmpeg/decoder_input.h"

#include <atomic>
#include <filesystem>
#include <fstream>

namespace BASS {

/// A local file.
class FileInput final : public DecoderInput {
  public:
    explicit FileInput(const std::filesystem::path& path);
    [[nodiscard]] bool isOpen() const { return m_file.is_open(); }

    Read read(std::uint8_t* out, std::size_t max) override;
    std::vector<std::uint8_t> peek(std::size_t max, std::size_t known, bool& isEnd) override;
    [[nodiscard]] std::uint64_t seekableSize() const override { return m_size; }
    bool seek(std::uint64_t position) override;
    void abort() override { m_isAborted.store(true); }
    [[nodiscard]] std::uint64_t taken() const override { return m_position.load(); }
    [[nodiscard]] std::uint64_t received() const override { return m_size; }

  private:
    std::ifstream m_file;
    std::uint64_t m_size = 0;
    std::atomic<std::uint64_t> m_position{0};
    std::atomic<bool> m_isAborted{false};
};

} // namespace BASS
