/// \file
/// Boards and cameras of the machine, as the runtime knows them.
#pragma once

#include "ovra-lib-environment/HlEnvironmentModel.h"

namespace ovra::core::models {

/// Brings \p root's board source "ovra" and its cameras up to date; nodes of what is still there stay.
/// Blocks. Throws std::runtime_error, with nothing changed, when the runtime cannot be used.
void discoverHardware(HlEnvironmentRootNode& root);

} // namespace ovra::core::models
