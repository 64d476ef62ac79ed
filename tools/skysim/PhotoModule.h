#pragma once

#include "SkySimModule.h"

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QSize>
#include <QString>
#include <functional>

class SkyIndex;
class SourceBoard;

// The photo service, in its answer shape, and the pictures it links to, served here too:
//   GET /pub/photos/hex/HEX
//   200 {"photos":[{"id":"N","thumbnail":{"src":URL,"size":{"width":200,"height":133}},
//                   "thumbnail_large":{"src":URL,"size":{"width":420,"height":280}},
//                   "link":"https://www.planespotters.net/photo/N/REG","photographer":NAME}]}
//   200 {"photos":[]}                 an address not flying now, one without a registration, or one of the
//                                     one in six aircraft that nobody photographed (by the address)
//   400 {"error":"invalid hex"}       not six hexadecimal digits
//   GET /photos/img/HEX.png           the large picture, 420 x 280 PNG: a sky and the registration
//   GET /photos/img/HEX_t.png         the small one, 200 x 133
// Pictures exist for the addresses this service has named in an answer (404 for others), so a card can
// show one after the aircraft has gone. Faults of the source "photo" apply to answers and pictures alike;
// "malformed" sends "photos" as an object, and a picture as bytes that are no image.
class PhotoModule : public SkySimModule
{
public:
    static constexpr QSize largeSize{420, 280};
    static constexpr QSize smallSize{200, 133};

    [[nodiscard]] static QString source() { return QStringLiteral("photo"); }

    // baseUrl gives the simulator's own address, which the picture addresses start with.
    PhotoModule(SkyIndex &sky, SourceBoard &sources, std::function<QString()> baseUrl);

    [[nodiscard]] std::optional<SkySimReply> handle(const SkySimRequest &request) override;

    // The picture of an aircraft, as served.
    [[nodiscard]] static QImage picture(const QString &registration, const QString &photographer, QSize size);

private:
    struct Shot
    {
        QString registration;
        QString photographer;
    };

    [[nodiscard]] SkySimReply photos(const QString &hex, bool malformed);
    [[nodiscard]] SkySimReply image(const QString &name, bool malformed) const;

    SkyIndex &m_sky;
    SourceBoard &m_sources;
    std::function<QString()> m_baseUrl;
    QHash<QString, Shot> m_named; // by address: the photos named so far
};
