#include "UpdateOffer.h"

#include <QList>

bool UpdateOffer::setVersion(const QString &version)
{
    if (!isVersion(version))
        return false;
    m_version = version;
    return true;
}

bool UpdateOffer::isVersion(QStringView text)
{
    const auto parts = text.split(u'.');
    if (parts.size() > 4)
        return false;
    for (const QStringView part : parts) {
        if (part.isEmpty() || part.size() > 9)
            return false;
        for (const QChar c : part) {
            if (c < u'0' || c > u'9')
                return false;
        }
    }
    return true;
}

QString UpdateOffer::programVersion()
{
    return QStringLiteral(AEROLUME_VERSION);
}

QString UpdateOffer::nextVersion(const QString &version)
{
    QStringList parts = version.split(u'.');
    while (parts.size() < 2)
        parts.append(u"0"_qs);
    parts[1] = QString::number(parts[1].toLongLong() + 1);
    for (qsizetype i = 2; i < parts.size(); ++i)
        parts[i] = u"0"_qs;
    return parts.join(u'.');
}

int UpdateOffer::compare(QStringView a, QStringView b)
{
    const auto left = a.split(u'.');
    const auto right = b.split(u'.');
    for (qsizetype i = 0; i < std::max(left.size(), right.size()); ++i) {
        const qlonglong x = i < left.size() ? left[i].toLongLong() : 0;
        const qlonglong y = i < right.size() ? right[i].toLongLong() : 0;
        if (x != y)
            return x < y ? -1 : 1;
    }
    return 0;
}
