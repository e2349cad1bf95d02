#pragma once

#include "audio/bass/bass_function.h"

// The closed library's interface as its public documentation describes it: version 2.4, add-ons of
// the same time. Truth values are 32-bit integers, texts UTF-16 with BASS_UNICODE.

namespace BASS {

/// The highest 16 bits of the version that these declarations are for.
constexpr DWORD kBassApiVersion = 0x0204;

// What only this provider speaks of.
constexpr DWORD BASS_POS_DECODE = 0x10000000;      ///< position of what is decoded, not heard
constexpr DWORD BASS_SYNC_POS = 0;                 ///< param: bytes
constexpr DWORD BASS_SYNC_MIXTIME = 0x40000000;    ///< when it is decoded, on that thread
constexpr DWORD BASS_ENCODE_QUEUE = 0x200;         ///< a thread of its own feeds the encoder
constexpr DWORD BASS_ENCODE_NOTIFY_ENCODER = 1;    ///< the encoder has died
constexpr DWORD BASS_ENCODE_NOTIFY_FREE = 0x10002; ///< the encoder is gone
constexpr DWORD BASS_ORIGRES_BITS = 0xFFFF;        ///< of origres; above it lie flags

/// As the closed library fills it in.
struct BassChannelInfo {
    DWORD freq;
    DWORD chans;
    DWORD flags;
    DWORD ctype;
    DWORD origres;
    HPLUGIN plugin;
    DWORD sample;
    const char* filename;
};

using BassDownloadProc = void(BASS_CALL*)(const void* buffer, DWORD length, void* user);
/// buffer: floats with BASS_CONFIG_FLOATDSP; length: bytes.
using BassDspProc =
    void(BASS_CALL*)(DWORD dsp, DWORD channel, void* buffer, DWORD length, void* user);
using BassSyncProc = void(BASS_CALL*)(HSYNC sync, DWORD channel, DWORD data, void* user);
using BassEncodeProc =
    void(BASS_CALL*)(HENCODE, DWORD channel, const void* buffer, DWORD length, void* user);
/// offset: where in the file the bytes belong.
using BassEncodeProcEx = void(BASS_CALL*)(
    HENCODE, DWORD channel, const void* buffer, DWORD length, QWORD offset, void* user);
using BassEncodeNotifyProc = void(BASS_CALL*)(HENCODE, DWORD status, void* user);

/// Every function that is called, one row each. Owner: BassLibrary.
struct BassFunctions {
    std::vector<BassFunctionEntry*> table;

    template <class Signature>
    using F = BassFunction<Signature>;
    using Url = DWORD(const void* url, DWORD offset, DWORD flags, BassDownloadProc, void* user);
    using HlsUrl = DWORD(const void* url, DWORD flags, BassDownloadProc, void* user);
    /// inMemory: 0; offset and length: 0 for the whole file.
    using File = DWORD(int inMemory, const void* file, QWORD offset, QWORD length, DWORD flags);
    using Start = DWORD(DWORD, const void* text, DWORD flags, BassEncodeProc, void* user);
    using StartEx = DWORD(DWORD, const void* text, DWORD flags, BassEncodeProcEx, void* user);
    static constexpr auto kNeeded = BassNeed::Required;
    static constexpr auto kOptional = BassNeed::Optional;
    static constexpr QWORD kNoPosition = ~QWORD{0};

    // --- session
    F<DWORD()> GetVersion{table, BassFile::Core, "BASS_GetVersion", kNeeded};
    F<int()> ErrorGetCode{table, BassFile::Core, "BASS_ErrorGetCode", kNeeded};
    F<int(int device, DWORD freq, DWORD flags, void* window, const void* driver)> Init{
        table, BassFile::Core, "BASS_Init", kNeeded};
    F<int()> Free{table, BassFile::Core, "BASS_Free", kNeeded};
    F<int(DWORD)> SetDevice{table, BassFile::Core, "BASS_SetDevice", kNeeded};
    F<DWORD()> GetDevice{table, BassFile::Core, "BASS_GetDevice", kNeeded, ~DWORD{0}};
    F<int(DWORD, BASS_DEVICEINFO*)> GetDeviceInfo{
        table, BassFile::Core, "BASS_GetDeviceInfo", kNeeded};
    F<int(DWORD, DWORD)> SetConfig{table, BassFile::Core, "BASS_SetConfig", kNeeded};
    F<DWORD(DWORD)> GetConfig{table, BassFile::Core, "BASS_GetConfig", kNeeded, ~DWORD{0}};
    F<int(DWORD, const void*)> SetConfigPtr{table, BassFile::Core, "BASS_SetConfigPtr", kNeeded};
    F<DWORD(const void* file, DWORD flags)> PluginLoad{
        table, BassFile::Core, "BASS_PluginLoad", kNeeded};

    // --- streams
    F<Url> StreamCreateURL{table, BassFile::Core, "BASS_StreamCreateURL", kNeeded};
    F<File> StreamCreateFile{table, BassFile::Core, "BASS_StreamCreateFile", kNeeded};
    F<int(DWORD)> StreamFree{table, BassFile::Core, "BASS_StreamFree", kNeeded};
    F<QWORD(DWORD, DWORD mode)> StreamGetFilePosition{
        table, BassFile::Core, "BASS_StreamGetFilePosition", kNeeded, kNoPosition};
    /// Later versions alone have it.
    F<int(void* user)> StreamCancel{table, BassFile::Core, "BASS_StreamCancel"};
    F<Url> Mp4Url{table, BassFile::Aac, "BASS_MP4_StreamCreateURL"};
    F<Url> AacUrl{table, BassFile::Aac, "BASS_AAC_StreamCreateURL"};
    F<File> Mp4File{table, BassFile::Aac, "BASS_MP4_StreamCreateFile"};
    F<File> AacFile{table, BassFile::Aac, "BASS_AAC_StreamCreateFile"};
    F<Url> FlacUrl{table, BassFile::Flac, "BASS_FLAC_StreamCreateURL"};
    F<File> FlacFile{table, BassFile::Flac, "BASS_FLAC_StreamCreateFile"};
    F<HlsUrl> HlsUrlStream{table, BassFile::Hls, "BASS_HLS_StreamCreateURL"};
    F<File> HlsFile{table, BassFile::Hls, "BASS_HLS_StreamCreateFile"};
    F<Url> OpusUrl{table, BassFile::Opus, "BASS_OPUS_StreamCreateURL"};
    F<File> OpusFile{table, BassFile::Opus, "BASS_OPUS_StreamCreateFile"};
    F<Url> WmaUrl{table, BassFile::Wma, "BASS_WMA_StreamCreateURL"};
    F<File> WmaFile{table, BassFile::Wma, "BASS_WMA_StreamCreateFile"};

    // --- channels
    F<int(DWORD, int restart)> ChannelPlay{table, BassFile::Core, "BASS_ChannelPlay", kNeeded};
    F<int(DWORD)> ChannelPause{table, BassFile::Core, "BASS_ChannelPause", kNeeded};
    F<int(DWORD)> ChannelStop{table, BassFile::Core, "BASS_ChannelStop", kNeeded};
    F<DWORD(DWORD)> ChannelIsActive{table, BassFile::Core, "BASS_ChannelIsActive", kNeeded};
    F<int(DWORD, BassChannelInfo*)> ChannelGetInfo{
        table, BassFile::Core, "BASS_ChannelGetInfo", kNeeded};
    F<const char*(DWORD, DWORD)> ChannelGetTags{
        table, BassFile::Core, "BASS_ChannelGetTags", kNeeded};
    F<DWORD(DWORD, DWORD flags, DWORD mask)> ChannelFlags{
        table, BassFile::Core, "BASS_ChannelFlags", BassNeed::Optional, ~DWORD{0}};
    F<int(DWORD, DWORD, float)> ChannelSetAttribute{
        table, BassFile::Core, "BASS_ChannelSetAttribute", kNeeded};
    F<int(DWORD, DWORD, float*)> ChannelGetAttribute{
        table, BassFile::Core, "BASS_ChannelGetAttribute", kNeeded};
    F<int(DWORD, DWORD, float, DWORD ms)> ChannelSlideAttribute{
        table, BassFile::Core, "BASS_ChannelSlideAttribute", kNeeded};
    F<int(DWORD, DWORD)> ChannelIsSliding{table, BassFile::Core, "BASS_ChannelIsSliding", kNeeded};
    F<DWORD(DWORD, DWORD type, QWORD param, BassSyncProc, void* user)> ChannelSetSync{
        table, BassFile::Core, "BASS_ChannelSetSync", kNeeded};
    F<int(DWORD, DWORD)> ChannelRemoveSync{
        table, BassFile::Core, "BASS_ChannelRemoveSync", kNeeded};
    F<QWORD(DWORD, DWORD)> ChannelGetPosition{
        table, BassFile::Core, "BASS_ChannelGetPosition", kNeeded, kNoPosition};
    F<int(DWORD, QWORD, DWORD)> ChannelSetPosition{
        table, BassFile::Core, "BASS_ChannelSetPosition", kNeeded};
    F<QWORD(DWORD, DWORD)> ChannelGetLength{
        table, BassFile::Core, "BASS_ChannelGetLength", kNeeded, kNoPosition};
    F<double(DWORD, QWORD)> ChannelBytes2Seconds{
        table, BassFile::Core, "BASS_ChannelBytes2Seconds", kNeeded, -1.0};
    F<QWORD(DWORD, double)> ChannelSeconds2Bytes{
        table, BassFile::Core, "BASS_ChannelSeconds2Bytes", kNeeded, kNoPosition};
    F<int(DWORD, int isLocked)> ChannelLock{table, BassFile::Core, "BASS_ChannelLock", kNeeded};
    F<DWORD(DWORD)> ChannelGetLevel{
        table, BassFile::Core, "BASS_ChannelGetLevel", kNeeded, ~DWORD{0}};
    F<DWORD(DWORD, void* buffer, DWORD lengthOrForm)> ChannelGetData{
        table, BassFile::Core, "BASS_ChannelGetData", BassNeed::Optional, ~DWORD{0}};

    F<DWORD(DWORD, BassDspProc, void* user, int priority)> ChannelSetDsp{
        table, BassFile::Core, "BASS_ChannelSetDSP"};

    // --- the effects add-on: its version, for the log; the effects are our own
    F<DWORD()> FxGetVersion{table, BassFile::Fx, "BASS_FX_GetVersion"};

    // --- encoders
    F<Start> EncodeStart{table, BassFile::Enc, "BASS_Encode_Start"};
    F<DWORD(DWORD)> EncodeIsActive{table, BassFile::Enc, "BASS_Encode_IsActive"};
    F<int(DWORD, int isPaused)> EncodeSetPaused{table, BassFile::Enc, "BASS_Encode_SetPaused"};
    F<int(DWORD, int queue)> EncodeStopEx{table, BassFile::Enc, "BASS_Encode_StopEx"};
    F<int(DWORD, DWORD channel)> EncodeSetChannel{table, BassFile::Enc, "BASS_Encode_SetChannel"};
    F<int(DWORD, BassEncodeNotifyProc, void* user)> EncodeSetNotify{
        table, BassFile::Enc, "BASS_Encode_SetNotify"};
    F<StartEx> EncodeMp3Start{table, BassFile::EncMp3, "BASS_Encode_MP3_Start"};
    F<Start> EncodeOggStart{table, BassFile::EncOgg, "BASS_Encode_OGG_Start"};
    F<StartEx> EncodeFlacStart{table, BassFile::EncFlac, "BASS_Encode_FLAC_Start"};
    F<const DWORD*(DWORD freq, DWORD chans, DWORD flags)> WmaEncodeGetRates{
        table, BassFile::Wma, "BASS_WMA_EncodeGetRates"};
    F<DWORD(DWORD freq, DWORD chans, DWORD flags, DWORD bitrate, const void* file)>
        WmaEncodeOpenFile{table, BassFile::Wma, "BASS_WMA_EncodeOpenFile"};
    F<int(DWORD, const void* buffer, DWORD length)> WmaEncodeWrite{
        table, BassFile::Wma, "BASS_WMA_EncodeWrite"};
    F<int(DWORD)> WmaEncodeClose{table, BassFile::Wma, "BASS_WMA_EncodeClose"};
};

} // namespace BASS
