#pragma once

#include <QStringList>

/// Names of what sound can go to and come from, each without the system's default.
struct AudioDevices {
    QStringList outputs;
    QStringList inputs; ///< recording devices
};
