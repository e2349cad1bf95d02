#include "ui/theme/icons.h"
#include "ui/theme/wavelark_style.h"

#include <QApplication>
#include <QLocale>

#include <gtest/gtest.h>

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
