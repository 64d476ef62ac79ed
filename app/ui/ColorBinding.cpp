#include "ColorBinding.h"

#include "ColorHex.h"
#include "DefaultsStore.h"

ColorBinding::ColorBinding(QObject *parent) : ColorBinding(DefaultsStore::shared(), parent) {}

ColorBinding::ColorBinding(DefaultsStore *defaults, QObject *parent) : QObject(parent), m_defaults(defaults)
{
    connect(m_defaults, &DefaultsStore::changed, this, [this](const QString &key) {
        if (key == m_key)
            emit changed();
    });
}

void ColorBinding::setKey(const QString &key)
{
    if (key == m_key)
        return;
    m_key = key;
    emit changed();
}

void ColorBinding::setDefaultHex(const QString &hex)
{
    if (hex == m_defaultHex)
        return;
    m_defaultHex = hex;
    emit changed();
}

void ColorBinding::setFallbackColor(const QColor &color)
{
    if (color == m_fallbackColor)
        return;
    m_fallbackColor = color;
    emit changed();
}

QString ColorBinding::hex() const
{
    if (!m_defaults || m_key.isEmpty())
        return m_defaultHex;
    return m_defaults->stringValue(m_key).value_or(m_defaultHex);
}

void ColorBinding::setHex(const QString &hex)
{
    if (m_defaults && !m_key.isEmpty())
        m_defaults->setValue(m_key, hex);
}

QColor ColorBinding::color() const
{
    return ColorHex::color(hex()).value_or(m_fallbackColor);
}

void ColorBinding::setColor(const QColor &color)
{
    setHex(ColorHex::hexString(color).value_or(m_defaultHex));
}

QColor ColorBinding::colorOf(const QString &hex, const QColor &fallback)
{
    return ColorHex::color(hex).value_or(fallback);
}
