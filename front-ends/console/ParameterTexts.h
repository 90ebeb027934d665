/// \file
/// Parameters as the console shows them.
#pragma once

#include "Fields.h"

#include "ovra-lib-parameters/Parameter.h"

#include <string>

namespace ovra::console {

/// "GAIN 1", "FG_WIDTH 1024 pixel"
std::string shortText(const parameters::Parameter& parameter);
/// "FG_WIDTH = 1024 pixel (1 to 8192)"
std::string longText(const parameters::Parameter& parameter);
/// For a program; \p owner is the channel or board that has it, as it is shown.
Fields fieldsOf(const std::string& owner, const parameters::Parameter& parameter);

} // namespace ovra::console
