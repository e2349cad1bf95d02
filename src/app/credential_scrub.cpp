#include "app/credential_scrub.h"

#include <QRegularExpression>

namespace {
const QString& mark() {
    static const QString text = QStringLiteral("***");
    return text;
}

/// Most lines hold none of this: they are not put through the expressions.
bool mayHoldCredentials(const QString& line) {
    return line.contains(QLatin1Char('@')) || line.contains(QLatin1Char('=')) ||
           line.contains(QLatin1Char(':'));
}
} // namespace

QString scrubCredentials(const QString& line) {
    if (!mayHoldCredentials(line))
        return line;
    // RFC 3986, section 3.2.1: user info lies between "//" and "@" and holds no "/". Passwords
    // that people type unescaped may hold "@": the last one before the path ends it.
    static const QRegularExpression userInfo(QStringLiteral("(://)[^/\\s]*@"));
    // "user:password@host:port", as the proxy is written.
    static const QRegularExpression bareUserInfo(
        QStringLiteral("(^|[\\s=\"'(])[^\\s:@/=\"'(]+:[^\\s@/]+@(?=[\\w.\\[-])"));
    static const QRegularExpression header(
        QStringLiteral("((?:proxy-)?authorization\\s*[:=]\\s*)(?:\\w+\\s+)?[^\\s,;]+"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression named(
        QStringLiteral("((?:^|[^a-z])(?:proxy|last_?fm)?_?"
                       "(?:password|passwd|pwd|pass|auth_?token|access_?token|refresh_?token|token|"
                       "api_?key|api_?sig|session[ _]?key2?|sk|secret)"
                       "\"?\\s*[=:]\\s*)(?:\"[^\"]*\"|'[^']*'|[^\\s&,;\"']+)"),
        QRegularExpression::CaseInsensitiveOption);

    QString result = line;
    result.replace(userInfo, QStringLiteral("\\1") + mark() + QLatin1Char('@'));
    result.replace(bareUserInfo, QStringLiteral("\\1") + mark() + QLatin1Char('@'));
    result.replace(header, QStringLiteral("\\1") + mark());
    result.replace(named, QStringLiteral("\\1") + mark());
    return result;
}
