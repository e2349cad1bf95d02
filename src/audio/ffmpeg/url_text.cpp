#include "audio/ffmpeg/url_text.h"

#include <QString>
#include <QUrl>

#include <curl/curl.h>

#include <algorithm>
#include <memory>

namespace BASS {
namespace {
struct FreeUrl {
    void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
} // namespace

std::string utf8Text(const void* text, bool isWide) {
    const QString result = isWide ? QString::fromUtf16(static_cast<const char16_t*>(text))
                                  : QString::fromLatin1(static_cast<const char*>(text));
    return result.toStdString();
}

std::filesystem::path filePath(const void* text, bool isWide) {
    if (!isWide)
        return {static_cast<const char*>(text)};
    QString path = QString::fromUtf16(static_cast<const char16_t*>(text));
    const auto scheme = QStringLiteral("file://");
    if (path.startsWith(scheme, Qt::CaseInsensitive))
        path.remove(0, scheme.size());
    return std::filesystem::u8path(path.toStdString());
}

std::u16string fileUrl(const std::filesystem::path& path) {
    std::error_code error;
    const auto absolute = std::filesystem::absolute(path, error);
    const QString name = QString::fromStdString(absolute.generic_u8string());
    return QUrl::fromLocalFile(name).toString(QUrl::FullyEncoded).toStdU16String();
}

std::string requestUrl(const std::string& url) {
    std::string text = url;
    for (const char* const scheme : {"icyx://", "icy://"})
        if (text.rfind(scheme, 0) == 0)
            text.replace(0, std::char_traits<char>::length(scheme), "http://");
    const std::size_t host = text.find("://");
    const std::size_t path = text.find_first_of("/?", host == std::string::npos ? 0 : host + 3);
    if (path == std::string::npos)
        return text;
    std::string result = text.substr(0, path);
    for (const char c : text.substr(path)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 0x20 && byte < 0x7F) {
            result += c;
            continue;
        }
        constexpr char kHex[] = "0123456789ABCDEF";
        result += '%';
        result += kHex[byte >> 4];
        result += kHex[byte & 15];
    }
    return result;
}

std::string resolvedUrl(const std::string& base, const std::string& relative) {
    const QUrl address = QUrl::fromEncoded(QByteArray::fromStdString(base));
    if (address.isLocalFile()) // which the library below knows in its own system's spelling only
        return address.resolved(QUrl(QString::fromStdString(relative)))
            .toEncoded(QUrl::FullyEncoded)
            .toStdString();
    constexpr unsigned kFlags = CURLU_ALLOW_SPACE | CURLU_NON_SUPPORT_SCHEME;
    const std::unique_ptr<CURLU, FreeUrl> url(curl_url());
    if (curl_url_set(url.get(), CURLUPART_URL, base.c_str(), kFlags) != CURLUE_OK ||
        curl_url_set(url.get(), CURLUPART_URL, relative.c_str(), kFlags) != CURLUE_OK)
        return {};
    char* text = nullptr;
    if (curl_url_get(url.get(), CURLUPART_URL, &text, 0) != CURLUE_OK)
        return {};
    std::string result = text;
    curl_free(text);
    return result;
}

} // namespace BASS
