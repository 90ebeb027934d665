// SPDX-License-Identifier: MIT
/// \file
/// ApplicationState: the parts of an application, and access to the current one.
#pragma once

#include "Configuration.h"
#include "Processor.h"
#include "WorkQueue.h"
#include "ovra-core/Plugin.h"
#include "ovra-core/PluginManager.h"
#include "ovra-core/reference/Application.h"
#include "ovra-core/reference/RuntimeEntries.h"

#include <atomic>
#include <filesystem>
#include <mutex>

namespace ovra::reference {

/// The reference host loads no plug-ins from files, so it only remembers whether it should watch the folder.
class PluginFolder final : public core::PluginManager
{
public:
    void startMonitor() override;
    void stopMonitor() override;
    bool isMonitoring() const;

private:
    std::atomic<bool> m_monitoring{false};
};

/// The application shares its ownership with every caller that holds a part of it.
struct ApplicationState
{
    explicit ApplicationState(const ApplicationOptions& options);

    const std::string runtimeDirectory;
    const std::filesystem::path runtimeLibrary;
    Configuration configuration;
    PluginFolder pluginFolder;
    WorkQueue queue;
    Processor processor;
    std::vector<boost::shared_ptr<core::Plugin>> plugins;

    std::mutex runtimeMutex;
    boost::shared_ptr<const RuntimeEntries> runtime;
};

/// Any thread. Empty if there is no application.
boost::shared_ptr<ApplicationState> currentApplication();
/// \throws std::logic_error  if there is one already
void setCurrentApplication(const boost::shared_ptr<ApplicationState>& state);
void clearCurrentApplication();

} // namespace ovra::reference
