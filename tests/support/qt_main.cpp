#include <QCoreApplication>

#include <gtest/gtest.h>

/// Qt and GLib are not built for the thread sanitizer, which therefore does not see that the
/// counters of Qt's shared strings and lists order what several threads do with them: what Qt
/// itself copies and frees is left out, our own accesses are not. Nor does it see that what a
/// posted event or a queued function carries was written before it is delivered: reports whose
/// writer is in the middle of posting are left out, and that a thread's object is deleted when it
/// has ended.
extern "C" const char* __tsan_default_suppressions();  // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __tsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier)
    return "called_from_lib:libQt5Core.so.5\n"
           "called_from_lib:libglib-2.0.so.0\n"
           "race:libQt5DBus.so.5\n"
           "race:libQt5Network.so.5\n"
           "race:invokeMethod<\n"
           "race:BASS::BassQt::Notify\n"
           "race:AppStream::postSplit\n"
           "race:BASS::QtBassConnectThread::~QtBassConnectThread\n"
           "race:test_station.cpp\n";
}

/// main() of every test binary below the window: GoogleTest inside a Qt application without
/// display.
int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
