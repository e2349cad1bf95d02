#include "base/log.h"

Q_LOGGING_CATEGORY(lcBase, "wavelark.base")
Q_LOGGING_CATEGORY(lcAudio, "wavelark.audio")
Q_LOGGING_CATEGORY(lcPlatform, "wavelark.platform")
Q_LOGGING_CATEGORY(lcApp, "wavelark.app")
Q_LOGGING_CATEGORY(lcStations, "wavelark.stations")
Q_LOGGING_CATEGORY(lcRecording, "wavelark.recording")
Q_LOGGING_CATEGORY(lcEngine, "wavelark.engine")
Q_LOGGING_CATEGORY(lcUi, "wavelark.ui")
