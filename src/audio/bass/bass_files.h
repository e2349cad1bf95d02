#pragma once

#include "audio/bass/bass_functions.h"
#include "base/result.h"

#include <QLibrary>
#include <QStringList>

#include <memory>
#include <vector>

namespace BASS {

/// "bass_aac.dll" or "libbass_aac.so".
QString bassFileName(BassFile file);
/// The name by which the engine asks for an add-on ("basswma.dll"), as this system spells it.
QString bassFileName(const QString& asked);

/// The closed library and its add-ons, loaded from one folder by file name, and their functions
/// found by name. Thread: made once, then read-only. Owner: BassLibrary, which outlives every call.
class BassFiles {
  public:
    /// Loads what lies in the folder. Fails, with everything unloaded again, where the library
    /// itself or one of the functions that cannot be done without is missing: the message names
    /// them. Add-ons and optional functions that are missing are logged by name.
    static Result<std::unique_ptr<BassFiles>> load(const QString& folder);

    BassFiles(const BassFiles&) = delete;
    BassFiles& operator=(const BassFiles&) = delete;

    [[nodiscard]] const BassFunctions& functions() const { return m_functions; }
    /// What was asked for and is not there: file names and "function (file)".
    [[nodiscard]] const QStringList& missing() const { return m_missing; }
    [[nodiscard]] QString path(const QString& fileName) const;
    [[nodiscard]] bool isLoaded(BassFile file) const;

  private:
    explicit BassFiles(QString folder);
    Status loadAll();
    void loadFile(BassFile file);
    Status bindAll();
    Status checkVersion() const;
    void unload();

    QString m_folder;
    BassFunctions m_functions;
    std::vector<std::unique_ptr<QLibrary>> m_libraries; ///< by BassFile; null: not there
    QString m_coreError;
    QStringList m_missing;
};

} // namespace BASS
