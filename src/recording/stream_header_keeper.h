#pragma once

#include <QByteArray>

namespace BASS {

/// Watches a connection for what a recording that starts later cannot do without: the header pages
/// of the current Ogg link (RFC 3533), or the metadata blocks at the start of a FLAC stream
/// (RFC 9639). Other formats need nothing, and cost nothing after their first bytes. Memory is
/// bounded. Pure; any one thread.
class StreamHeaderKeeper {
  public:
    /// A connection begins; what was kept is forgotten.
    void reset();
    void push(const char* data, qsizetype size);
    /// Put before the bytes that follow it makes a stream with headers. Empty: the stream needs
    /// nothing, or has not sent it.
    [[nodiscard]] QByteArray header() const { return m_header + m_pageHead; }

  private:
    enum class State { Starting, Ogg, Flac, Nothing };

    void start(const char* data, qsizetype size);
    void pushOgg(const char* data, qsizetype size);
    bool completePageHead(const char*& data, const char* end);
    void beginPage();
    void pushFlac(const char* data, qsizetype size);

    State m_state = State::Starting;
    QByteArray m_header;
    QByteArray m_pageHead;    ///< Ogg: the page header while it comes
    qint64 m_bodyLeft = 0;    ///< Ogg: bytes of the page still to come
    bool m_isKeeping = false; ///< Ogg: the link's headers are not over
    bool m_wasFirstPage = false;
};

} // namespace BASS
