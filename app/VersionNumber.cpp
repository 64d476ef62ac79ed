#include "VersionNumber.h"

VersionNumber::VersionNumber(QStringView text)
{
    text = text.trimmed();
    if (text.startsWith(u'v') || text.startsWith(u'V'))
        text = text.mid(1);
    for (const QStringView part : text.split(u'.')) {
        qsizetype digits = 0;
        while (digits < part.size() && part[digits].isDigit() && part[digits].unicode() < 128)
            ++digits;
        if (digits == 0) {
            // "1..2" or "1.x": nothing after this point can be ordered.
            break;
        }
        bool ok = false;
        const qint64 value = part.first(std::min<qsizetype>(digits, 18)).toLongLong(&ok);
        m_parts.append(ok ? value : 0);
        if (digits < part.size())
            break; // "2b": a suffix ends the number
    }
}

int VersionNumber::compare(const VersionNumber &a, const VersionNumber &b)
{
    const qsizetype count = std::max(a.m_parts.size(), b.m_parts.size());
    for (qsizetype i = 0; i < count; ++i) {
        const qint64 left = a.m_parts.value(i, 0);
        const qint64 right = b.m_parts.value(i, 0);
        if (left != right)
            return left < right ? -1 : 1;
    }
    return 0;
}
