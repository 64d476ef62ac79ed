#pragma once

#include <QByteArray>
#include <QObject>
#include <QSettings>
#include <QString>
#include <QVariant>
#include <optional>

// The defaults store: every setting under a flat key in one INI file. Values are read at the moment of
// use, never cached here, and every write within the process is announced, so that every view bound to
// a key shows the change at once.
class DefaultsStore : public QObject
{
    Q_OBJECT

public:
    // The store at the given file; shared() uses $XDG_CONFIG_HOME/Aerolume/Aerolume.conf.
    explicit DefaultsStore(const QString &filePath, QObject *parent = nullptr);

    [[nodiscard]] static DefaultsStore *shared();
    [[nodiscard]] static QString defaultFilePath();
    [[nodiscard]] QString filePath() const;

    // False when absent or not a boolean.
    Q_INVOKABLE [[nodiscard]] bool boolValue(const QString &key);
    Q_INVOKABLE [[nodiscard]] bool contains(const QString &key);
    // Absent when missing or when the value doesn't convert to a number.
    [[nodiscard]] std::optional<double> doubleValue(const QString &key);
    [[nodiscard]] std::optional<QString> stringValue(const QString &key);
    [[nodiscard]] std::optional<QByteArray> dataValue(const QString &key);
    // For QML: the raw value, undefined when absent.
    Q_INVOKABLE [[nodiscard]] QVariant value(const QString &key);

    Q_INVOKABLE void setValue(const QString &key, const QVariant &value);
    Q_INVOKABLE void remove(const QString &key);

signals:
    void changed(const QString &key);

private:
    [[nodiscard]] QVariant read(const QString &key);

    QSettings m_settings;
};
