// SPDX-License-Identifier: MIT
/// \file
/// Texts of parameters for the console's output.
#pragma once

#include "Fields.h"

#include "ovra-lib-parameters/Parameter.h"

#include <string>

namespace ovra::console {

/// "GAIN 1", "FG_WIDTH 1024 pixel"
std::string shortText(const parameters::Parameter& parameter);
/// "FG_WIDTH = 1024 pixel (1 to 8192)"
std::string longText(const parameters::Parameter& parameter);
/// The fields of a parameter, for output as JSON; \p owner is the title of its channel or board.
Fields fieldsOf(const std::string& owner, const parameters::Parameter& parameter);

} // namespace ovra::console
