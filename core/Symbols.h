#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>
#include <QStringList>

// One table from the symbol names the views use ("airplane", "star.fill", ...) to the bundled icons, and
// their drawing in any colour and size, crisp at every scale.
namespace Symbols {

// Every known symbol name.
[[nodiscard]] QStringList names();
// The resource path of a symbol's icon, or empty for an unknown name.
[[nodiscard]] QString resourcePath(const QString &name);
// The symbol drawn in `color` (the icons draw in "currentColor"), fitted into `size` device pixels and
// centred; a transparent image for an unknown name.
[[nodiscard]] QImage render(const QString &name, const QSize &size, const QColor &color);

} // namespace Symbols
