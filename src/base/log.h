#pragma once

#include <QLoggingCategory>

// One category per folder; values are written as name=value.
Q_DECLARE_LOGGING_CATEGORY(lcBase)
Q_DECLARE_LOGGING_CATEGORY(lcAudio)
Q_DECLARE_LOGGING_CATEGORY(lcPlatform)
Q_DECLARE_LOGGING_CATEGORY(lcApp)
Q_DECLARE_LOGGING_CATEGORY(lcStations)
Q_DECLARE_LOGGING_CATEGORY(lcRecording)
Q_DECLARE_LOGGING_CATEGORY(lcEngine)
Q_DECLARE_LOGGING_CATEGORY(lcUi)
