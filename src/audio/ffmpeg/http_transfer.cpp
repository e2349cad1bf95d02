#include "audio/ffmpeg/http_transfer.h"

#include "audio/ascii_text.h"
#include "audio/bass_defs.h"
#include "base/log.h"

#include <curl/curl.h>

#include <algorithm>

namespace BASS {
namespace {

constexpr long kMaxRedirects = 10;
constexpr long kReceiveBytes = 16384;

bool isStatusLine(std::string_view line) {
    return line.substr(0, 5) == "HTTP/" || line.substr(0, 4) == "ICY ";
}

} // namespace

std::string HttpHeaders::value(std::string_view name) const {
    std::string result;
    for (const std::string& line : lines) {
        const std::size_t colon = line.find(':');
        if (colon != std::string::npos &&
            equalsNoCase(trimmed(std::string_view(line).substr(0, colon)), name))
            result = trimmed(std::string_view(line).substr(colon + 1));
    }
    return result;
}

std::string loggableUrl(const std::string& url) {
    const std::size_t scheme = url.find("://");
    const std::size_t host = scheme == std::string::npos ? 0 : scheme + 3;
    std::string rest = url.substr(host, url.find_first_of("?#", host) - host);
    const std::size_t path = rest.find('/');
    const std::size_t at = rest.rfind('@', path == std::string::npos ? path : path - 1);
    if (at != std::string::npos && (path == std::string::npos || at < path))
        rest.erase(0, at + 1);
    return url.substr(0, host) + rest;
}

struct HttpTransfer::Curl {
    Curl() : easy(curl_easy_init()) {}
    ~Curl() {
        curl_easy_cleanup(easy);
        curl_slist_free_all(headers);
        curl_slist_free_all(aliases);
    }
    Curl(const Curl&) = delete;
    Curl& operator=(const Curl&) = delete;

    template <typename Value>
    void set(CURLoption option, Value value) {
        curl_easy_setopt(easy, option, value);
    }

    CURL* easy;
    curl_slist* headers = nullptr;
    curl_slist* aliases = nullptr;
};

HttpTransfer::HttpTransfer(HttpRequest request, std::shared_ptr<TransferSink> sink)
    : m_request(std::move(request)), m_sink(std::move(sink)), m_curl(std::make_unique<Curl>()) {}

HttpTransfer::~HttpTransfer() = default;

void* HttpTransfer::handle() const {
    return m_curl->easy;
}

void HttpTransfer::begin() {
    configure();
    touch();
    qCInfo(lcAudio, "connect url=%s", loggableUrl(m_request.url).c_str());
}

void HttpTransfer::configure() {
    Curl& c = *m_curl;
    c.set(CURLOPT_URL, m_request.url.c_str());
    c.set(CURLOPT_USERAGENT, m_request.userAgent.c_str());
    c.set(CURLOPT_PROTOCOLS_STR, "http,https");
    c.set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    c.set(CURLOPT_FOLLOWLOCATION, 1L);
    c.set(CURLOPT_MAXREDIRS, kMaxRedirects);
    c.set(CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1});
    c.set(CURLOPT_HTTP09_ALLOWED, 1L); // old servers send audio without any header
    c.set(CURLOPT_NOSIGNAL, 1L);
    c.set(CURLOPT_QUICK_EXIT, 1L); // a resolver that does not answer must not hold up a cancel
    c.set(CURLOPT_TCP_KEEPALIVE, 1L);
    c.set(CURLOPT_BUFFERSIZE, kReceiveBytes);
    c.set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(m_request.answerTimeout.count()));
    c.aliases = curl_slist_append(nullptr, "ICY 200 OK");
    c.set(CURLOPT_HTTP200ALIASES, c.aliases);
    if (m_request.wantsTitles)
        c.headers = curl_slist_append(c.headers, "Icy-MetaData: 1");
    c.headers = curl_slist_append(c.headers, "Accept: */*");
    c.set(CURLOPT_HTTPHEADER, c.headers);
    if (m_request.length > 0)
        c.set(CURLOPT_RANGE,
              (std::to_string(m_request.offset) + '-' +
               std::to_string(m_request.offset + m_request.length - 1))
                  .c_str());
    else if (m_request.offset > 0)
        c.set(CURLOPT_RESUME_FROM_LARGE, static_cast<curl_off_t>(m_request.offset));
    c.set(CURLOPT_HEADERFUNCTION, &HttpTransfer::onHeader);
    c.set(CURLOPT_HEADERDATA, this);
    c.set(CURLOPT_WRITEFUNCTION, &HttpTransfer::onBody);
    c.set(CURLOPT_WRITEDATA, this);
    configureProxy();
}

/// Always set, even to none: else the library would take one from the environment.
void HttpTransfer::configureProxy() {
    const std::string& text = m_request.proxy;
    const std::size_t at = text.rfind('@');
    if (at == std::string::npos) {
        m_curl->set(CURLOPT_PROXY, text.c_str());
        return;
    }
    const std::size_t scheme = text.find("://");
    const std::size_t login = scheme == std::string::npos ? 0 : scheme + 3;
    const std::string user = text.substr(login, at - login);
    m_curl->set(CURLOPT_PROXY, (text.substr(0, login) + text.substr(at + 1)).c_str());
    m_curl->set(CURLOPT_PROXYUSERNAME, user.substr(0, user.find(':')).c_str());
    if (const std::size_t colon = user.find(':'); colon != std::string::npos)
        m_curl->set(CURLOPT_PROXYPASSWORD, user.substr(colon + 1).c_str());
    m_curl->set(CURLOPT_PROXYAUTH, static_cast<long>(CURLAUTH_ANY));
}

std::size_t HttpTransfer::onHeader(char* data, std::size_t size, std::size_t count, void* self) {
    static_cast<HttpTransfer*>(self)->takeHeader(trimmed({data, size * count}));
    return size * count;
}

void HttpTransfer::takeHeader(std::string_view line) {
    constexpr std::size_t kMaxLines = 256;
    if (isStatusLine(line))
        m_headers.lines.clear(); // a further hop, or the answer behind a proxy's own
    if (!line.empty() && m_headers.lines.size() < kMaxLines)
        m_headers.lines.emplace_back(line);
}

std::size_t HttpTransfer::onBody(char* data, std::size_t size, std::size_t count, void* self) {
    auto* const transfer = static_cast<HttpTransfer*>(self);
    transfer->answer();
    long status = 0;
    curl_easy_getinfo(transfer->m_curl->easy, CURLINFO_RESPONSE_CODE, &status);
    if (status >= 400)
        return 0; // an error's page is no audio
    transfer->m_isPaused =
        !transfer->m_sink->body(reinterpret_cast<const std::uint8_t*>(data), size * count);
    transfer->touch();
    return transfer->m_isPaused ? CURL_WRITEFUNC_PAUSE : size * count;
}

void HttpTransfer::answer() {
    if (m_isAnswered)
        return;
    m_isAnswered = true;
    long status = 0;
    curl_easy_getinfo(m_curl->easy, CURLINFO_RESPONSE_CODE, &status);
    const char* url = nullptr;
    curl_easy_getinfo(m_curl->easy, CURLINFO_EFFECTIVE_URL, &url);
    m_headers.url = url != nullptr ? url : m_request.url;
    m_sink->answered(m_headers, static_cast<int>(status));
}

void HttpTransfer::resume() {
    m_isPaused = false;
    touch();
    curl_easy_pause(m_curl->easy, CURLPAUSE_CONT);
}

/// Moves the deadline behind the byte that has just come.
void HttpTransfer::touch() {
    const auto limit = m_isAnswered ? m_request.readTimeout : m_request.answerTimeout;
    const bool isEndless = m_isPaused || limit.count() <= 0;
    m_deadline = isEndless ? std::chrono::steady_clock::time_point::max()
                           : std::chrono::steady_clock::now() + limit;
}

bool HttpTransfer::hasConnected() const {
    long connections = 0;
    curl_easy_getinfo(m_curl->easy, CURLINFO_NUM_CONNECTS, &connections);
    return connections > 0;
}

int HttpTransfer::errorFor(int result) const {
    long status = 0;
    curl_easy_getinfo(m_curl->easy, CURLINFO_RESPONSE_CODE, &status);
    if (status >= 400)
        return BASS_ERROR_FILEOPEN;
    switch (result) {
    case CURLE_OK:
        return BASS_OK;
    case CURLE_OPERATION_TIMEDOUT:
        return BASS_ERROR_TIMEOUT;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return BASS_ERROR_NONET;
    case CURLE_URL_MALFORMAT:
    case CURLE_UNSUPPORTED_PROTOCOL:
        // said by a server, it is no fault of the address that was given
        return hasConnected() ? BASS_ERROR_FILEOPEN : BASS_ERROR_ILLPARAM;
    default:
        return BASS_ERROR_FILEOPEN;
    }
}

void HttpTransfer::finish(int result) {
    const int error = errorFor(result);
    if (!m_headers.lines.empty())
        answer();
    qCInfo(lcAudio,
           "connection ended url=%s error=%d reason=%s",
           loggableUrl(m_request.url).c_str(),
           error,
           curl_easy_strerror(static_cast<CURLcode>(result)));
    m_sink->ended(error);
}

} // namespace BASS
