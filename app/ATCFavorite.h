#pragma once

#include <QString>
#include <QUuid>

// A saved tower feed. The address is kept as the user gave it (a page link, a playlist or a stream),
// trimmed of blanks, and is resolved anew at every play.
struct ATCFavorite
{
    QUuid id;
    QString name;
    QString url;

    friend bool operator==(const ATCFavorite &, const ATCFavorite &) = default;
};
