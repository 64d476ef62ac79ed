#pragma once

#include <QColor>
#include <QPoint>
#include <QSize>
#include <QString>

class QPainter;

// Capital letters, digits and a little punctuation in a 5 by 7 pixel font, drawn as filled squares. The
// simulator's pictures need text but no font files: the same pixels on every machine, and no GUI
// application to load fonts. Small letters are drawn as capitals, anything else as a hollow box.
class PixelFont
{
public:
    PixelFont() = delete;

    // Each font pixel is scale by scale picture pixels; the text's top left corner is at topLeft.
    static void draw(QPainter &painter, QPoint topLeft, const QString &text, int scale, const QColor &colour);
    [[nodiscard]] static QSize size(const QString &text, int scale);
};
