#include "DefaultsStore.h"

#include "UserDirectories.h"

DefaultsStore::DefaultsStore(const QString &filePath, QObject *parent)
    : QObject(parent), m_settings(filePath, QSettings::IniFormat)
{
}

DefaultsStore *DefaultsStore::shared()
{
    static DefaultsStore *store = new DefaultsStore(defaultFilePath());
    return store;
}

QString DefaultsStore::defaultFilePath()
{
    return UserDirectories::config() + u"/Aerolume.conf"_qs;
}

QString DefaultsStore::filePath() const
{
    return m_settings.fileName();
}

QVariant DefaultsStore::read(const QString &key)
{
    // Picks up what another process wrote since the last read.
    m_settings.sync();
    return m_settings.value(key);
}

bool DefaultsStore::boolValue(const QString &key)
{
    const QVariant value = read(key);
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    const QString text = value.toString();
    return text == u"true" || text == u"1";
}

bool DefaultsStore::contains(const QString &key)
{
    m_settings.sync();
    return m_settings.contains(key);
}

std::optional<double> DefaultsStore::doubleValue(const QString &key)
{
    const QVariant value = read(key);
    if (!value.isValid())
        return std::nullopt;
    bool ok = false;
    const double number = value.toDouble(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

std::optional<QString> DefaultsStore::stringValue(const QString &key)
{
    const QVariant value = read(key);
    if (!value.isValid() || value.typeId() == QMetaType::QByteArray)
        return std::nullopt;
    return value.toString();
}

std::optional<QByteArray> DefaultsStore::dataValue(const QString &key)
{
    const QVariant value = read(key);
    if (value.typeId() != QMetaType::QByteArray)
        return std::nullopt;
    return value.toByteArray();
}

QVariant DefaultsStore::value(const QString &key)
{
    return read(key);
}

void DefaultsStore::setValue(const QString &key, const QVariant &value)
{
    m_settings.setValue(key, value);
    m_settings.sync();
    emit changed(key);
}

void DefaultsStore::remove(const QString &key)
{
    m_settings.remove(key);
    m_settings.sync();
    emit changed(key);
}
