#pragma once

#include <QString>

#include <functional>

class Player;
class QWidget;
class SoundController;
struct BoostControl;

// The main window's questions, and the dialogs that stand beside it. GUI thread; the window owns
// what is shown.

/// Waits for the answer; true: the recording is stopped and the program ends.
bool askToStopRecordingAndQuit(QWidget& window);
/// Dynamic boost for the recordings of this window. What it switches off is off for the recording
/// only: what the settings hold stays. All three outlive it.
BoostControl boostControl(QWidget& window, SoundController& sound, Player& player);
/// Shows the sound's dialog, or brings it to the front.
void showSoundDialog(QWidget& window, SoundController& sound);
void showAbout(QWidget& window);
