#pragma once

#include "Aircraft.h"
#include "HomeLocation.h"
#include "ScopePalette.h"
#include "SkyEntry.h"

#include <QtQml/qqmlregistration.h>

// The core's records as QML value types, so that the faces and the tools that check them know their
// properties. The records themselves stay free of QML; these declarations only name them.

struct SkyEntryValueType
{
    Q_GADGET
    QML_FOREIGN(SkyEntry)
    QML_VALUE_TYPE(skyEntry)
};

struct ScopePaletteValueType
{
    Q_GADGET
    QML_FOREIGN(ScopePalette)
    QML_VALUE_TYPE(scopePalette)
};

struct AircraftValueType
{
    Q_GADGET
    QML_FOREIGN(Aircraft)
    QML_VALUE_TYPE(aircraft)
};

struct HomeLocationValueType
{
    Q_GADGET
    QML_FOREIGN(HomeLocation)
    QML_VALUE_TYPE(homeLocation)
};
