#include "WidgetLinks.h"

namespace WidgetLinks {

QUrl open()
{
    return QUrl(u"aerolume://open"_qs);
}

QUrl aircraft(const QString &hex)
{
    const QUrl url(u"aerolume://aircraft/"_qs + hex, QUrl::StrictMode);
    return url.isValid() ? url : open();
}

} // namespace WidgetLinks
