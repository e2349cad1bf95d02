#include "ui/theme/icons.h"
#include "ui/theme/wavelark_style.h"

#include <QApplication>
#include <QLocale>

#include <gtest/gtest.h>

/// What Qt itself keeps to the end of a process: the screen of the offscreen platform, and the
/// animation of a text field's clear button.
extern "C" const char* __lsan_default_suppressions();  // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier)
    return "leak:libqoffscreen.so\nleak:QScreen::QScreen\n"
           "leak:QPropertyAnimation::QPropertyAnimation\n";
}

/// Qt is not built for the thread sanitizer, which therefore misses that the function handed to
/// another thread's event loop is counted atomically.
extern "C" const char* __tsan_default_suppressions();  // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __tsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier)
    return "race:QMetaObject::invokeMethodImpl\n";
}

/// main() of the tests with windows: offscreen unless a person asks for another platform.
int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QLocale::setDefault(QLocale::c());
    QApplication app(argc, argv);
    registerResources();
    WavelarkStyle::install(ThemeChoice::Light);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
