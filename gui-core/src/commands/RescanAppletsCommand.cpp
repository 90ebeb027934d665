// SPDX-License-Identifier: MIT
#include "gui-core/RescanAppletsCommand.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

#include "ovra-lib-environment/Environment.h"

#include <boost/make_shared.hpp>

namespace ovra::gui::commands {

boost::shared_ptr<RescanAppletsCommand> RescanAppletsCommand::create()
{
    return boost::make_shared<RescanAppletsCommand>();
}

RescanAppletsCommand::RescanAppletsCommand() : Command(Command::Asynchronous) {}
RescanAppletsCommand::RescanAppletsCommand(const RescanAppletsCommand& other) = default;
RescanAppletsCommand& RescanAppletsCommand::operator=(const RescanAppletsCommand& other) = default;
RescanAppletsCommand::~RescanAppletsCommand() = default;

void RescanAppletsCommand::executeSync()
{
    Gui::views()->setRescanInProgress(true);
}

void RescanAppletsCommand::executeAsync()
{
    Gui::environment()->discoverResourcesOnce();
}

void RescanAppletsCommand::executePostAsync()
{
    Gui::views()->setRescanInProgress(false);
}

} // namespace ovra::gui::commands
