#include "app/list_file.h"

#include "base/atomic_file.h"
#include "base/log.h"

#include <QFile>
#include <QTextStream>

QStringList loadListFile(const QString& path) {
    QStringList entries;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return entries;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    QString line;
    while (stream.readLineInto(&line))
        if (!line.isEmpty())
            entries.append(line);
    return entries;
}

bool saveListFile(const QString& path, const QStringList& entries) {
    QString text;
    for (const QString& entry : entries)
        text += entry + QLatin1Char('\n');
    const Status written = replaceFile(path, text.toUtf8());
    if (!written)
        qCWarning(lcApp, "saveListFile: %ls", qUtf16Printable(written.error()));
    return written.isOk();
}
