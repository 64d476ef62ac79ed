#pragma once

#include "SkySimModule.h"

#include <QByteArray>
#include <QString>
#include <functional>

class SimClock;
class SourceBoard;
class UpdateOffer;

// The update feed: an appcast, RSS 2.0 with the sparkle: namespace.
//   GET /appcast.xml                 the newest item first, the offered version, then 0.0.1 (when older);
//                                    each with <sparkle:version> and <sparkle:shortVersionString> equal to
//                                    the version, <pubDate>, <link> to the download page,
//                                    <sparkle:releaseNotesLink> and an <enclosure> with the same versions
//                                    as attributes
//   GET /releases/VERSION.html       release notes, a short HTML page
//   GET /download/                   the download page, a short HTML page
// The offered version is --update-version (default 0.1.0, so nothing newer than the first release) and
// POST /control/update?version=V. Faults of the source "update" apply to the appcast; "malformed" sends
// it without the sparkle: namespace declared, which no XML reader accepts. POST /control/update?mode=
// newer|same|malformed|slow sets version and fault together for the four cases an updater meets.
class UpdateFeedModule : public SkySimModule
{
public:
    [[nodiscard]] static QString source() { return QStringLiteral("update"); }
    [[nodiscard]] static QString sparkleNamespace()
    {
        return QStringLiteral("http://www.andymatuschak.org/xml-namespaces/sparkle");
    }

    UpdateFeedModule(const UpdateOffer &offer, const SimClock &clock, SourceBoard &sources,
                     std::function<QString()> baseUrl);

    [[nodiscard]] std::optional<SkySimReply> handle(const SkySimRequest &request) override;

    [[nodiscard]] QByteArray appcast(bool malformed) const;

private:
    const UpdateOffer &m_offer;
    const SimClock &m_clock;
    SourceBoard &m_sources;
    std::function<QString()> m_baseUrl;
};
