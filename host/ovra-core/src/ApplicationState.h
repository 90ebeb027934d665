/// \file
/// What an application consists of, and the way to the present one.
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

/// The reference host loads no plug-ins from files: there is nothing to watch but whether it should.
class PluginFolder final : public core::PluginManager
{
public:
    void startMonitor() override;
    void stopMonitor() override;
    bool isMonitoring() const;

private:
    std::atomic<bool> m_monitoring{false};
};

/// Held by the application, and by everybody who was given a part of it.
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

/// Any thread. Empty when there is no application.
boost::shared_ptr<ApplicationState> currentApplication();
/// Throws std::logic_error when there is one already.
void setCurrentApplication(const boost::shared_ptr<ApplicationState>& state);
void clearCurrentApplication();

} // namespace ovra::reference
