#pragma once

#include "FlightRoute.h"

#include <QByteArray>
#include <functional>
#include <optional>

class QObject;

// The route flown under a callsign, from the route service. Every failure is simply no route.
namespace RouteAPI {

// The header both lookup services get: it names us and how to reach us.
[[nodiscard]] QByteArray userAgent();
[[nodiscard]] std::optional<FlightRoute> decode(const QByteArray &json);
// Calls `done` once from the event loop, unless `context` is gone by then.
void fetch(const QString &callsign, QObject *context, std::function<void(std::optional<FlightRoute>)> done);

} // namespace RouteAPI
