#pragma once

#include "recording/stream_parser.h"

#include <QString>

#include <optional>

namespace BASS {

/// What the bytes are, by magic numbers or three chained frame headers; nothing: more are needed.
/// `isEnd`: there will be no more. Unknown comes after 64 KiB at the latest.
std::optional<StreamFormat> detectFormat(const QByteArray& bytes, bool isEnd);

/// The parser for a connection whose first byte has the given position.
std::unique_ptr<StreamParser> makeStreamParser(StreamFormat format, qint64 position);

/// Without a dot. `frame`: any frame of the stream (Ogg streams differ).
QString streamExtension(StreamFormat format, const AudioFrame& frame);

} // namespace BASS
