#include "audio/ffmpeg/wma_file.h"

#include "audio/bass_defs.h"

#include <cstring>

namespace BASS {
namespace {

CodecEncoder::Setup setupFor(const WmaFile::Format& format) {
    CodecEncoder::Setup setup;
    setup.kind = EncoderKind::Wma;
    setup.options = format.options;
    setup.inputRate = setup.rate = format.rate;
    setup.inputChannels = setup.channels = format.channels;
    setup.canRewrite = true;
    return setup;
}

} // namespace

WmaFile::WmaFile(const std::filesystem::path& path, const Format& format)
    : m_format(format), m_file(path, std::ios::binary | std::ios::trunc),
      m_encoder(setupFor(format), [this](const auto* data, std::size_t size, std::int64_t at) {
          writeBytes(data, size, at);
      }) {}

WmaFile::~WmaFile() {
    close();
}

int WmaFile::open() {
    const std::lock_guard lock(m_mutex);
    if (!m_file.is_open())
        return BASS_ERROR_CREATE;
    const int result = m_encoder.open();
    m_isOpen = result == BASS_OK;
    return result;
}

void WmaFile::writeBytes(const std::uint8_t* data, std::size_t size, std::int64_t offset) {
    m_file.seekp(offset);
    m_file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
}

bool WmaFile::write(const void* samples, std::size_t bytes) {
    const std::lock_guard lock(m_mutex);
    const std::size_t count = bytes / (m_format.isFloat ? sizeof(float) : sizeof(std::int16_t));
    m_samples.resize(count);
    if (m_format.isFloat) {
        std::memcpy(m_samples.data(), samples, count * sizeof(float));
    } else {
        const auto* in = static_cast<const std::uint8_t*>(samples);
        for (float& out : m_samples) {
            std::int16_t value = 0;
            std::memcpy(&value, in, sizeof value);
            in += sizeof value;
            out = static_cast<float>(value) / 32768.0F;
        }
    }
    const auto channels = static_cast<std::size_t>(m_format.channels);
    return m_isOpen && m_encoder.encode(m_samples.data(), count / channels) && m_file.good();
}

bool WmaFile::close() {
    const std::lock_guard lock(m_mutex);
    if (!m_isOpen)
        return false;
    m_isOpen = false;
    const bool isDone = m_encoder.finish();
    m_file.close();
    return isDone && !m_file.fail();
}

} // namespace BASS
