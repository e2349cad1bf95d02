#pragma once

#include "audio/audio_library.h"

#include <QString>

#include <atomic>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// A library that misbehaves as told: every create answers with what `onCreate` says, everything
/// else is remembered. Thread: as AudioLibrary where the engine uses it so; the fields are for the
/// test's thread.
class FakeLibrary : public BASS::AudioLibrary {
  public:
    using DWORD = BASS::DWORD;
    using QWORD = BASS::QWORD;

    struct Create {
        std::string function;
        QString url;
        BASS::DOWNLOADPROC* proc;
        void* user;
    };
    struct Slide {
        DWORD attribute;
        float value;
        DWORD time;
    };

    /// Answers a create call: the handle, or 0 with `error` set.
    std::function<BASS::HSTREAM(const Create&)> onCreate = [](const Create&) {
        return BASS::HSTREAM{0};
    };
    std::vector<Create> creates;
    std::vector<Slide> slides;
    std::vector<std::pair<DWORD, BASS::EffectSettings>> effects; ///< channel, what it was given
    std::vector<BASS::BASS_DEVICEINFO> devices;
    std::vector<int> initDevices;
    std::map<DWORD, DWORD> config;
    std::map<DWORD, float> attributes{{BASS::BASS_ATTRIB_VOL, 1.0F}};
    std::map<DWORD, QString> texts;
    std::vector<DWORD> freed;
    std::function<bool(int)> onInit = [](int) { return true; };
    std::function<bool(DWORD)> onSetDevice = [](DWORD) { return true; };
    std::function<DWORD(DWORD)> storeVolume = [](DWORD value) { return value; };
    std::atomic<int> error{0};
    std::atomic<bool> isCanceled{false};

    const char* Description() const override { return "fake"; }
    bool Init(int device, DWORD, DWORD) override {
        initDevices.push_back(device);
        return onInit(device);
    }
    bool Free() override { return true; }
    int ErrorGetCode() const override { return error; }
    bool SetDevice(DWORD device) override { return onSetDevice(device); }
    DWORD GetDevice() const override { return 1; }
    bool GetDeviceInfo(DWORD device, BASS::BASS_DEVICEINFO* info) override {
        if (device >= devices.size())
            return false;
        *info = devices[device];
        return true;
    }
    bool SetConfig(DWORD option, DWORD value) override {
        config[option] = option == BASS::BASS_CONFIG_GVOL_STREAM ? storeVolume(value) : value;
        return true;
    }
    DWORD GetConfig(DWORD option) const override {
        const auto found = config.find(option);
        return found == config.end() ? 0 : found->second;
    }
    bool SetConfigPtr(DWORD option, const void* value) override {
        texts[option & ~BASS::BASS_UNICODE] =
            value == nullptr ? QString() : QString::fromUtf16(static_cast<const char16_t*>(value));
        return true;
    }
    BASS::HPLUGIN PluginLoad(const char*) override { return 1; }

    BASS::HSTREAM
    StreamCreateURL(const void* u, DWORD, DWORD, BASS::DOWNLOADPROC* p, void* user) override {
        return create("generic", u, p, user);
    }
    BASS::HSTREAM
    MP4_StreamCreateURL(const void* u, DWORD, DWORD, BASS::DOWNLOADPROC* p, void* user) override {
        return create("mp4", u, p, user);
    }
    BASS::HSTREAM
    FLAC_StreamCreateURL(const void* u, DWORD, DWORD, BASS::DOWNLOADPROC* p, void* user) override {
        return create("flac", u, p, user);
    }
    BASS::HSTREAM
    HLS_StreamCreateURL(const void* u, DWORD, DWORD, BASS::DOWNLOADPROC* p, void* user) override {
        return create("hls", u, p, user);
    }
    BASS::HSTREAM
    OPUS_StreamCreateURL(const void* u, DWORD, DWORD, BASS::DOWNLOADPROC* p, void* user) override {
        return create("opus", u, p, user);
    }
    BASS::HSTREAM
    WMA_StreamCreateURL(const void* u, DWORD, DWORD, BASS::DOWNLOADPROC* p, void* user) override {
        return create("wma", u, p, user);
    }
    bool StreamCancel(void*) override {
        isCanceled = true;
        return true;
    }
    void SetTitleProc(BASS::TITLEPROC*) override {}
    BASS::HSTREAM StreamCreateFile(const void* f, DWORD) override {
        return create("file", f, nullptr, nullptr);
    }
    BASS::HSTREAM AAC_StreamCreateFile(const void* f, DWORD) override {
        return create("aac file", f, nullptr, nullptr);
    }
    BASS::HSTREAM WMA_StreamCreateFile(const void* f, DWORD) override {
        return create("wma file", f, nullptr, nullptr);
    }
    BASS::HSTREAM OPUS_StreamCreateFile(const void* f, DWORD) override {
        return create("opus file", f, nullptr, nullptr);
    }
    BASS::HSTREAM FLAC_StreamCreateFile(const void* f, DWORD) override {
        return create("flac file", f, nullptr, nullptr);
    }
    BASS::HSTREAM MP4_StreamCreateFile(const void* f, DWORD) override {
        return create("mp4 file", f, nullptr, nullptr);
    }
    BASS::HSTREAM HLS_StreamCreateFile(const void* f, DWORD) override {
        return create("hls file", f, nullptr, nullptr);
    }
    BASS::HSTREAM StreamCreateRecordingDevice(int device, DWORD) override {
        return create("recording device", QString::number(device).utf16(), nullptr, nullptr);
    }
    bool RecordGetDeviceInfo(DWORD device, BASS::BASS_DEVICEINFO* info) override {
        return GetDeviceInfo(device, info);
    }
    bool StreamFree(BASS::HSTREAM handle) override {
        freed.push_back(handle);
        return true;
    }
    QWORD StreamGetFilePosition(BASS::HSTREAM, DWORD) override { return ~QWORD{0}; }

    bool ChannelPlay(DWORD, bool) override { return true; }
    bool ChannelPause(DWORD) override { return true; }
    bool ChannelStop(DWORD) override { return true; }
    DWORD ChannelIsActive(DWORD) override { return BASS::BASS_ACTIVE_PLAYING; }
    bool ChannelGetInfo(DWORD, BASS::BASS_CHANNELINFO*) override { return false; }
    const char* ChannelGetTags(DWORD, DWORD) override { return nullptr; }
    bool ChannelSetAttribute(DWORD, DWORD attribute, float value) override {
        attributes[attribute] = value;
        return true;
    }
    bool ChannelGetAttribute(DWORD, DWORD attribute, float* value) override {
        *value = attributes[attribute];
        return true;
    }
    bool ChannelSetEffects(DWORD handle, const BASS::EffectSettings& settings) override {
        effects.emplace_back(handle, settings);
        return true;
    }
    DWORD ChannelFlags(DWORD, DWORD, DWORD) override { return 0; }
    bool ChannelSlideAttribute(DWORD, DWORD attribute, float value, DWORD time) override {
        slides.push_back({attribute, value, time});
        return true;
    }
    bool ChannelIsSliding(DWORD, DWORD) override { return false; }
    BASS::HSYNC ChannelSetSync(DWORD, DWORD, QWORD, BASS::SYNCPROC*, void*) override { return 1; }
    bool ChannelRemoveSync(DWORD, BASS::HSYNC) override { return true; }
    QWORD ChannelGetPosition(DWORD, DWORD) override { return 0; }
    bool ChannelSetPosition(DWORD, QWORD, DWORD) override { return false; }
    QWORD ChannelGetLength(DWORD, DWORD) override { return ~QWORD{0}; }
    double ChannelBytes2Seconds(DWORD, QWORD) override { return 0.0; }
    QWORD ChannelSeconds2Bytes(DWORD, double) override { return 0; }
    DWORD ChannelGetLevel(DWORD) override { return 0; }
    double ChannelGetSpectrum(DWORD, float*) override { return 0.0; }

    struct Encode {
        std::string function;
        DWORD channel;
        QString options;
        DWORD flags;
        BASS::ENCODEPROC* proc;
        void* user;
    };
    /// Answers a start of an encoder: the handle, or 0 with `error` set.
    std::function<BASS::HENCODE(const Encode&)> onEncode = [](const Encode&) {
        return BASS::HENCODE{0};
    };
    std::vector<Encode> encodes;
    std::vector<std::pair<DWORD, bool>> stoppedEncoders; ///< handle, queue
    std::atomic<DWORD> encoderState{BASS::BASS_ACTIVE_PLAYING};
    BASS::ENCODEREWRITEPROC* rewriteProc = nullptr;

    BASS::HENCODE
    Encode_MP3_Start(DWORD h, const void* o, DWORD f, BASS::ENCODEPROC* p, void* user) override {
        return encode({"mp3", h, text(o), f, p, user});
    }
    BASS::HENCODE
    Encode_OGG_Start(DWORD h, const void* o, DWORD f, BASS::ENCODEPROC* p, void* user) override {
        return encode({"ogg", h, text(o), f, p, user});
    }
    BASS::HENCODE
    Encode_FLAC_Start(DWORD h, const void* o, DWORD f, BASS::ENCODEPROC* p, void* user) override {
        return encode({"flac", h, text(o), f, p, user});
    }
    BASS::HENCODE
    Encode_AAC_Start(DWORD h, const void* o, DWORD f, BASS::ENCODEPROC* p, void* user) override {
        return encode({"aac", h, text(o), f, p, user});
    }
    BASS::HENCODE
    Encode_WMA_Start(DWORD h, const void* o, DWORD f, BASS::ENCODEPROC* p, void* user) override {
        return encode({"wma", h, text(o), f, p, user});
    }
    BASS::HENCODE
    Encode_Start(DWORD h, const void* o, DWORD f, BASS::ENCODEPROC* p, void* user) override {
        return encode({"external", h, text(o), f, p, user});
    }
    DWORD Encode_IsActive(DWORD) override { return encoderState; }
    bool Encode_SetPaused(BASS::HENCODE, bool) override { return true; }
    bool Encode_StopEx(DWORD handle, bool queue) override {
        stoppedEncoders.emplace_back(handle, queue);
        return true;
    }
    bool Encode_SetChannel(BASS::HENCODE, DWORD) override { return true; }
    BASS::HENCODE
    Encode_CutAt(BASS::HENCODE old, QWORD, DWORD, BASS::ENCODEPROC* p, void* user) override {
        return encode({"cut", old, {}, 0, p, user});
    }
    void SetEncodeRewriteProc(BASS::ENCODEREWRITEPROC* proc) override { rewriteProc = proc; }
    const DWORD* WMA_EncodeGetRates(DWORD, DWORD, DWORD) override {
        static constexpr DWORD kRates[] = {64000, 128000, 0};
        return kRates;
    }
    BASS::HWMENCODE WMA_EncodeOpenFile(DWORD, DWORD, DWORD, DWORD, const void*) override {
        return 0;
    }
    bool WMA_EncodeWrite(BASS::HWMENCODE, const void*, DWORD) override { return false; }
    bool WMA_EncodeClose(BASS::HWMENCODE) override { return true; }

  private:
    static QString text(const void* options) {
        return QString::fromUtf16(static_cast<const char16_t*>(options));
    }
    BASS::HENCODE encode(const Encode& start) {
        encodes.push_back(start);
        return onEncode(start);
    }
    BASS::HSTREAM
    create(const char* function, const void* url, BASS::DOWNLOADPROC* proc, void* user) {
        creates.push_back(
            {function, QString::fromUtf16(static_cast<const char16_t*>(url)), proc, user});
        return onCreate(creates.back());
    }
};
