// SPDX-License-Identifier: MIT
#include "ovra-core/HarloApplication.h"

#include "ApplicationState.h"
#include "ovra_log/reference/Journal.h"

namespace ovra::core {

using reference::currentApplication;
using reference::probe;

CommandProcessor::~CommandProcessor() = default;
PluginManager::~PluginManager() = default;

boost::shared_ptr<CommandProcessor> HarloApplication::commandprocessor()
{
    probe("HarloApplication::commandprocessor");
    const auto application = currentApplication();
    if (!application)
        return {};
    return {application, &application->processor};
}

boost::shared_ptr<PluginManager> HarloApplication::pluginmanager()
{
    probe("HarloApplication::pluginmanager");
    const auto application = currentApplication();
    if (!application)
        return {};
    return {application, &application->pluginFolder};
}

long long HarloApplication::getConfigIntEntry(const std::string& key, long long defaultValue)
{
    probe("HarloApplication::getConfigIntEntry", key);
    const auto application = currentApplication();
    return application ? application->configuration.get(key).value_or(defaultValue) : defaultValue;
}

void HarloApplication::setConfigEntry(const std::string& key, int value)
{
    probe("HarloApplication::setConfigEntry", key, '=', value);
    if (const auto application = currentApplication())
        application->configuration.set(key, value);
}

std::string HarloApplication::getRuntimeDirectory()
{
    probe("HarloApplication::getRuntimeDirectory");
    const auto application = currentApplication();
    return application ? application->runtimeDirectory : std::string();
}

} // namespace ovra::core
