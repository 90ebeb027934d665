// SPDX-License-Identifier: MIT
/// \file
/// Changes the environment of the process.
#pragma once

#include <string>

namespace ovra::templates::platform {

/// Visible to everything that is started or loaded later in the process. GUI thread, before other threads
/// read the environment.
void setEnvironmentVariable(const std::string& name, const std::string& value);

} // namespace ovra::templates::platform
