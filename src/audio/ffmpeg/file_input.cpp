#include "audio/ffmpeg/file_input.h"

#include <algorithm>
#include <system_error>

namespace BASS {

FileInput::FileInput(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return; // opening a folder succeeds on some systems
    m_file.open(path, std::ios::binary);
    const auto size = std::filesystem::file_size(path, error);
    m_size = error ? 0 : size;
}

DecoderInput::Read FileInput::read(std::uint8_t* out, std::size_t max) {
    Read result;
    result.position = m_position.load();
    if (m_isAborted.load()) {
        result.status = Status::Aborted;
        return result;
    }
    m_file.read(reinterpret_cast<char*>(out), static_cast<std::streamsize>(max));
    result.size = static_cast<std::size_t>(m_file.gcount());
    m_file.clear();
    m_position.store(result.position + result.size);
    result.status = result.size > 0 ? Status::Bytes : Status::End;
    return result;
}

std::vector<std::uint8_t> FileInput::peek(std::size_t max, std::size_t /*known*/, bool& isEnd) {
    const std::uint64_t at = m_position.load();
    std::vector<std::uint8_t> result(max);
    const Read got = read(result.data(), max);
    result.resize(got.size);
    seek(at);
    isEnd = at + got.size >= m_size || got.status == Status::Aborted;
    return result;
}

bool FileInput::seek(std::uint64_t position) {
    if (position > m_size)
        return false;
    m_file.clear();
    m_file.seekg(static_cast<std::streamoff>(position));
    m_position.store(position);
    return m_file.good();
}

} // namespace BASS
