/// \file
/// What a look at the machine has found changed, in the order in which the model took it up.
#pragma once

#include "ovra-lib-environment/reference/EnvironmentObserver.h"

#include <vector>

namespace ovra::core::models {

using Changes = std::vector<reference::EnvironmentChange>;

} // namespace ovra::core::models
