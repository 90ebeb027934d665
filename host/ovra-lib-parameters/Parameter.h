// SPDX-License-Identifier: MIT
/// \file
/// Parameter: a named value of an applet or a camera, with its range and unit.
///
///   Parameter, Value, Choice    the data
///   toText, fromText            conversion between a value and the text that a user reads or types
///   choicesFromText             reads the runtime's list of choices
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
    std::string unit; ///< "": no unit
    double minimum = 0;
    double maximum = 0;
    double step = 0;
    bool writable = false;
    Value value;
    std::vector<Choice> choices; ///< empty: every value of the range is valid
};

/// Reads choices in the runtime's notation: "8=Mono8;12=Mono12".
OVRA_PARAMETERS_API std::vector<Choice> choicesFromText(const std::string& text);

/// The value for display; integers without a decimal point.
OVRA_PARAMETERS_API std::string toText(const Value& value);

/// Converts \p text to a value of the same type as that of \p parameter, or to the value of the choice that
/// it names.
/// \throws std::invalid_argument  with a message that names the parameter, its range and the text
OVRA_PARAMETERS_API Value fromText(const Parameter& parameter, const std::string& text);

} // namespace ovra::parameters
