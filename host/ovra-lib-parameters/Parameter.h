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

/// An integer, a floating-point number or a text. A parameter's value always has the same of these types.
using Value = std::variant<std::int64_t, double, std::string>;

/// A value that a parameter can take, by its name.
struct Choice
{
    std::int64_t value = 0;
    std::string name;
};

/// One parameter, as FgLibModel::parameters and GenICamModel::parameters return it. A copy: to change the
/// parameter, call the model's setParameter.
struct Parameter
{
    int id = 0;         ///< the runtime's parameter id
    std::string name;   ///< unique within its model, such as "FG_WIDTH" or "ExposureTime"
    std::string unit;   ///< of value, minimum, maximum and step; "": no unit
    double minimum = 0; ///< minimum and maximum are equal if there is no range
    double maximum = 0;
    double step = 0;             ///< distance between valid values; 0: every value of the range
    bool writable = false;       ///< false: setParameter is refused
    Value value;                 ///< when it was read
    std::vector<Choice> choices; ///< empty: every value of the range is valid
};

/// Reads choices in the runtime's notation: "8=Mono8;12=Mono12". Skips what is not a choice; "" has none.
OVRA_PARAMETERS_API std::vector<Choice> choicesFromText(const std::string& text);

/// The value as text; integers without a decimal point, other numbers as short as they read back unchanged.
/// Independent of the locale.
OVRA_PARAMETERS_API std::string toText(const Value& value);

/// Converts \p text to a value of the same type as that of \p parameter, or to the value of the choice whose
/// name or number it is. Checks the range, but not the step. A point separates decimals, whatever the locale;
/// no blanks around a number.
/// \throws std::invalid_argument  with a message that names the parameter, its range and the text
OVRA_PARAMETERS_API Value fromText(const Parameter& parameter, const std::string& text);

} // namespace ovra::parameters
