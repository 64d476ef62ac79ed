#pragma once

#include <QObject>
#include <QPointer>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

class DefaultsStore;

// One settings key, bound for QML: its value (or the fallback when absent) follows every change made
// anywhere in the program at once, and writing `value` stores it.
class SettingValue : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString key READ key WRITE setKey NOTIFY keyChanged)
    Q_PROPERTY(QVariant fallback READ fallback WRITE setFallback NOTIFY valueChanged)
    Q_PROPERTY(QVariant value READ value WRITE setValue NOTIFY valueChanged)

public:
    explicit SettingValue(QObject *parent = nullptr);
    SettingValue(DefaultsStore *defaults, QObject *parent);

    [[nodiscard]] QString key() const { return m_key; }
    void setKey(const QString &key);
    [[nodiscard]] QVariant fallback() const { return m_fallback; }
    void setFallback(const QVariant &fallback);
    // Typed like the fallback: a stored "true" reads as a boolean when the fallback is one.
    [[nodiscard]] QVariant value() const;
    void setValue(const QVariant &value);

signals:
    void keyChanged();
    void valueChanged();

private:
    QPointer<DefaultsStore> m_defaults;
    QString m_key;
    QVariant m_fallback;
};
