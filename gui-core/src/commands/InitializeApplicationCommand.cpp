// SPDX-License-Identifier: MIT
#include "gui-core/InitializeApplicationCommand.h"

#include "messages/CommandSubmission.h"
#include "messages/LogForwarding.h"
#include "platform/ProcessEnvironment.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

#include "ovra-core/HarloApplication.h"
#include "ovra-core/PluginManager.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra_log/OvraLog.h"

#include <boost/make_shared.hpp>

#include <string>
#include <vector>

namespace ovra::gui::commands {

namespace {

void scanAppletFiles(core::models::HlEnvironmentRootNode& root)
{
    const auto collection = root.getFilesEntryNode();
    const int count = static_cast<int>(collection->getAllFilesEntryChildCount());
    // Collected before the first scan, so that files which appear or vanish in the meantime keep the
    // numbering.
    std::vector<boost::shared_ptr<core::models::HlEnvironmentFileNode>> files;
    for (const auto all = collection->getAllFiles(); all->hasNext(); all->advance())
        files.push_back(all->current());

    // The count and the walk are two requests: if a file appears or vanishes between them, the smaller number
    // holds.
    for (int i = 1; i <= count && i <= static_cast<int>(files.size()); ++i) {
        const auto& file = files[static_cast<std::size_t>(i - 1)];
        messages::postSplashMessage("Scanning File " + std::to_string(i) + "/" + std::to_string(count) +
                                    " (" + file->getFileName() + ")");
        file->scan();
    }
}

} // namespace

boost::shared_ptr<InitializeApplicationCommand> InitializeApplicationCommand::create()
{
    return boost::make_shared<InitializeApplicationCommand>();
}

InitializeApplicationCommand::InitializeApplicationCommand() : Command(Command::Asynchronous) {}
InitializeApplicationCommand::InitializeApplicationCommand(const InitializeApplicationCommand& other) =
    default;
InitializeApplicationCommand&
InitializeApplicationCommand::operator=(const InitializeApplicationCommand& other) = default;
InitializeApplicationCommand::~InitializeApplicationCommand() = default;

void InitializeApplicationCommand::executeSync()
{
    // Before anything that reads it is started.
    templates::platform::setEnvironmentVariable("OVRA_ENABLE_DRA", "On");
    OvraLogInit();
    const auto views = Gui::views();
    views->onInitializeBegin();
    OvraLogSetMessageCallback(&messages::forwardLogMessage, nullptr);
    views->onLoggingInstalled();
    views->onInitializeSync();
    views->showSplashscreenMessage("Starting...");
}

void InitializeApplicationCommand::executeAsync()
{
    const auto environment = Gui::environment();
    const auto root = environment->model()->root();

    messages::postSplashMessage("Discovering Resources...");
    environment->enableAutoScan(false);
    environment->discoverResourcesOnce();
    environment->discoverResources();

    messages::postSplashMessage("Scanning Applets...");
    scanAppletFiles(*root);

    environment->enableAutoScan(true);
    environment->startMonitor();
    core::HarloApplication::pluginmanager()->startMonitor();
}

void InitializeApplicationCommand::executePostAsync()
{
    messages::postSplashMessage("Filling Caches...");
    Gui::views()->fillCaches();
    messages::postSplashMessage("Initialization done.");
    Gui::views()->onInitializationDone();
}

} // namespace ovra::gui::commands
