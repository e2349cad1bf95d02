#include "net/q_http_ext.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

#include <memory>

namespace QT_EXT {
namespace {

constexpr std::chrono::seconds kHopTimeout{5};
constexpr std::chrono::milliseconds kCancelInterval{100};
constexpr int kMostHops = 10;

QNetworkRequest requestFor(const HttpRequest& wanted) {
    QNetworkRequest request(wanted.url);
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      wanted.userAgent.isEmpty() ? QHttpExt::builtInUserAgent() : wanted.userAgent);
    request.setRawHeader("Cache-Control", "no-cache");
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    return request;
}

bool isFollowed(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307;
}

/// Runs the reply until it is finished, canceled, too long or too late.
struct Exchange {
    QByteArray body;
    bool isCut = false;
    bool isCanceled = false;

    void run(QNetworkReply& reply, const HttpRequest& wanted) {
        QEventLoop loop;
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, &loop, [&] {
            if (wanted.isCanceled && wanted.isCanceled()) {
                isCanceled = true;
                reply.abort();
            }
        });
        QObject::connect(&reply, &QNetworkReply::readyRead, &loop, [&] {
            body += reply.read(wanted.mostBytes - body.size());
            if (body.size() >= wanted.mostBytes) {
                isCut = true;
                reply.abort();
            }
        });
        QObject::connect(&reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
        QTimer::singleShot(wanted.timeout, &loop, [&reply] { reply.abort(); });
        watch.start(kCancelInterval);
        if (!reply.isFinished())
            loop.exec();
    }
};

Result<QByteArray> get(QNetworkAccessManager& manager, const HttpRequest& wanted, int hops) {
    const std::unique_ptr<QNetworkReply> reply(manager.get(requestFor(wanted)));
    Exchange exchange;
    exchange.run(*reply, wanted);
    if (exchange.isCanceled)
        return Error{QCoreApplication::translate("QT_EXT::QHttpExt", "Canceled")};
    if (exchange.isCut)
        return exchange.body;
    if (reply->error() != QNetworkReply::NoError)
        return Error{reply->errorString()};
    exchange.body += reply->read(wanted.mostBytes - exchange.body.size());
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QUrl target = reply->url().resolved(
        reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl());
    if (!isFollowed(status) || target == wanted.url)
        return exchange.body;
    if (hops >= kMostHops)
        return Error{QCoreApplication::translate("QT_EXT::QHttpExt", "Too many redirects")};
    HttpRequest next = wanted;
    next.url = target;
    next.timeout = kHopTimeout;
    return get(manager, next, hops + 1);
}

} // namespace

Result<QByteArray> QHttpExt::getSync(const HttpRequest& request) {
    QNetworkAccessManager manager;
    return get(manager, request, 0);
}

QString QHttpExt::builtInUserAgent() {
    return QStringLiteral("Mozilla/5.0 (Windows NT 10.0; Win64; x64) AppleWebKit/537.36 "
                          "(KHTML, like Gecko) Chrome/109.0.0.0 Safari/537.36");
}

} // namespace QT_EXT
