#include "SettingValue.h"

#include "DefaultsStore.h"

SettingValue::SettingValue(QObject *parent) : SettingValue(DefaultsStore::shared(), parent) {}

SettingValue::SettingValue(DefaultsStore *defaults, QObject *parent) : QObject(parent), m_defaults(defaults)
{
    connect(m_defaults, &DefaultsStore::changed, this, [this](const QString &key) {
        if (key == m_key)
            emit valueChanged();
    });
}

void SettingValue::setKey(const QString &key)
{
    if (key == m_key)
        return;
    m_key = key;
    emit keyChanged();
    emit valueChanged();
}

void SettingValue::setFallback(const QVariant &fallback)
{
    m_fallback = fallback;
    emit valueChanged();
}

QVariant SettingValue::value() const
{
    if (!m_defaults || m_key.isEmpty() || !m_defaults->contains(m_key))
        return m_fallback;
    switch (m_fallback.typeId()) {
    case QMetaType::Bool:
        return m_defaults->boolValue(m_key);
    case QMetaType::Double:
    case QMetaType::Int:
    case QMetaType::LongLong:
        return m_defaults->doubleValue(m_key).value_or(m_fallback.toDouble());
    case QMetaType::QString:
        return m_defaults->stringValue(m_key).value_or(m_fallback.toString());
    default:
        return m_defaults->value(m_key);
    }
}

void SettingValue::setValue(const QVariant &value)
{
    if (m_defaults && !m_key.isEmpty())
        m_defaults->setValue(m_key, value); // announces the change, which reaches every binding
}
