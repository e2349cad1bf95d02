#pragma once

#include <QString>

#include <cstdlib>
#include <memory>

namespace BASS {

/// The memory of a recording buffer. Pages that were never written to take none of the machine's
/// memory; all of it is given back when it goes. One thread at a time.
class BufferMemory final {
  public:
    /// `name`: for the log. Check isValid(): the system may refuse.
    BufferMemory(qint64 bytes, const QString& name);

    [[nodiscard]] bool isValid() const { return m_data != nullptr; }
    [[nodiscard]] char* data() const { return m_data.get(); }
    [[nodiscard]] qint64 size() const { return m_size; }

  private:
    struct Free {
        void operator()(char* data) const { std::free(data); }
    };
    std::unique_ptr<char, Free> m_data;
    qint64 m_size;
};

} // namespace BASS
