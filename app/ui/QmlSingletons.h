#pragma once

#include "ATCAudio.h"
#include "DefaultsStore.h"
#include "FlightStore.h"
#include "SightingLog.h"
#include "UpdaterModel.h"

#include <QQmlEngine>
#include <QtQml/qqmlregistration.h>

// The application's process-wide objects as QML singletons: QML gets the one shared instance, owned by
// C++, never a copy of its own.
template <typename T> T *sharedForQml()
{
    T *instance = T::shared();
    QQmlEngine::setObjectOwnership(instance, QQmlEngine::CppOwnership);
    return instance;
}

struct FlightStoreForeign
{
    Q_GADGET
    QML_FOREIGN(FlightStore)
    QML_NAMED_ELEMENT(FlightStore)
    QML_SINGLETON

public:
    static FlightStore *create(QQmlEngine *, QJSEngine *) { return sharedForQml<FlightStore>(); }
};

struct DefaultsStoreForeign
{
    Q_GADGET
    QML_FOREIGN(DefaultsStore)
    QML_NAMED_ELEMENT(Defaults)
    QML_SINGLETON

public:
    static DefaultsStore *create(QQmlEngine *, QJSEngine *) { return sharedForQml<DefaultsStore>(); }
};

struct ATCAudioForeign
{
    Q_GADGET
    QML_FOREIGN(ATCAudio)
    QML_NAMED_ELEMENT(ATCAudio)
    QML_SINGLETON

public:
    static ATCAudio *create(QQmlEngine *, QJSEngine *) { return sharedForQml<ATCAudio>(); }
};

struct SightingLogForeign
{
    Q_GADGET
    QML_FOREIGN(SightingLog)
    QML_NAMED_ELEMENT(SightingLog)
    QML_SINGLETON

public:
    static SightingLog *create(QQmlEngine *, QJSEngine *) { return sharedForQml<SightingLog>(); }
};

struct UpdaterModelForeign
{
    Q_GADGET
    QML_FOREIGN(UpdaterModel)
    QML_NAMED_ELEMENT(UpdaterModel)
    QML_SINGLETON

public:
    static UpdaterModel *create(QQmlEngine *, QJSEngine *) { return sharedForQml<UpdaterModel>(); }
};

// Read-only types that QML meets as property values.
struct AircraftListModelForeign
{
    Q_GADGET
    QML_FOREIGN(AircraftListModel)
    QML_ANONYMOUS
};

struct ATCFavoriteListModelForeign
{
    Q_GADGET
    QML_FOREIGN(ATCFavoriteListModel)
    QML_ANONYMOUS
};
