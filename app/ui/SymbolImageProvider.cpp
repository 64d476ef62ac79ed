#include "SymbolImageProvider.h"

#include "Symbols.h"

#include <QUrlQuery>

SymbolImageProvider::SymbolImageProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QImage SymbolImageProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const qsizetype question = id.indexOf(u'?');
    const QString name = question < 0 ? id : id.left(question);
    const QUrlQuery query(question < 0 ? QString() : id.mid(question + 1));
    QColor color(query.queryItemValue(u"color"_qs, QUrl::FullyDecoded));
    if (!color.isValid())
        color = Qt::black;
    const QSize target = requestedSize.isValid() && !requestedSize.isEmpty() ? requestedSize : QSize(48, 48);
    if (size)
        *size = target;
    return Symbols::render(name, target, color);
}
