#pragma once

#include "TileId.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <functional>
#include <optional>

// Tiles on disk, one file per tile under root/source/z/x/y, each written to a temporary name and renamed
// so a reader never sees half a tile. A file's modification time is the moment it expires; an expired
// tile is still served (flagged) so the map has something to show while it is fetched anew. The whole
// cache is kept under a size limit by removing the tiles that expire first.
class TileDiskCache
{
public:
    struct Entry
    {
        QByteArray bytes;
        QDateTime expires;
        bool expired = false;
    };

    using Clock = std::function<QDateTime()>;

    explicit TileDiskCache(QString root, qint64 maxBytes = defaultMaxBytes, Clock now = {});

    // $XDG_CACHE_HOME/Aerolume/tiles, else ~/.cache/Aerolume/tiles.
    [[nodiscard]] static QString defaultRoot();
    static constexpr qint64 defaultMaxBytes = 300LL * 1024 * 1024;

    [[nodiscard]] const QString &root() const { return m_root; }
    [[nodiscard]] QString path(const QString &source, const TileId &tile) const;
    [[nodiscard]] std::optional<Entry> read(const QString &source, const TileId &tile) const;
    // False when the tile couldn't be stored; the map goes on without it.
    bool write(const QString &source, const TileId &tile, const QByteArray &bytes, const QDateTime &expires);
    // Bytes held on disk, as last counted.
    [[nodiscard]] qint64 size();

private:
    void countOnce();
    void trim();

    QString m_root;
    qint64 m_maxBytes;
    Clock m_now;
    std::optional<qint64> m_size;
};
