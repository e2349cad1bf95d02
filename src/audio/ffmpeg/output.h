#pragma once

#include <chrono>

namespace BASS {

class Mixer;

/// Something that asks the mixer for sound in real time. Destroying it stops its thread first.
/// Owner: OutputControl; made and destroyed on its thread.
class Output {
  public:
    Output() = default;
    virtual ~Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
};

} // namespace BASS
