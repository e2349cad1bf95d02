#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>

namespace QT_EXT {

/// What a synchronous exchange is asked for. Plain values.
struct HttpRequest {
    QUrl url;
    std::chrono::seconds timeout{10}; ///< for the whole exchange
    QString userAgent;                ///< empty: the built-in one
    qint64 mostBytes = 1024 * 1024;   ///< the body is cut there; what came before is the answer
    std::function<bool()> isCanceled; ///< asked ten times a second; may be empty
};

/// The program's HTTP exchanges outside the audio streams.
///
/// *Thread*: any thread without an event loop of its own to wait for: the call runs a local one.
/// *Errors*: a text for the user; never contains user name or password of the address.
class QHttpExt {
  public:
    /// GET. Follows 301, 302, 303 and 307, each hop within 5 seconds; 308 is delivered as it
    /// stands, deliberately. At most ten hops.
    [[nodiscard]] static Result<QByteArray> getSync(const HttpRequest& request);
    /// The agent that is told where nothing else is set.
    [[nodiscard]] static QString builtInUserAgent();
};

} // namespace QT_EXT
