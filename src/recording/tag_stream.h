#pragma once

#include <QFile>

#include <tiostream.h>

namespace BASS {

/// An open file as the tag library wants it, so that names are told to the system in one way only.
///
/// *Thread*: one at a time. *Owner*: the file outlives it.
class TagStream final : public TagLib::IOStream {
  public:
    explicit TagStream(QFile& file) : m_file(file) {}

    [[nodiscard]] TagLib::FileName name() const override { return "recording"; }
    TagLib::ByteVector readBlock(unsigned long length) override;
    void writeBlock(const TagLib::ByteVector& data) override;
    void insert(const TagLib::ByteVector& data,
                unsigned long start = 0,
                unsigned long replace = 0) override;
    void removeBlock(unsigned long start = 0, unsigned long length = 0) override;
    [[nodiscard]] bool readOnly() const override { return false; }
    [[nodiscard]] bool isOpen() const override { return m_file.isOpen(); }
    void seek(long offset, Position position = Beginning) override;
    void clear() override {}
    [[nodiscard]] long tell() const override { return static_cast<long>(m_file.pos()); }
    long length() override { return static_cast<long>(m_file.size()); }
    void truncate(long length) override;

    /// Something could not be read or written; the file is not to be used.
    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }

  private:
    void moveBytes(qint64 from, qint64 to);

    QFile& m_file;
    bool m_hasFailed = false;
};

} // namespace BASS
