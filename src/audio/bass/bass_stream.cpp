#include "audio/bass/bass_stream.h"

#include "audio/bass/bass_text.h"

namespace BASS {

TokenTable<BassStream>& bassStreams() {
    static TokenTable<BassStream> table;
    return table;
}

TokenTable<BassSync>& bassSyncs() {
    static TokenTable<BassSync> table;
    return table;
}

void BASS_CALL onBassDownload(const void* buffer, DWORD length, void* user) {
    const auto stream = bassStreams().find(user);
    if (stream == nullptr || stream->download == nullptr || stream->isCanceled)
        return;
    if (const CallbackGate::Pass pass(stream->gate); pass) {
        const std::lock_guard lock(stream->order);
        stream->download(buffer, length, stream->user);
    }
}

void passBassTitle(BassStream& stream, DWORD tagType, QWORD position) {
    const char* const tag = stream.bass->ChannelGetTags(stream.handle, tagType);
    if (tag == nullptr || stream.title == nullptr)
        return;
    const bool isList = tagType == BASS_TAG_OGG;
    if (const CallbackGate::Pass pass(stream.gate); pass) {
        const std::lock_guard lock(stream.order);
        stream.title({position, tagType, tag, tagLength(tag, isList)}, stream.user);
    }
}

void BASS_CALL onBassTitle(HSYNC /*sync*/, DWORD channel, DWORD /*data*/, void* user) {
    const auto stream = bassStreams().find(user);
    if (stream == nullptr || stream->handle != channel)
        return;
    const QWORD position = stream->bass->StreamGetFilePosition(channel, BASS_FILEPOS_CURRENT);
    const bool isIcy = stream->bass->ChannelGetTags(channel, BASS_TAG_META) != nullptr;
    passBassTitle(*stream, isIcy ? BASS_TAG_META : BASS_TAG_OGG, position);
}

void BASS_CALL onBassSync(HSYNC sync, DWORD channel, DWORD data, void* user) {
    const auto record = bassSyncs().find(user);
    if (record == nullptr)
        return;
    if (record->isOneTime)
        bassSyncs().remove(user);
    if (record->stream == nullptr) {
        record->proc(sync, channel, data, record->user);
        return;
    }
    if (const CallbackGate::Pass pass(record->stream->gate); pass)
        record->proc(sync, channel, data, record->user);
}

/// The library has freed a stream by itself.
void BASS_CALL onBassFreed(HSYNC /*sync*/, DWORD channel, DWORD /*data*/, void* user) {
    const auto stream = bassStreams().find(user);
    if (stream == nullptr || stream->handle != channel)
        return;
    bassSyncs().removeIf([channel](const BassSync& sync) { return sync.channel == channel; });
    bassStreams().remove(user);
}

} // namespace BASS
