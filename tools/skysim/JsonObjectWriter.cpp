#include "JsonObjectWriter.h"

JsonObjectWriter &JsonObjectWriter::string(const char *name, const QString &value)
{
    key(name);
    m_text += quoted(value);
    return *this;
}

JsonObjectWriter &JsonObjectWriter::integer(const char *name, qint64 value)
{
    key(name);
    m_text += QByteArray::number(value);
    return *this;
}

JsonObjectWriter &JsonObjectWriter::fixed(const char *name, double value, int decimals)
{
    key(name);
    m_text += number(value, decimals);
    return *this;
}

JsonObjectWriter &JsonObjectWriter::stringList(const char *name, const QStringList &values)
{
    key(name);
    m_text += '[';
    for (qsizetype i = 0; i < values.size(); ++i) {
        if (i > 0)
            m_text += ',';
        m_text += quoted(values[i]);
    }
    m_text += ']';
    return *this;
}

JsonObjectWriter &JsonObjectWriter::raw(const char *name, const QByteArray &json)
{
    key(name);
    m_text += json;
    return *this;
}

QByteArray JsonObjectWriter::finish()
{
    m_text += '}';
    return std::move(m_text);
}

void JsonObjectWriter::key(const char *name)
{
    if (!m_empty)
        m_text += ',';
    m_empty = false;
    m_text += '"';
    m_text += name;
    m_text += "\":";
}

QByteArray JsonObjectWriter::quoted(const QString &text)
{
    static const char hexDigits[] = "0123456789abcdef";
    const QByteArray utf8 = text.toUtf8();
    QByteArray out;
    out.reserve(utf8.size() + 2);
    out += '"';
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (byte < 0x20) {
            out += "\\u00";
            out += hexDigits[byte >> 4];
            out += hexDigits[byte & 0xF];
        } else {
            out += c;
        }
    }
    out += '"';
    return out;
}

QByteArray JsonObjectWriter::number(double value, int decimals)
{
    // Adding zero turns a negative zero into a plain one.
    return QByteArray::number(value + 0.0, 'f', decimals);
}
