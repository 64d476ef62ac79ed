#include "ItemTexts.h"

#include <QQuickItem>
#include <QQuickWindow>

void ItemTexts::collect(QQuickItem *item, QStringList &texts)
{
    if (!item || !item->isVisible())
        return;
    const QVariant text = item->property("text");
    if (text.isValid() && !text.toString().isEmpty())
        texts.append(text.toString());
    for (QQuickItem *child : item->childItems())
        collect(child, texts);
}

QStringList ItemTexts::ofWindow(QQuickWindow *window)
{
    QStringList texts;
    collect(window->contentItem(), texts);
    return texts;
}
