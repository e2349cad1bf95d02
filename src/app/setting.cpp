#include "app/setting.h"

#include <QStringList>

QString settingText(const QVariant& value) {
    if (value.userType() == QMetaType::QStringList)
        return value.toStringList().join(QLatin1Char(','));
    return value.toString();
}

Setting::Setting(SettingsStore& store, const char* key, const char* defaultText)
    : m_store(store), m_key(QLatin1String(key)), m_default(QLatin1String(defaultText)),
      m_last(m_default) {
    m_store.watch(*this);
}

QString Setting::text() const {
    const QVariant stored = m_store.value(m_key);
    return stored.isValid() ? settingText(stored) : m_last;
}

void Setting::adoptFromFile() {
    const QVariant stored = m_store.knownValue(m_key);
    take(stored.isValid() ? settingText(stored) : m_last);
}

void Setting::putText(const QString& text) {
    m_last = text;
    take(text);
    m_store.put(m_key, text);
}

BoolSetting::BoolSetting(SettingsStore& store, const char* key, const char* defaultText)
    : Setting(store, key, defaultText) {
    adoptFromFile();
}

void BoolSetting::set(bool value) {
    putText(value ? QStringLiteral("true") : QStringLiteral("false"));
}

void BoolSetting::take(const QString& text) {
    m_value = QVariant(text).toBool();
}

IntSetting::IntSetting(SettingsStore& store, const char* key, const char* defaultText)
    : Setting(store, key, defaultText) {
    adoptFromFile();
}

void IntSetting::set(int value) {
    putText(QString::number(value));
}

void IntSetting::take(const QString& text) {
    m_value = QVariant(text).toInt();
}

TextSetting::TextSetting(SettingsStore& store, const char* key, const char* defaultText)
    : Setting(store, key, defaultText) {
    adoptFromFile();
}

void TextSetting::set(const QString& value) {
    putText(value);
}

void TextSetting::take(const QString& text) {
    m_value = text;
}

UnreadSetting::UnreadSetting(SettingsStore& store, const char* key, const char* defaultText)
    : Setting(store, key, defaultText) {}
