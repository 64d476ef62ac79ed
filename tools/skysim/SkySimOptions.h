#pragma once

#include "FaultPlan.h"
#include "GeoPoint.h"

#include <QList>
#include <QString>
#include <QtGlobal>
#include <optional>
#include <utility>

// Everything the simulator is started with.
struct SkySimOptions
{
    static constexpr quint16 defaultPort = 8787;
    static constexpr int defaultCount = 60;
    static constexpr double defaultSpreadNM = 50.0;

    quint16 port = defaultPort; // 0: any free port
    quint64 seed = 1;
    int count = defaultCount; // aircraft per area
    double spreadNM = defaultSpreadNM;
    std::optional<GeoPoint> centre; // else the first point asked about
    bool frozen = false;
    std::optional<qint64> startEpochMs; // else the wall clock at start
    QString primaryListKey = QStringLiteral("ac");
    QString fallbackListKey = QStringLiteral("aircraft");
    FaultPlan primaryFault;
    FaultPlan fallbackFault;
    QList<std::pair<QString, FaultPlan>> faults; // further sources' start faults, by source name
    QString updateVersion = QStringLiteral("0.1.0");
    bool selfTest = false;
    bool logRequests = false;
};
