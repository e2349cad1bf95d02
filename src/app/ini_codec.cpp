#include "app/ini_codec.h"

#include <QCoreApplication>
#include <QDir>
#include <QList>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextCodec>

#include <algorithm>

namespace {
constexpr int kLargestFile = 16 * 1024 * 1024; ///< bytes; a real one has some thousand

bool hasControlCharacters(const QByteArray& bytes) {
    return std::any_of(bytes.begin(), bytes.end(), [](char c) {
        return (c >= 0 && c < ' ' && c != '\t' && c != '\r' && c != '\n') || c == '\x7f';
    });
}

bool hasOpenQuote(const QByteArray& line) {
    bool isOpen = false;
    for (int i = 0; i < line.size(); ++i) {
        if (line[i] == '\\')
            ++i;
        else if (line[i] == '"')
            isOpen = !isOpen;
    }
    return isOpen;
}

bool isGoodLine(const QByteArray& untrimmed) {
    const QByteArray line = untrimmed.trimmed();
    if (line.isEmpty() || line.startsWith(';') || line.startsWith('#'))
        return true;
    if (line.startsWith('['))
        return line.endsWith(']');
    return line.indexOf('=') > 0 && !hasOpenQuote(line);
}

QList<QByteArray> lines(const QByteArray& bytes) {
    QByteArray text = bytes;
    if (text.startsWith("\xef\xbb\xbf"))
        text.remove(0, 3);
    text.replace("\r\n", "\n").replace('\r', '\n');
    return text.split('\n');
}

/// QSettings escapes everything beyond ASCII when it writes; only a person's editor leaves UTF-8.
bool isForeignUtf8(const QByteArray& bytes) {
    const bool isAscii = std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= 0; });
    if (isAscii)
        return false;
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

/// A file of its own for one pass through QSettings.
class Scratch {
  public:
    explicit Scratch(const QByteArray& bytes) {
        QFile file(path());
        m_isReady =
            m_dir.isValid() && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }
    [[nodiscard]] bool isReady() const { return m_isReady; }
    [[nodiscard]] QString path() const { return m_dir.filePath(QStringLiteral("settings.ini")); }

  private:
    QTemporaryDir m_dir; // readable by the user alone, since a proxy's password passes through
    bool m_isReady = false;
};

Error scratchError() {
    return Error{QCoreApplication::translate("Settings", "Cannot use the folder %1")
                     .arg(QDir::toNativeSeparators(QDir::tempPath()))};
}
} // namespace

IniHealth checkIni(const QByteArray& bytes) {
    if (bytes.size() > kLargestFile || hasControlCharacters(bytes))
        return IniHealth::Garbage;
    const QList<QByteArray> all = lines(bytes);
    return std::all_of(all.begin(), all.end(), isGoodLine) ? IniHealth::Good : IniHealth::Faulty;
}

QByteArray goodIniLines(const QByteArray& bytes) {
    QByteArray result;
    for (const QByteArray& line : lines(bytes))
        if (isGoodLine(line))
            result += line + '\n';
    return result;
}

Result<QVariantMap> parseIni(const QByteArray& bytes) {
    QVariantMap values;
    if (bytes.isEmpty())
        return values;
    const Scratch scratch(bytes);
    if (!scratch.isReady())
        return scratchError();
    QSettings settings(scratch.path(), QSettings::IniFormat);
    if (isForeignUtf8(bytes))
        settings.setIniCodec("UTF-8");
    const QStringList keys = settings.allKeys();
    for (const QString& key : keys)
        values.insert(key, settings.value(key));
    return values;
}

Result<QByteArray> changeIni(const QByteArray& bytes, const QVariantMap& changes) {
    const Scratch scratch(bytes);
    if (!scratch.isReady())
        return scratchError();
    {
        QSettings settings(scratch.path(), QSettings::IniFormat);
        if (isForeignUtf8(bytes))
            settings.setIniCodec("UTF-8");
        for (auto it = changes.begin(); it != changes.end(); ++it) {
            if (it.value().isValid())
                settings.setValue(it.key(), it.value());
            else
                settings.remove(it.key());
        }
        settings.sync();
        if (settings.status() != QSettings::NoError)
            return scratchError();
    }
    QFile file(scratch.path());
    if (!file.open(QIODevice::ReadOnly))
        return scratchError();
    return file.readAll();
}
