#include "SkySimRouter.h"

SkySimReply SkySimRouter::route(const SkySimRequest &request) const
{
    for (const auto &module : m_modules) {
        if (auto reply = module->handle(request))
            return std::move(*reply);
    }
    return SkySimReply::text("no such path: " + request.path.toUtf8(), 404);
}
