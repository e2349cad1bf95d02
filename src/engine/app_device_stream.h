#pragma once

#include "engine/app_stream.h"

/// The engine that also plays a recording device: the address "RecordingDevice" is a station of its
/// own. What a device gives has no bytes to keep as they come: its recordings are always encoded.
///
/// *Thread*, *Owner*, *Life*: as AppStream.
class AppDeviceStream final : public AppStream {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AppDeviceStream)

  public:
    using AppStream::AppStream;

    void startRecording(const BASS::RecordingOptions& options) override;
};
