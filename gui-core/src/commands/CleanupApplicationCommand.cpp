// SPDX-License-Identifier: MIT
#include "gui-core/CleanupApplicationCommand.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/PluginManager.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra_log/OvraLog.h"

#include <boost/make_shared.hpp>

namespace ovra::gui::commands {

namespace {

void releaseCameraModels()
{
    const auto root = Gui::environment()->model()->root();
    for (const auto cameras = root->getCameras(); cameras->hasNext(); cameras->advance())
        cameras->current()->setGenICamModelEntry({});
}

} // namespace

boost::shared_ptr<CleanupApplicationCommand> CleanupApplicationCommand::create()
{
    return boost::make_shared<CleanupApplicationCommand>();
}

CleanupApplicationCommand::CleanupApplicationCommand() : Command(Command::Cleanup) {}
CleanupApplicationCommand::CleanupApplicationCommand(const CleanupApplicationCommand& other) = default;
CleanupApplicationCommand&
CleanupApplicationCommand::operator=(const CleanupApplicationCommand& other) = default;
CleanupApplicationCommand::~CleanupApplicationCommand() = default;

void CleanupApplicationCommand::executeSync()
{
    Gui::environment()->stopMonitor();
    releaseCameraModels();
    // The front end may destroy itself in onCleanup: no message may reach it from here on.
    OvraLogSetMessageCallback(nullptr, nullptr);
    Gui::views()->onCleanup();
    core::HarloApplication::pluginmanager()->stopMonitor();
    core::HarloApplication::commandprocessor()->terminateAsyncCommands();
    OvraLogDeinit();
}

} // namespace ovra::gui::commands
