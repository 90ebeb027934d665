// SPDX-License-Identifier: MIT
/// \file
/// Rehearsals: causes faults on a virtual installation. simulation/README.md lists the steps.
#pragma once

#include <string>

namespace ovra::reference {
class Application;
}

namespace ovra::frontend {

/// Performs a step such as "unplug camera 0 1". Returns the runtime's answer: lines that end with a line
/// feed, "" for most steps. Any thread.
///
/// \throws RequestError  with the runtime's description if it refuses the step; if there is no virtual installation
std::string rehearse(const std::string& step);

/// Searches for boards and cameras, so that the model shows a change of the hardware before the monitor's
/// next search. GUI thread. While a command runs it leaves the search to the monitor, because it would block
/// the GUI thread and delay a load.
void followHardware(const reference::Application& application);

} // namespace ovra::frontend
