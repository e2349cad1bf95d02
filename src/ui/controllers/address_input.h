#pragma once

#include "base/result.h"

#include <QString>

/// The address to play from what a person typed or pasted: blanks, quotes and angle brackets around
/// it are removed, from several lines (a pasted playlist) the first address is taken, and a host
/// without a scheme gets "http://". Absolute paths of files stay as they are. The error says what
/// is expected. Pure.
Result<QString> addressFromInput(const QString& input);
