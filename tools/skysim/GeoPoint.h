#pragma once

// A place on the Earth, in degrees: latitude north positive, longitude east positive.
struct GeoPoint
{
    double lat = 0.0;
    double lon = 0.0;

    bool operator==(const GeoPoint &) const = default;
};
