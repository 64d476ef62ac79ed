#pragma once

#include <QString>
#include <QUrl>

// The application's own URLs that a widget opens when clicked.
namespace WidgetLinks {

// Opens the application without selecting anything.
[[nodiscard]] QUrl open();
// Opens the application on one aircraft; a hex that makes no valid URL opens the application alone.
[[nodiscard]] QUrl aircraft(const QString &hex);

} // namespace WidgetLinks
