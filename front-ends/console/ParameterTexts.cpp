// SPDX-License-Identifier: MIT
#include "ParameterTexts.h"

#include <cmath>

namespace ovra::console {

using parameters::Parameter;

namespace {

// Bounds are floating-point numbers for all types; "100000" is easier to read than "1e+05".
std::string boundText(double bound)
{
    constexpr double MAX_EXACT_INTEGER = 1e15;
    const bool whole = std::abs(bound) < MAX_EXACT_INTEGER && std::trunc(bound) == bound;
    return parameters::toText(whole ? parameters::Value(static_cast<std::int64_t>(bound))
                                    : parameters::Value(bound));
}

std::string valueText(const Parameter& parameter)
{
    const std::string value = parameters::toText(parameter.value);
    if (std::holds_alternative<std::string>(parameter.value))
        return '"' + value + '"';
    return parameter.unit.empty() ? value : value + ' ' + parameter.unit;
}

std::string choicesText(const std::vector<parameters::Choice>& choices)
{
    std::string text;
    for (const auto& choice : choices)
        text += (text.empty() ? "" : ", ") + std::to_string(choice.value) + ' ' + choice.name;
    return text;
}

/// The valid values; empty if there is no restriction.
std::string rangeText(const Parameter& parameter)
{
    if (!parameter.writable)
        return "read only";
    if (!parameter.choices.empty())
        return choicesText(parameter.choices);
    if (!(parameter.minimum < parameter.maximum))
        return "";
    const bool coarse = std::holds_alternative<std::int64_t>(parameter.value) && parameter.step > 1;
    return boundText(parameter.minimum) + " to " + boundText(parameter.maximum) +
           (coarse ? " in steps of " + boundText(parameter.step) : "");
}

} // namespace

std::string shortText(const Parameter& parameter)
{
    return parameter.name + ' ' + valueText(parameter);
}

std::string longText(const Parameter& parameter)
{
    const std::string range = rangeText(parameter);
    return parameter.name + " = " + valueText(parameter) + (range.empty() ? "" : " (" + range + ')');
}

Fields fieldsOf(const std::string& owner, const Parameter& parameter)
{
    Fields fields{{"owner", owner}, {"name", parameter.name}};
    std::visit([&](const auto& value) { fields.push_back({"value", value}); }, parameter.value);
    fields.insert(fields.end(), {{"unit", parameter.unit},
                                 {"minimum", parameter.minimum},
                                 {"maximum", parameter.maximum},
                                 {"step", parameter.step},
                                 {"writable", parameter.writable}});
    if (parameter.choices.empty())
        return fields;
    std::vector<std::string> names;
    std::vector<std::int64_t> values;
    for (const auto& choice : parameter.choices) {
        names.push_back(choice.name);
        values.push_back(choice.value);
    }
    fields.insert(fields.end(), {{"choices", names}, {"choiceValues", values}});
    return fields;
}

} // namespace ovra::console
