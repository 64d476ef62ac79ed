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
