#include "ui/controllers/address_input.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QUrl>

namespace {

QString unwrapped(QString text) {
    static const QLatin1String kPairs[] = {
        QLatin1String("\"\""), QLatin1String("''"), QLatin1String("<>")};
    text = text.trimmed();
    for (const QLatin1String& pair : kPairs) {
        if (text.size() > 1 && text.front() == pair.front() && text.back() == pair.back()) {
            return text.mid(1, text.size() - 2).trimmed();
        }
    }
    return text;
}

/// The line with the address: the first with "://" (behind "File1=" in a playlist), else the first.
QString addressLine(const QString& input) {
    static const QRegularExpression kKey(QStringLiteral("^\\s*File\\d+\\s*=\\s*"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QStringList lines =
        input.split(QRegularExpression(QStringLiteral("[\\r\\n]+")), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        if (line.contains(QLatin1String("://")) && !line.startsWith(QLatin1Char('#'))) {
            return unwrapped(QString(line).remove(kKey));
        }
    }
    for (const QString& line : lines) {
        if (!line.trimmed().isEmpty()) {
            return unwrapped(line);
        }
    }
    return {};
}

bool isFilePath(const QString& text) {
    static const QRegularExpression kDrive(QStringLiteral("^[A-Za-z]:[\\\\/]"));
    return text.startsWith(QLatin1Char('/')) || text.startsWith(QLatin1String("\\\\")) ||
           kDrive.match(text).hasMatch();
}

/// host, host:port, address in brackets, each with or without a path. A single word needs a port or
/// a path, so that a mistyped word is not looked up.
bool isHost(const QString& text) {
    static const QRegularExpression kHost(
        QStringLiteral("^(?:[^\\s/:?#@\\[\\]]+\\.[^\\s/:?#@\\[\\]]+|localhost|\\[[0-9A-Fa-f:.]+\\]|"
                       "[^\\s/:?#@.\\[\\]]+(?=:\\d))(?::\\d{1,5})?(?:[/?#].*)?$"));
    return kHost.match(text).hasMatch();
}

Error notAnAddress(const QString& text) {
    return Error{
        QCoreApplication::translate("AddressInput",
                                    "“%1” is not the address of a station. An address looks like "
                                    "http://radio.example:8000/stream.")
            .arg(text.left(80))};
}

} // namespace

Result<QString> addressFromInput(const QString& input) {
    QString address = addressLine(input);
    if (address.isEmpty()) {
        return Error{
            QCoreApplication::translate("AddressInput",
                                        "Type or paste the address of a station first, for example "
                                        "http://radio.example:8000/stream.")};
    }
    if (isFilePath(address)) {
        return address;
    }
    if (!address.contains(QLatin1String("://"))) {
        if (!isHost(address)) {
            return notAnAddress(address);
        }
        address.prepend(QLatin1String("http://"));
    }
    const QUrl url(address, QUrl::TolerantMode);
    const bool isFile = url.scheme() == QLatin1String("file");
    if (!url.isValid() || url.scheme().isEmpty() || (url.host().isEmpty() && !isFile)) {
        return notAnAddress(address);
    }
    return address;
}
