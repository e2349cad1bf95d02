#pragma once

#include "app/data_folder.h"
#include "app/general_settings.h"
#include "app/list_settings.h"
#include "app/notification_settings.h"
#include "app/playback_settings.h"
#include "app/recording_settings.h"
#include "app/service_settings.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <mutex>

/// What AppSettings stands on: folder and file are settled before the first preference is made.
class SettingsGround {
  protected:
    explicit SettingsGround(DataFolder folder);
    ~SettingsGround() = default;
    Q_DISABLE_COPY_MOVE(SettingsGround)

    void tell(const QString& message);

    const DataFolder m_folder;
    std::mutex m_messageMutex; // guards the two below
    QStringList m_messages;
    std::function<void()> m_onMessage; // on whatever thread the message comes from
    mutable SettingsStore m_store;     // a look at the file changes no meaning
};

/// An application font as text; windows turn it into a font.
struct FontText {
    QString family;
    int pointSize;
    QString stored; ///< the whole stored description; empty: none
};

/// How the caller records: date and time formats are kept apart.
enum class RecordSplitting { Off, On };

/// The one holder of the program's preferences, and the authority on where its files live.
/// A plain key is a member of its name: `settings.Volume()` reads, `settings.Volume.set(30)`
/// writes; the group headers are the tables of keys, types and defaults. Keys with rules of their
/// own, indexed keys and files are functions below. A set value is in force at once and on the disk
/// a moment later; several running instances share the file key by key.
/// Thread: GUI thread. Owner: main(). Life: the application object comes first; the destructor
/// writes what is left.
class AppSettings final : public QObject,
                          private SettingsGround,
                          public GeneralSettings,
                          public ColourSettings,
                          public AudioSettings,
                          public ConnectionSettings,
                          public RecordingSettings,
                          public SchedulerSettings,
                          public TraySettings,
                          public SpeechSettings,
                          public StationSettings,
                          public FavoriteSettings,
                          public PodcastSettings,
                          public ServiceSettings,
                          public OwnSettings {
    Q_OBJECT

  public:
    explicit AppSettings(QObject* parent = nullptr);
    /// In a folder of the caller's choice.
    explicit AppSettings(const DataFolder& folder, QObject* parent = nullptr);

    // Files.
    [[nodiscard]] bool isPortable() const { return m_folder.isPortable; }
    [[nodiscard]] QString dataFolder() const { return m_folder.path; }
    [[nodiscard]] const DataFolder& folders() const { return m_folder; }
    [[nodiscard]] QString applicationFile(const QString& name) const;
    [[nodiscard]] QString dataFile(const QString& name) const;
    [[nodiscard]] QString settingsFile() const { return m_store.path(); }
    [[nodiscard]] QStringList loadList(const QString& name) const;
    bool saveList(const QString& name, const QStringList& entries) const;

    /// Sentences about the settings file that the user should see (damaged, not writable), oldest
    /// first; given out once. Those from the start are there at once.
    QStringList takeMessages();
    /// Waits until everything is on the disk; for a hand-over to another process. False: it is not.
    bool flush(std::chrono::milliseconds limit = std::chrono::milliseconds(3000));

    // Keys with their own rules.
    [[nodiscard]] bool ProxyDisabled() const;
    void SetProxyDisabled(bool value);
    [[nodiscard]] bool ScheduleTime24h() const;
    void SetScheduleTime24h(bool value);
    [[nodiscard]] QString ScreenReader() const;
    void SetScreenReader(const QString& value);
    [[nodiscard]] bool hasScreenReader() const;
    /// Absolute, native separators; not necessarily there.
    [[nodiscard]] QString AppRecordingFolder() const;
    void SetAppRecordingFolder(const QString& value);
    [[nodiscard]] QString LastFavoritesFile() const;
    void SetLastFavoritesFile(const QString& value);
    [[nodiscard]] QString RecDateFormat(RecordSplitting splitting) const;
    void SetRecDateFormat(RecordSplitting splitting, const QString& format);
    [[nodiscard]] QString RecTimeFormat(RecordSplitting splitting) const;
    void SetRecTimeFormat(RecordSplitting splitting, const QString& format);
    /// Two letters, lower case.
    [[nodiscard]] QString PodcastCountryCode() const;
    void SetPodcastCountryCode(const QString& value);
    /// As read at start, at most five.
    [[nodiscard]] const QStringList& altPresetFiles() const { return m_altPresetFiles; }
    void SetAltPresetFiles(const QStringList& files);
    [[nodiscard]] FontText GetAppFont() const;
    void SetAppFont(const QString& description);
    [[nodiscard]] FontText listFont() const;

    // Indexed and grouped keys.
    [[nodiscard]] int GetTreeGroupColumn(const QString& treeName) const;
    void SetTreeGroupColumn(const QString& treeName, int column);
    [[nodiscard]] int columnWidth(const QString& tree, int column) const;
    void setColumnWidth(const QString& tree, int column, int width);
    [[nodiscard]] QByteArray RestoreWindowGeometry(const QString& windowName) const;
    void SaveWindowGeometry(const QString& windowName, const QByteArray& geometry);
    [[nodiscard]] bool isMainButtonOn(int button) const;
    void setMainButtonOn(int button, bool value);
    [[nodiscard]] QString hotkey(int n) const;
    void setHotkey(int n, const QString& text);
    [[nodiscard]] QString shortcut(int n) const;
    void setShortcut(int n, const QString& text);
    [[nodiscard]] QString treeShortcut(int n) const;
    void setTreeShortcut(int n, const QString& text);

    // The equaliser of one station.
    [[nodiscard]] QString eqPresetForStation(const QString& stationId) const;
    void setEqPresetForStation(const QString& stationId, const QString& preset);
    [[nodiscard]] uint eqPresetIdForStation(const QString& stationId) const;
    void setEqPresetIdForStation(const QString& stationId, uint presetId);
    [[nodiscard]] QString eqPreampForStation(const QString& stationId) const;
    void setEqPreampForStation(const QString& stationId, const QString& preamp);
    [[nodiscard]] bool isEqEnabledForStation(const QString& stationId) const;
    void setEqEnabledForStation(const QString& stationId, bool value);

  signals:
    /// takeMessages() has something.
    void sig_messageAdded();

  private:
    [[nodiscard]] QString storedText(const QString& key) const;
    void store(const QString& key, const QVariant& value);
    [[nodiscard]] QString
    recordingFormat(const QString& base, const QString& suffix, RecordSplitting splitting) const;
    void setRecordingFormat(const QString& base,
                            const QString& suffix,
                            RecordSplitting splitting,
                            const QString& format);
    [[nodiscard]] QString insideDataFolder(const QString& path) const;
    void load();
    void copyShippedFiles();

    QStringList m_altPresetFiles;
};
