#pragma once

#include "SkySimReply.h"
#include "SkySimRequest.h"

#include <optional>

// One service of the simulator (the feeds, routes, photos, tower-feed audio, tiles, the geocoder, the
// update feed, the control API). The router offers each request to the modules in the order they were
// added; the first that claims the path answers it.
class SkySimModule
{
public:
    virtual ~SkySimModule() = default;

    // The reply to a request whose path is this module's, nothing for any other path. A module that
    // claims a path answers every method on it, if only with 405.
    [[nodiscard]] virtual std::optional<SkySimReply> handle(const SkySimRequest &request) = 0;

protected:
    SkySimModule() = default;
    SkySimModule(const SkySimModule &) = default;
    SkySimModule &operator=(const SkySimModule &) = default;
};
