#pragma once

#include "Decoded.h"

#include <QByteArray>
#include <QMetaType>
#include <QString>

// The point around which everything is measured, with the place name shown to the user.
class HomeLocation
{
    Q_GADGET
    Q_PROPERTY(double latitude MEMBER latitude)
    Q_PROPERTY(double longitude MEMBER longitude)
    Q_PROPERTY(QString label MEMBER label)

public:
    HomeLocation() = default;
    HomeLocation(double latitude, double longitude, QString label)
        : latitude(latitude), longitude(longitude), label(std::move(label))
    {
    }

    // A JSON object with the required keys "latitude", "longitude" (numbers) and "label" (text).
    [[nodiscard]] static Decoded<HomeLocation> decode(const QByteArray &json);
    [[nodiscard]] QByteArray encode() const;

    bool operator==(const HomeLocation &) const = default;

    double latitude = 0;
    double longitude = 0;
    QString label;
};

Q_DECLARE_METATYPE(HomeLocation)
