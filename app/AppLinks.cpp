#include "AppLinks.h"

#include <QtGlobal>

#ifndef AEROLUME_WEBSITE_URL
#define AEROLUME_WEBSITE_URL ""
#endif
#ifndef AEROLUME_UPDATE_FEED_URL
#define AEROLUME_UPDATE_FEED_URL ""
#endif

namespace AppLinks {

namespace {

QString configured(const char *variable, const char *builtIn)
{
    if (qEnvironmentVariableIsSet(variable))
        return qEnvironmentVariable(variable).trimmed();
    return QString::fromUtf8(builtIn).trimmed();
}

} // namespace

QString website()
{
    QString address = configured("AEROLUME_WEBSITE_URL", AEROLUME_WEBSITE_URL);
    const qsizetype fragment = address.indexOf(u'#');
    if (fragment >= 0)
        address.truncate(fragment);
    return address;
}

QString releaseHistory()
{
    const QString site = website();
    return site.isEmpty() ? QString() : site + u"#releases"_qs;
}

QString updateFeed()
{
    return configured("AEROLUME_UPDATE_FEED_URL", AEROLUME_UPDATE_FEED_URL);
}

} // namespace AppLinks
