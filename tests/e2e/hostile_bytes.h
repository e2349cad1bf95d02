#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>

// What the rows of hostile stations are made of.

/// An answer's head, with "200 OK" in front and the empty line behind.
QByteArray head(const QList<QByteArray>& lines);
/// The head of a station of MP3.
QByteArray mp3Head(const QList<QByteArray>& more = {});
/// Three seconds of a tone in frames, each a different one by its number; MP3 of 64 kbit/s.
QByteArray mp3(int number = 1, int sampleRate = 44100, int channels = 2);
QByteArray adts(int number = 1, int sampleRate = 44100, int channels = 2);
constexpr double kToneSeconds = 3.0;
/// The audio with a title block behind every `metaint` bytes; `blocks`: the texts by the number
/// of the block, whole ("StreamTitle='...';").
QByteArray withBlocks(const QByteArray& audio, int metaint, const QList<QByteArray>& blocks);
/// A block's text for a title.
QByteArray titled(const QByteArray& title);
/// Bytes without any sense, always the same.
QByteArray noise(int count);
/// In chunks of HTTP/1.1, without the last one.
QByteArray chunked(const QByteArray& body, int size);
