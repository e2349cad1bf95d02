#pragma once

#include <QVector>

// A spectrum as a few bars, as ears hear it. Pure, any thread.

constexpr int kSpectrumBands = 14; ///< about two thirds of an octave each

/// Amplitudes of evenly spaced frequencies (place n stands for n * stepHz, 1 is full scale) to bars
/// of 0 to 1 from 50 Hz to 16 kHz. A bar shows the loudest frequency in it, in decibels over a
/// range of 66, treble raised by 3 decibels an octave as music falls off. A step of 0: all bars are
/// 0.
QVector<double> spectrumBands(const QVector<float>& amplitudes, double stepHz);
