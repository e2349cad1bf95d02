#pragma once

#include <QByteArray>

namespace BASS {

/// Watches a connection for what a recording that starts later cannot do without: the header pages
/// of the current Ogg link (RFC 3533), or the metadata blocks at the start of a FLAC stream
/// (RFC 9639). Other formats need nothing, and cost nothing after their first bytes. Pure; any one
/// thread.
class StreamHeaderKeeper {
  public:
    /// A connection begins; what was kept is forgotten.
    void reset();
    void push(const char* data, qsizetype size);
    /// Empty: the stream needs nothing, or has not sent it.
    [[nodiscard]] const QByteArray& header() const { return m_header; }

  private:
    enum class State { Starting, Nothing };

    State m_state = State::Starting;
    QByteArray m_header;
};

} // namespace BASS
