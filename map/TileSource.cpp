#include "TileSource.h"

#include <QCryptographicHash>

QString TileSource::cacheKey() const
{
    const QByteArray digest =
        QCryptographicHash::hash(urlTemplate.toUtf8(), QCryptographicHash::Sha1).toHex().left(10);
    return name + u'-' + QString::fromLatin1(digest);
}
