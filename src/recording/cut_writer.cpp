#include "recording/cut_writer.h"

#include "recording/flac_cut_writer.h"
#include "recording/m4a_cut_writer.h"
#include "recording/mp3_cut_writer.h"
#include "recording/ogg_cut_writer.h"
#include "recording/plain_cut_writer.h"

namespace BASS {

std::unique_ptr<CutWriter> makeCutWriter(ByteSink& sink, CutStart start) {
    if (start.format == StreamFormat::Mpeg)
        return std::make_unique<Mp3CutWriter>(sink, start.before, start.isMp3ByteExact);
    if (start.format == StreamFormat::Ogg)
        return std::make_unique<OggCutWriter>(sink, start.before, start.serial);
    if (start.format == StreamFormat::Flac)
        return std::make_unique<FlacCutWriter>(sink);
    if (start.format == StreamFormat::Adts && start.isM4a)
        return std::make_unique<M4aCutWriter>(sink, start.before);
    return std::make_unique<PlainCutWriter>(sink);
}

} // namespace BASS
