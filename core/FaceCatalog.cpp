#include "FaceCatalog.h"

namespace FaceCatalog {

QList<Face> all()
{
    return {Face::Nearest, Face::RadarSmall, Face::RadarMedium, Face::Board};
}

QString key(Face face)
{
    switch (face) {
    case Face::Nearest:
        return u"nearest"_qs;
    case Face::RadarSmall:
        return u"radar-small"_qs;
    case Face::RadarMedium:
        return u"radar-medium"_qs;
    case Face::Board:
        return u"board"_qs;
    }
    return {};
}

std::optional<Face> fromKey(const QString &text)
{
    for (Face face : all()) {
        if (key(face) == text)
            return face;
    }
    return std::nullopt;
}

QString title(Face face)
{
    switch (face) {
    case Face::Nearest:
        return u"Nearest Aircraft"_qs;
    case Face::RadarSmall:
    case Face::RadarMedium:
        return u"Sky Radar"_qs;
    case Face::Board:
        return u"Sky Board"_qs;
    }
    return {};
}

QString sizeName(Face face)
{
    switch (face) {
    case Face::Nearest:
    case Face::RadarSmall:
        return u"Small"_qs;
    case Face::RadarMedium:
        return u"Medium"_qs;
    case Face::Board:
        return u"Large"_qs;
    }
    return {};
}

QSizeF pointSize(Face face)
{
    switch (face) {
    case Face::Nearest:
    case Face::RadarSmall:
        return {170, 170};
    case Face::RadarMedium:
        return {364, 170};
    case Face::Board:
        return {364, 382};
    }
    return {};
}

} // namespace FaceCatalog
