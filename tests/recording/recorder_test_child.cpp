#include "recording/stream_recorder.h"
#include "support/system.h"

#include <QCoreApplication>

#include <array>

/// Records what comes on its standard input into the folder that it is given, until it is killed.
int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    BASS::RecordingOptions options;
    options.folder = QCoreApplication::arguments().value(1);
    options.patternSplit = QStringLiteral("%track%");
    BASS::StreamRecorder recorder;
    recorder.start(options, BASS::songFromTrack(QStringLiteral("Killed")));
    recorder.connectionBegan();
    std::array<char, 4096> buffer{};
    for (;;) {
        const qint64 count = test_system::readStandardInput(buffer.data(), buffer.size());
        if (count <= 0)
            return 1;
        recorder.append(buffer.data(), count);
    }
}
