/// \file
/// Parameter: a named value of an applet with its range and unit.
#pragma once

#include "ovra-lib-parameters/Export.h"

#include <cstdint>
#include <string>
#include <variant>

namespace ovra::parameters {

using Value = std::variant<std::int64_t, double, std::string>;

struct Parameter
{
    int id = 0; ///< the runtime's parameter id
    std::string name;
    std::string unit; ///< "" where there is none
    double minimum = 0;
    double maximum = 0;
    double step = 0;
    bool writable = false;
    Value value;
};

/// The value as a person would write it; integers without a point.
OVRA_PARAMETERS_API std::string toText(const Value& value);

/// Reads \p text as a value of the kind that \p parameter holds. Throws std::invalid_argument with a message
/// that names the parameter, its range and the text.
OVRA_PARAMETERS_API Value fromText(const Parameter& parameter, const std::string& text);

} // namespace ovra::parameters
