// SPDX-License-Identifier: MIT
/// \file
/// Rehearsals: causes faults on a virtual installation while a program runs. simulation/README.md lists the steps.
///
/// \code
/// reference::rehearse("unplug camera 0 1"); // board 0, port 1
/// \endcode
#pragma once

#include "ovra-core/Export.h"

#include <string>

namespace ovra::reference {

/// Performs a step. Returns the runtime's answer: lines that end with a line feed, "" for most steps. Any thread.
///
/// \throws std::runtime_error  with the runtime's description if it refuses the step; if there is no application or no
///     usable runtime; if the installation is not virtual
OVRA_CORE_API std::string rehearse(const std::string& step);

} // namespace ovra::reference
