/// \file
/// Rehearsals: what goes wrong on purpose on a virtual installation. simulation/README.md lists the steps.
#pragma once

#include <string>

namespace ovra::frontend {

/// Performs a step such as "unplug camera 0 1". Returns what the runtime answers: lines with a line feed
/// each, "" for most steps. Any thread. Throws RequestError with the runtime's words when it refuses the
/// step, and when the installation is not a virtual one.
std::string rehearse(const std::string& step);

} // namespace ovra::frontend
