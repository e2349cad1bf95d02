#include "audio/bass/bass_encoders.h"

#include "audio/bass/token_table.h"
#include "base/log.h"

#include <algorithm>
#include <chrono>

namespace BASS {

struct BassEncoder {
    BassEncoders* owner = nullptr;
    BassEncoders::Start start{};
    void* token = nullptr;
    std::atomic<HENCODE> handle{0};
    std::atomic<DWORD> channel{0};
    std::atomic<bool> isStopping{false};
    std::atomic<bool> isGone{false};
    std::atomic<bool> hasFailed{false};
    std::atomic<bool> hasSuccessor{false};

    std::mutex order; ///< one call of `proc` at a time; guards the next two
    QWORD delivered = 0;
    bool isLastCalled = false;

    // Under the owner's mutex.
    bool isEnded = false;
    std::weak_ptr<BassEncoder> predecessor; ///< until its cut is reached
};

namespace {

constexpr auto kLongestEnd = std::chrono::seconds(20);
constexpr auto kPause = std::chrono::milliseconds(20);
constexpr double kMsPerSecond = 1000.0;

TokenTable<BassEncoder>& encoders() {
    static TokenTable<BassEncoder> table;
    return table;
}

void BASS_CALL
onEncoded(HENCODE handle, DWORD /*channel*/, const void* buffer, DWORD length, void* user) {
    if (const auto encoder = encoders().find(user))
        encoder->owner->bytesCame(*encoder, handle, buffer, length);
}

void BASS_CALL onEncodedAt(
    HENCODE handle, DWORD /*channel*/, const void* buffer, DWORD length, QWORD offset, void* user) {
    if (const auto encoder = encoders().find(user))
        encoder->owner->bytesCameAt(*encoder, handle, buffer, length, offset);
}

void BASS_CALL onNotify(HENCODE /*handle*/, DWORD status, void* user) {
    const bool hasFailed = status == BASS_ENCODE_NOTIFY_ENCODER;
    if (!hasFailed && status != BASS_ENCODE_NOTIFY_FREE)
        return;
    if (const auto encoder = encoders().find(user))
        encoder->owner->isGone(encoder, hasFailed);
}

void BASS_CALL onCut(HSYNC /*sync*/, DWORD /*channel*/, DWORD /*data*/, void* user) {
    if (const auto encoder = encoders().find(user))
        encoder->owner->cutReached(*encoder);
}

} // namespace

BassEncoders::BassEncoders(const BassFunctions& bass) : m_bass(bass) {}

BassEncoders::~BassEncoders() {
    for (const Encoder& encoder : encoders().all()) {
        if (encoder->owner == this)
            stop(encoder->handle, true);
    }
}

BassEncoders::Encoder BassEncoders::find(HENCODE handle) const {
    return encoders()
        .findIf([this, handle](const BassEncoder& encoder) {
            return encoder.owner == this && encoder.handle == handle;
        })
        .second;
}

std::vector<BassEncoders::Encoder> BassEncoders::encodersOf(DWORD handle) const {
    std::vector<Encoder> result;
    for (const Encoder& encoder : encoders().all()) {
        const bool isMeant = encoder->handle == handle || encoder->channel == handle;
        if (handle != 0 && encoder->owner == this && isMeant)
            result.push_back(encoder);
    }
    return result;
}

HENCODE BassEncoders::start(const Start& start) {
    auto encoder = std::make_shared<BassEncoder>();
    encoder->owner = this;
    encoder->start = start;
    encoder->channel = start.channel;
    encoder->token = encoders().add(encoder);
    const HENCODE handle = callStart(start, encoder->token);
    if (handle == 0) {
        encoders().remove(encoder->token);
        return 0;
    }
    encoder->handle = handle;
    m_bass.EncodeSetNotify(handle, &onNotify, encoder->token);
    setOwnBassError(BASS_OK);
    return handle;
}

HENCODE BassEncoders::callStart(const Start& start, void* token) const {
    // a queue, so that neither a slow disk nor a stuck program holds up what is heard
    const DWORD flags = start.flags | BASS_UNICODE | BASS_ENCODE_QUEUE;
    const void* const text = start.text.c_str();
    switch (start.kind) {
    case Kind::Mp3:
        return m_bass.EncodeMp3Start(start.channel, text, flags, &onEncodedAt, token);
    case Kind::Flac:
        return m_bass.EncodeFlacStart(start.channel, text, flags, &onEncodedAt, token);
    case Kind::Ogg:
        return m_bass.EncodeOggStart(start.channel, text, flags, &onEncoded, token);
    case Kind::Program:
        return m_bass.EncodeStart(start.channel, text, flags, &onEncoded, token);
    }
    return 0;
}

DWORD BassEncoders::isActive(DWORD handle) const {
    const Encoder encoder = find(handle);
    if (encoder != nullptr && encoder->hasFailed)
        return BASS_ACTIVE_STOPPED;
    return m_bass.EncodeIsActive(handle);
}

bool BassEncoders::stop(DWORD handle, bool queue) {
    std::vector<Encoder> meant = encodersOf(handle);
    const auto isStopping = [](const Encoder& encoder) { return encoder->isStopping.load(); };
    meant.erase(std::remove_if(meant.begin(), meant.end(), isStopping), meant.end());
    if (meant.empty()) {
        setOwnBassError(BASS_ERROR_HANDLE);
        return false;
    }
    for (const Encoder& encoder : meant) {
        Encoder old;
        {
            const std::lock_guard lock(m_mutex);
            old = encoder->predecessor.lock();
            encoder->predecessor.reset();
        }
        if (old != nullptr)
            post(old, queue); // the cut that it waits for never comes
        post(encoder, queue);
    }
    setOwnBassError(BASS_OK);
    return true;
}

void BassEncoders::post(const Encoder& encoder, bool queue) {
    if (!encoder->isStopping.exchange(true))
        m_worker.post([this, encoder, queue] { finish(*encoder, queue); });
}

/// On the worker's thread.
void BassEncoders::finish(BassEncoder& encoder, bool queue) {
    m_bass.EncodeStopEx(encoder.handle, queue ? 1 : 0);
    waitUntilGone(encoder);
    {
        const std::lock_guard lock(encoder.order);
        encoder.isLastCalled = true;
        encoder.start.proc(encoder.handle, encoder.channel, nullptr, 0, encoder.start.user);
    }
    encoders().remove(encoder.token);
    const std::lock_guard lock(m_mutex);
    encoder.isEnded = true;
    m_ended.notify_all();
}

/// What is queued is encoded after the stop call has returned.
void BassEncoders::waitUntilGone(BassEncoder& encoder) {
    const auto last = std::chrono::steady_clock::now() + kLongestEnd;
    std::unique_lock lock(m_mutex);
    while (!encoder.isGone && std::chrono::steady_clock::now() < last) {
        lock.unlock();
        const DWORD state = m_bass.EncodeIsActive(encoder.handle);
        lock.lock();
        if (state == BASS_ACTIVE_STOPPED)
            return;
        m_ended.wait_for(lock, kPause, [&encoder] { return encoder.isGone.load(); });
    }
    if (!encoder.isGone)
        qCWarning(lcAudio, "encoder does not end handle=%u", encoder.handle.load());
}

void BassEncoders::endChannel(DWORD channel) {
    const std::vector<Encoder> meant = encodersOf(channel);
    if (meant.empty())
        return;
    stop(channel, true);
    std::unique_lock lock(m_mutex);
    for (const Encoder& encoder : meant)
        m_ended.wait(lock, [&encoder] { return encoder->isEnded; });
}

bool BassEncoders::setChannel(HENCODE handle, DWORD channel) {
    const Encoder encoder = find(handle);
    if (encoder == nullptr) {
        setOwnBassError(BASS_ERROR_HANDLE);
        return false;
    }
    if (m_bass.EncodeSetChannel(handle, channel) == 0)
        return false;
    encoder->channel = channel;
    return true;
}

// --- what the library hands out -----------------------------------------------------------------

void BassEncoders::bytesCame(BassEncoder& encoder, HENCODE handle, const void* data, DWORD size) {
    const std::lock_guard lock(encoder.order);
    if (encoder.isLastCalled || size == 0)
        return;
    encoder.delivered += size;
    encoder.start.proc(handle, encoder.channel, data, size, encoder.start.user);
}

void BassEncoders::bytesCameAt(
    BassEncoder& encoder, HENCODE handle, const void* data, DWORD size, QWORD offset) {
    {
        const std::lock_guard lock(encoder.order);
        if (encoder.isLastCalled)
            return;
        if (offset != encoder.delivered) {
            if (ENCODEREWRITEPROC* const rewrite = m_rewriteProc.load(); rewrite != nullptr)
                rewrite(handle, encoder.channel, data, size, offset, encoder.start.user);
            return;
        }
    }
    bytesCame(encoder, handle, data, size);
}

void BassEncoders::isGone(const Encoder& encoder, bool hasFailed) {
    {
        const std::lock_guard lock(m_mutex);
        if (hasFailed)
            encoder->hasFailed = true;
        else
            encoder->isGone = true;
        m_ended.notify_all();
    }
    post(encoder, false);
}

// --- cuts ---------------------------------------------------------------------------------------

HENCODE BassEncoders::cutAt(HENCODE old, DWORD delayMs, ENCODEPROC* proc, void* user) {
    const Encoder before = find(old);
    if (before == nullptr || before->isStopping) {
        setOwnBassError(BASS_ERROR_HANDLE);
        return 0;
    }
    if (before->hasSuccessor.exchange(true)) {
        setOwnBassError(BASS_ERROR_ALREADY);
        return 0;
    }
    Start next = before->start;
    next.channel = before->channel;
    next.flags |= BASS_ENCODE_PAUSE;
    next.proc = proc;
    next.user = user;
    const HENCODE handle = start(next);
    const Encoder after = find(handle);
    if (after == nullptr) {
        before->hasSuccessor = false;
        return 0;
    }
    {
        const std::lock_guard lock(m_mutex);
        after->predecessor = before;
    }
    if (delayMs == 0 || !setCutSync(*after, delayMs))
        cutReached(*after);
    setOwnBassError(BASS_OK);
    return handle;
}

bool BassEncoders::setCutSync(BassEncoder& next, DWORD delayMs) const {
    const DWORD channel = next.channel;
    const QWORD here = m_bass.ChannelGetPosition(channel, BASS_POS_BYTE | BASS_POS_DECODE);
    const QWORD delay = m_bass.ChannelSeconds2Bytes(channel, delayMs / kMsPerSecond);
    if (here == BassFunctions::kNoPosition || delay == BassFunctions::kNoPosition)
        return false;
    const DWORD type = BASS_SYNC_POS | BASS_SYNC_MIXTIME | BASS_SYNC_ONETIME;
    return m_bass.ChannelSetSync(channel, type, here + delay, &onCut, next.token) != 0;
}

/// Locked, the channel decodes nothing, so that no sample falls between the two or goes to both.
void BassEncoders::cutReached(BassEncoder& next) {
    Encoder old;
    {
        const std::lock_guard lock(m_mutex);
        old = next.predecessor.lock();
        next.predecessor.reset();
    }
    if (old == nullptr)
        return;
    const DWORD channel = next.channel;
    m_bass.ChannelLock(channel, 1);
    m_bass.EncodeSetPaused(old->handle, 1);
    m_bass.EncodeSetPaused(next.handle, 0);
    m_bass.ChannelLock(channel, 0);
    post(old, true);
}

} // namespace BASS
