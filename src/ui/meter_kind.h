#pragma once

/// What the player bar draws of the sound.
enum class MeterKind { None, Level, Spectrum };
