#include "recording/station_options.h"

namespace BASS {

RecordMode stationRecordMode(RecordMode asked, const RecInfo& station) {
    if (asked != RecordMode::FromSettings || !station.isEnabled)
        return asked;
    switch (station.recMode) {
    case RecInfo::Mode::Splitting:
        return RecordMode::Split;
    case RecInfo::Mode::NoSplitting:
        return RecordMode::NoSplit;
    case RecInfo::Mode::FromSettings:
        break;
    }
    return asked;
}

RecordingOptions withStationOptions(RecordingOptions options, const RecInfo& station) {
    if (!station.isEnabled)
        return options;
    options.overwrite = options.overwrite || station.isOverwriting;
    if (station.splitDelaySecs != 0 && options.splitDelay.count() == 0)
        options.splitDelay = std::chrono::seconds(station.splitDelaySecs);
    if (station.hasOwnFormat) {
        QString& pattern =
            options.mode == RecordMode::NoSplit ? options.patternNoSplit : options.patternSplit;
        if (!station.recFolder.isEmpty())
            options.folder = station.recFolder;
        if (!station.recFormat.isEmpty())
            pattern = station.recFormat;
        if (!station.recDateFormat.isEmpty())
            options.dateFormat = station.recDateFormat;
    }
    if (station.hasOwnEncoding) {
        options.encoder = station.recType;
        options.encoderParams = station.recParams;
        options.isSameKept = station.isSameKept;
        CEncoderParams params(station.recType);
        params.parse(station.recParams);
        if (params.bitrate() > 0)
            options.encodingBitrate = params.bitrate() / 1000;
    }
    return options;
}

} // namespace BASS
