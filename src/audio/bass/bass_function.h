#pragma once

#include "audio/bass_defs.h"

#include <QFunctionPointer>

#include <atomic>
#include <vector>

// Functions of the closed libraries, found by name at run time. BASS_CALL, the system's calling
// convention for them, comes from CMakeLists.txt.

namespace BASS {

/// The closed libraries, in the order in which they are loaded.
enum class BassFile { Core, Aac, Flac, Hls, Opus, Wma, Fx, Enc, EncMp3, EncOgg, EncFlac };

/// Required: without it the provider is of no use. Optional: its calls fail as "not available".
enum class BassNeed { Required, Optional };

/// This provider's own reason for a failure on this thread; BASS_OK: the closed library's holds.
int ownBassError();
void setOwnBassError(int code);

/// One name to be found. Thread: bound once before any call; then any.
class BassFunctionEntry {
  public:
    BassFunctionEntry(std::vector<BassFunctionEntry*>& table,
                      BassFile file,
                      const char* name,
                      BassNeed need);
    BassFunctionEntry(const BassFunctionEntry&) = delete;
    BassFunctionEntry& operator=(const BassFunctionEntry&) = delete;

    [[nodiscard]] BassFile file() const { return m_file; }
    [[nodiscard]] const char* name() const { return m_name; }
    [[nodiscard]] BassNeed need() const { return m_need; }
    [[nodiscard]] bool isBound() const { return m_address != nullptr; }
    void bind(QFunctionPointer found) { m_address = found; }

  protected:
    ~BassFunctionEntry() = default;
    [[nodiscard]] QFunctionPointer address() const { return m_address; }
    /// A call without a function: fails with BASS_ERROR_NOTAVAIL, logged by name the first time.
    void refuse() const;

  private:
    BassFile m_file;
    const char* m_name;
    BassNeed m_need;
    QFunctionPointer m_address = nullptr;
    mutable std::atomic<bool> m_isReported{false};
};

template <class Signature>
class BassFunction;

/// A function with its type. A call where nothing is bound returns `failure`.
template <class R, class... A>
class BassFunction<R(A...)> final : public BassFunctionEntry {
  public:
    BassFunction(std::vector<BassFunctionEntry*>& table,
                 BassFile file,
                 const char* name,
                 BassNeed need = BassNeed::Optional,
                 R failure = R{})
        : BassFunctionEntry(table, file, name, need), m_failure(failure) {}

    R operator()(A... arguments) const {
        if (!isBound()) {
            refuse();
            return m_failure;
        }
        setOwnBassError(BASS_OK);
        return reinterpret_cast<R(BASS_CALL*)(A...)>(address())(arguments...);
    }

  private:
    R m_failure;
};

} // namespace BASS
