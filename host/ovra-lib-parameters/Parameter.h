/// \file
/// Parameter: a named value of an applet with its range and unit.
#pragma once

#include "ovra-lib-parameters/Export.h"

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace ovra::parameters {

using Value = std::variant<std::int64_t, double, std::string>;

/// A value that a parameter can take, by its name.
struct Choice
{
    std::int64_t value = 0;
    std::string name;
};

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
    std::vector<Choice> choices; ///< none: every value of the range can be written
};

/// Reads choices as the runtime lists them: "8=Mono8;12=Mono12".
OVRA_PARAMETERS_API std::vector<Choice> choicesFromText(const std::string& text);

/// The value as a person would write it; integers without a point.
OVRA_PARAMETERS_API std::string toText(const Value& value);

/// Reads \p text as a value of the kind that \p parameter holds, or as the name of one of its choices. Throws
/// std::invalid_argument with a message that names the parameter, its range and the text.
OVRA_PARAMETERS_API Value fromText(const Parameter& parameter, const std::string& text);

} // namespace ovra::parameters
