#include <QCoreApplication>

#include <gtest/gtest.h>

/// main() of every test binary below the window: GoogleTest inside a Qt application without
/// display.
int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
