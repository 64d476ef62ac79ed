#include "TileDiskCache.h"

#include "UserDirectories.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>

TileDiskCache::TileDiskCache(QString root, qint64 maxBytes, Clock now)
    : m_root(std::move(root)), m_maxBytes(maxBytes), m_now(std::move(now))
{
    if (!m_now)
        m_now = [] { return QDateTime::currentDateTimeUtc(); };
}

QString TileDiskCache::defaultRoot()
{
    return UserDirectories::cache() + u"/tiles"_qs;
}

QString TileDiskCache::path(const QString &source, const TileId &tile) const
{
    return u"%1/%2/%3/%4/%5"_qs.arg(m_root, source).arg(tile.z).arg(tile.x).arg(tile.y);
}

std::optional<TileDiskCache::Entry> TileDiskCache::read(const QString &source, const TileId &tile) const
{
    QFile file(path(source, tile));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    Entry entry;
    entry.bytes = file.readAll();
    if (entry.bytes.isEmpty())
        return std::nullopt;
    entry.expires = file.fileTime(QFileDevice::FileModificationTime);
    entry.expired = !entry.expires.isValid() || entry.expires <= m_now();
    return entry;
}

bool TileDiskCache::write(const QString &source, const TileId &tile, const QByteArray &bytes,
                          const QDateTime &expires)
{
    const QString target = path(source, tile);
    if (!QDir().mkpath(QFileInfo(target).path()))
        return false;
    const qint64 before = QFileInfo(target).size();
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return false;
    // The expiry goes on the temporary file, so the tile appears with it in one rename.
    if (!file.flush() || !file.setFileTime(expires, QFileDevice::FileModificationTime) || !file.commit())
        return false;
    if (m_size) {
        *m_size += bytes.size() - before;
        if (*m_size > m_maxBytes)
            trim();
    } else {
        countOnce();
        if (*m_size > m_maxBytes)
            trim();
    }
    return true;
}

qint64 TileDiskCache::size()
{
    if (!m_size)
        countOnce();
    return *m_size;
}

void TileDiskCache::countOnce()
{
    qint64 total = 0;
    QDirIterator it(m_root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        total += it.fileInfo().size();
    }
    m_size = total;
}

void TileDiskCache::trim()
{
    struct Held
    {
        QString path;
        QDateTime expires;
        qint64 size;
    };
    QList<Held> files;
    QDirIterator it(m_root, QDir::Files, QDirIterator::Subdirectories);
    qint64 total = 0;
    while (it.hasNext()) {
        it.next();
        const QFileInfo info = it.fileInfo();
        files.append({info.filePath(), info.lastModified(), info.size()});
        total += info.size();
    }
    // Down to three quarters, so that trimming doesn't run again at the next tile.
    std::sort(files.begin(), files.end(), [](const Held &a, const Held &b) { return a.expires < b.expires; });
    const qint64 goal = m_maxBytes / 4 * 3;
    for (const Held &file : std::as_const(files)) {
        if (total <= goal)
            break;
        if (QFile::remove(file.path))
            total -= file.size;
    }
    m_size = total;
}
