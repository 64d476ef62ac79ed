#pragma once

#include <QStringList>

class QQuickItem;
class QQuickWindow;

// Every visible text a view shows to a person or a screen reader, gathered from its item tree in the
// order the items stand.
class ItemTexts
{
public:
    static void collect(QQuickItem *item, QStringList &texts);
    [[nodiscard]] static QStringList ofWindow(QQuickWindow *window);
};
