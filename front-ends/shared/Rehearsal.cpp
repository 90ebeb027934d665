// SPDX-License-Identifier: MIT
#include "Rehearsal.h"

#include "RequestError.h"

#include "gui-core/Gui.h"
#include "ovra-core/reference/Application.h"
#include "ovra-core/reference/Rehearsal.h"
#include "ovra-lib-environment/Environment.h"

namespace ovra::frontend {

std::string rehearse(const std::string& step)
{
    try {
        return reference::rehearse(step);
    } catch (const std::runtime_error& refusal) {
        throw RequestError(refusal.what());
    }
}

void followHardware(const reference::Application& application)
{
    if (application.idle())
        gui::Gui::environment()->discoverResourcesOnce();
}

} // namespace ovra::frontend
