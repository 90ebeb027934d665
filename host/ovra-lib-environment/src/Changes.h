// SPDX-License-Identifier: MIT
/// \file
/// Changes: what one search has changed in the model, in order.
#pragma once

#include "ovra-lib-environment/reference/EnvironmentObserver.h"

#include <vector>

namespace ovra::core::models {

using Changes = std::vector<reference::EnvironmentChange>;

} // namespace ovra::core::models
