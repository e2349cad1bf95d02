#include "engine/app_device_stream.h"

#include "engine/connect_plan.h"
#include "recording/c_encoder_params.h"

void AppDeviceStream::startRecording(const BASS::RecordingOptions& options) {
    BASS::RecordingOptions wanted = options;
    if (BASS::isRecordingDevice(station().playUrl())) {
        wanted.isSameKept = false;
        if (wanted.encoder == BASS::EncoderNone)
            wanted.encoder = BASS::EncoderFlac; // nothing is lost
    }
    AppStream::startRecording(wanted);
}
