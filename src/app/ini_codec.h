#pragma once

#include "base/result.h"

#include <QVariantMap>

/// What the bytes of a settings file are worth.
enum class IniHealth {
    Good,
    Faulty,  ///< some lines are no settings; the others can be rescued
    Garbage, ///< nothing to rescue
};

/// Pure. The format is the one of QSettings' INI files (QSettings::IniFormat).
IniHealth checkIni(const QByteArray& bytes);

/// The lines of a faulty file that can be rescued. Pure.
QByteArray goodIniLines(const QByteArray& bytes);

/// Key ("Group/Key" outside the group General) -> value. Goes through a scratch file, since
/// QSettings reads files only. Any thread.
Result<QVariantMap> parseIni(const QByteArray& bytes);

/// The bytes with the changes applied; an invalid variant removes its key. Keys that the changes do
/// not name stay as they are. Any thread; scratch file.
Result<QByteArray> changeIni(const QByteArray& bytes, const QVariantMap& changes);
