#pragma once

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

class DefaultsStore;

// A colour setting stored as text ("#FF8A00") seen as a colour, for the swatches and the colour well.
// Reading: the stored text (defaultHex while the key is absent) as a colour, fallbackColor when it does
// not parse. Writing a colour: its "#RRGGBB" in upper case, defaultHex when it has no sRGB form, so a
// colour from the well lands in the same form as the presets.
class ColorBinding : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString key READ key WRITE setKey NOTIFY changed)
    Q_PROPERTY(QString defaultHex READ defaultHex WRITE setDefaultHex NOTIFY changed)
    Q_PROPERTY(QColor fallbackColor READ fallbackColor WRITE setFallbackColor NOTIFY changed)
    Q_PROPERTY(QString hex READ hex WRITE setHex NOTIFY changed)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)

public:
    explicit ColorBinding(QObject *parent = nullptr);
    ColorBinding(DefaultsStore *defaults, QObject *parent);

    [[nodiscard]] QString key() const { return m_key; }
    void setKey(const QString &key);
    [[nodiscard]] QString defaultHex() const { return m_defaultHex; }
    void setDefaultHex(const QString &hex);
    [[nodiscard]] QColor fallbackColor() const { return m_fallbackColor; }
    void setFallbackColor(const QColor &color);

    // The stored text as it is, compared as text by the swatches.
    [[nodiscard]] QString hex() const;
    // Stores the text as given.
    void setHex(const QString &hex);
    [[nodiscard]] QColor color() const;
    void setColor(const QColor &color);
    // Any text as a colour, the fallback when it does not parse.
    Q_INVOKABLE [[nodiscard]] static QColor colorOf(const QString &hex, const QColor &fallback);

signals:
    void changed();

private:
    QPointer<DefaultsStore> m_defaults;
    QString m_key;
    QString m_defaultHex;
    QColor m_fallbackColor;
};
