#pragma once

#include "stations/song.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace BASS {

/// The code page that stations of a country use when their titles are not UTF-8; empty: none known.
/// The country's text is searched case-sensitively.
QByteArray codePageForCountry(const QString& country);

/// Strict test as the titles' decoder needs it: encoded surrogates and sequences that run over the
/// end fail. Lead bytes that no encoder makes (0xC0, 0xF8 and up) are judged by their bit pattern
/// alone.
bool isUtf8(const QByteArray& bytes);

/// A text of the outside world: UTF-8 where it is valid, else the code page, else the system's
/// 8-bit text; where that is UTF-8 itself, Windows-1252.
QString decodeText(const QByteArray& bytes, const QByteArray& codePage);

/// Replaces at most 20 decimal references "&#233;" by their characters.
QString resolveCharacterReferences(const QString& text);

/// One ICY title block. Nothing for a null block. Pure; any thread; the process's locale is not
/// touched.
std::optional<Song> decodeIcyBlock(const QByteArray& block, const QByteArray& codePage);

/// The song told by a comment list ("ARTIST=..." texts, each zero-terminated, ended by an empty
/// one).
std::optional<Song> decodeCommentList(const char* list);

} // namespace BASS
