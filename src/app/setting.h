#pragma once

#include "app/settings_store.h"

#include <QString>
#include <QVariant>

#include <QLatin1String>

/// The text of a stored value; a list is what an unquoted comma in a hand-edited file becomes.
QString settingText(const QVariant& value);

/// One preference: its key, its default and the value in force, which is the file's, else the last
/// one set, else the default. All values are kept as text; what does not convert reads as false
/// or 0.
/// Thread: GUI thread. Owner: AppSettings, as a member.
class Setting {
  public:
    [[nodiscard]] const QString& key() const { return m_key; }
    [[nodiscard]] const QString& defaultText() const { return m_default; }
    /// The value as text.
    [[nodiscard]] QString text() const;
    /// Takes the value over that the file has now. For SettingsStore.
    void adoptFromFile();

    Q_DISABLE_COPY_MOVE(Setting)

  protected:
    Setting(SettingsStore& store, const char* key, const char* defaultText);
    ~Setting() = default;

    void putText(const QString& text);
    /// The part of the subclass: keeps the text in its own type.
    virtual void take(const QString& text) = 0;
    void refresh() const { m_store.refresh(); }

  private:
    SettingsStore& m_store;
    const QString m_key;
    const QString m_default;
    QString m_last; // the default, then what was last set in this run
};

class BoolSetting final : public Setting {
  public:
    BoolSetting(SettingsStore& store, const char* key, const char* defaultText = "");
    bool operator()() const {
        refresh();
        return m_value;
    }
    void set(bool value);

  private:
    void take(const QString& text) override;
    bool m_value = false;
};

class IntSetting final : public Setting {
  public:
    IntSetting(SettingsStore& store, const char* key, const char* defaultText = "");
    int operator()() const {
        refresh();
        return m_value;
    }
    void set(int value);

  private:
    void take(const QString& text) override;
    int m_value = 0;
};

class TextSetting final : public Setting {
  public:
    TextSetting(SettingsStore& store, const char* key, const char* defaultText = "");
    QString operator()() const {
        refresh();
        return m_value;
    }
    void set(const QString& value);

  private:
    void take(const QString& text) override;
    QString m_value;
};

/// A default that stands in the table under a key that nothing reads.
class UnreadSetting final : public Setting {
  public:
    UnreadSetting(SettingsStore& store, const char* key, const char* defaultText = "");

  private:
    void take(const QString&) override {}
};
