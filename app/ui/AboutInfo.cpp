#include "AboutInfo.h"

#include "AppLinks.h"
#include "Services.h"

#ifndef AEROLUME_BUILD_NUMBER
#define AEROLUME_BUILD_NUMBER ""
#endif

AboutInfo::AboutInfo(QObject *parent)
    : QObject(parent), m_releaseHistoryUrl(AppLinks::releaseHistory()), m_websiteUrl(AppLinks::website())
{
    const QString primary = Services::primaryFeedName();
    const QString fallback = Services::fallbackFeedName();
    m_dataLine = primary == fallback ? tr("Data from the %1 community").arg(primary)
                                     : tr("Data from the %1 and %2 communities").arg(primary, fallback);
}

QString AboutInfo::versionText(const QString &shortVersion, const QString &buildNumber)
{
    const QString version = shortVersion.trimmed().isEmpty() ? u"1.0"_qs : shortVersion.trimmed();
    const QString build = buildNumber.trimmed().isEmpty() ? u"1"_qs : buildNumber.trimmed();
    return u"Version "_qs + version + u" ("_qs + build + u')';
}

QString AboutInfo::version() const
{
    return versionText(QStringLiteral(AEROLUME_VERSION), QStringLiteral(AEROLUME_BUILD_NUMBER));
}

QString AboutInfo::ownershipLine() const
{
    return tr("© The Aerolume contributors. Free software.");
}
