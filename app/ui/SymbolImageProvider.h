#pragma once

#include <QQuickImageProvider>

// "image://symbol/NAME?color=#RRGGBB" draws a symbol in a colour at the size asked for, so icons stay
// sharp at every scale and follow the theme.
class SymbolImageProvider : public QQuickImageProvider
{
public:
    SymbolImageProvider();
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};
