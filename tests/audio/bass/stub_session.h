#pragma once

#include "audio/bass/bass_library.h"
#include "audio/bass_stub/stub_state.h"

#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

inline QString stubFolder(const char* variant) {
    return QStringLiteral(BASS_STUBS "/") + QLatin1String(variant);
}

/// The provider on the stand-in for the closed library, with nothing written down yet.
class StubSession : public testing::Test {
  protected:
    void SetUp() override {
        auto files = BASS::BassFiles::load(stubFolder("all"));
        ASSERT_TRUE(files) << files.error().toStdString();
        library = std::make_unique<BASS::BassLibrary>(std::move(files.value()));
        forget();
    }

    void TearDown() override {
        library.reset();
        forget();
        stub().answers.clear();
        stub().failures.clear();
        stub().tags.clear();
        stub().syncs.clear();
        stub().encoders.clear();
        stub().queued.clear();
    }

    static bass_stub::State& stub() { return bass_stub::state(); }
    static void forget() {
        const std::lock_guard lock(stub().mutex);
        stub().calls.clear();
    }
    static std::vector<std::string> calls() {
        const std::lock_guard lock(stub().mutex);
        return stub().calls;
    }
    static std::string lastCall() { return calls().empty() ? std::string() : calls().back(); }
    static int countOf(const std::string& call) {
        const auto all = calls();
        return static_cast<int>(std::count(all.begin(), all.end(), call));
    }
    /// The sync of this type as the library was given it.
    static bass_stub::Sync syncOf(BASS::DWORD type) {
        const std::lock_guard lock(stub().mutex);
        const auto& syncs = stub().syncs;
        const auto found = std::find_if(
            syncs.rbegin(), syncs.rend(), [type](const auto& s) { return s.type == type; });
        return found == syncs.rend() ? bass_stub::Sync{} : *found;
    }
    static void fire(const bass_stub::Sync& sync, BASS::DWORD data = 0) {
        sync.proc(sync.handle, sync.channel, data, sync.user);
    }

    std::unique_ptr<BASS::BassLibrary> library;
};
