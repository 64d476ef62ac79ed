#pragma once

#include "SkySimModule.h"

#include <memory>
#include <vector>

// Hands each request to the first module that claims it; 404 when none does.
class SkySimRouter
{
public:
    // Takes ownership; returns the module for its owner to keep talking to.
    template <typename Module> Module &add(std::unique_ptr<Module> module)
    {
        Module &added = *module;
        m_modules.push_back(std::move(module));
        return added;
    }

    [[nodiscard]] SkySimReply route(const SkySimRequest &request) const;

private:
    std::vector<std::unique_ptr<SkySimModule>> m_modules;
};
