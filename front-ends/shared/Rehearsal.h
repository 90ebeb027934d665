// SPDX-License-Identifier: MIT
/// \file
/// Rehearsals: causes faults on a virtual installation. simulation/README.md lists the steps.
#pragma once

#include <string>

namespace ovra::frontend {

/// Performs a step such as "unplug camera 0 1". Returns the runtime's answer: lines that end with a line
/// feed, "" for most steps. Any thread.
///
/// \throws RequestError  with the runtime's description if it refuses the step; if there is no virtual installation
std::string rehearse(const std::string& step);

} // namespace ovra::frontend
