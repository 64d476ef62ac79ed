#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QtGlobal>

// Writes one JSON object as text with its keys in the order given, numbers with a fixed count of decimals
// and a point whatever the locale: what a feed's rows look like, which QJsonDocument (sorted keys, shortest
// numbers) can't imitate.
class JsonObjectWriter
{
public:
    JsonObjectWriter &string(const char *key, const QString &value);
    JsonObjectWriter &integer(const char *key, qint64 value);
    JsonObjectWriter &fixed(const char *key, double value, int decimals);
    JsonObjectWriter &stringList(const char *key, const QStringList &values);
    // A value that is JSON text already: an object, a list, a literal.
    JsonObjectWriter &raw(const char *key, const QByteArray &json);

    // The closed object; the writer is spent.
    [[nodiscard]] QByteArray finish();

    [[nodiscard]] static QByteArray quoted(const QString &text);
    [[nodiscard]] static QByteArray number(double value, int decimals);

private:
    void key(const char *name);

    QByteArray m_text = QByteArrayLiteral("{");
    bool m_empty = true;
};
