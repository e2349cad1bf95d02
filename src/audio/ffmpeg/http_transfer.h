#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace BASS {

/// The answer's header lines, without line ends; those of the last hop of a redirect.
struct HttpHeaders {
    std::vector<std::string> lines;
    std::string url; ///< that answered, after redirects

    /// The last line of that name (compared without case), without blanks around; empty: none.
    [[nodiscard]] std::string value(std::string_view name) const;
};

/// What a transfer tells; called on the network thread.
class TransferSink {
  public:
    virtual ~TransferSink() = default;
    /// Once, before the first byte of the body or the end.
    virtual void answered(const HttpHeaders& headers, int status) = 0;
    /// False: take no more until NetEngine::resume(); these bytes come again.
    virtual bool body(const std::uint8_t* data, std::size_t size) = 0;
    /// True while nobody minds if bytes that have come wait for almost half a second.
    [[nodiscard]] virtual bool canWait() { return false; }
    /// error: BASS_OK when the server closed the connection in order. Nothing follows.
    virtual void ended(int error) = 0;
};

struct HttpRequest {
    std::string url; ///< http or https
    std::string userAgent;
    std::string proxy;                             ///< "[user:password@]host:port"; empty: none
    std::chrono::milliseconds answerTimeout{5000}; ///< until the first byte of the body
    std::chrono::milliseconds readTimeout{0};      ///< longest silence after that; 0: no limit
    std::uint64_t offset = 0;                      ///< first byte wanted
    std::uint64_t length = 0;                      ///< bytes wanted; 0: to the end
    bool isFileAllowed = false;                    ///< for a playlist that is the user's own file
    bool wantsTitles = true;                       ///< ask for ICY title blocks
};

/// One HTTP connection. *Thread*: constructed anywhere, all else on the network thread.
class HttpTransfer {
  public:
    HttpTransfer(HttpRequest request, std::shared_ptr<TransferSink> sink);
    ~HttpTransfer();
    HttpTransfer(const HttpTransfer&) = delete;
    HttpTransfer& operator=(const HttpTransfer&) = delete;

    [[nodiscard]] void* handle() const; ///< the CURL handle
    void begin();
    void resume();
    /// result: a CURLcode.
    void finish(int result);
    [[nodiscard]] bool canWait() const { return m_isAnswered && m_sink->canWait(); }
    [[nodiscard]] std::chrono::steady_clock::time_point deadline() const { return m_deadline; }

  private:
    struct Curl;

    static std::size_t onHeader(char* data, std::size_t size, std::size_t count, void* self);
    static std::size_t onBody(char* data, std::size_t size, std::size_t count, void* self);
    void configure();
    void configureProxy();
    void takeHeader(std::string_view line);
    void answer();
    void touch();
    [[nodiscard]] bool hasConnected() const;
    [[nodiscard]] int errorFor(int result) const;

    const HttpRequest m_request;
    const std::shared_ptr<TransferSink> m_sink;
    std::unique_ptr<Curl> m_curl;
    HttpHeaders m_headers;
    std::chrono::steady_clock::time_point m_deadline;
    bool m_isAnswered = false;
    bool m_isPaused = false;
};

/// The address as it may stand in a log: without user, password and query.
[[nodiscard]] std::string loggableUrl(const std::string& url);

} // namespace BASS
