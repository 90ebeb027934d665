// SPDX-License-Identifier: MIT
#include "ovra-lib-parameters/Parameter.h"

#include "ovra_log/reference/Journal.h"

#include <array>
#include <charconv>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace ovra::parameters {

namespace {

// The shortest text that reads back as the same number.
std::string numberText(double number)
{
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), result.ptr};
}

bool hasRange(const Parameter& parameter)
{
    return parameter.minimum < parameter.maximum;
}

[[noreturn]] void refuse(const Parameter& parameter, const char* kind, const std::string& text)
{
    std::string message = "Parameter " + parameter.name + ": expected " + kind;
    if (hasRange(parameter))
        message += " from " + numberText(parameter.minimum) + " to " + numberText(parameter.maximum);
    if (!parameter.unit.empty())
        message += " (" + parameter.unit + ')';
    throw std::invalid_argument(message + ", found \"" + text + '"');
}

template <class Number>
Number numberFromText(const Parameter& parameter, const char* kind, const std::string& text)
{
    Number number{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc{} || result.ptr != end)
        refuse(parameter, kind, text);
    const auto value = static_cast<double>(number);
    // Written so that NaN is also out of range.
    if (hasRange(parameter) && !(value >= parameter.minimum && value <= parameter.maximum))
        refuse(parameter, kind, text);
    return number;
}

std::string listed(const std::vector<Choice>& choices)
{
    std::string list;
    for (const auto& choice : choices)
        list += (list.empty() ? "" : ", ") + std::to_string(choice.value) + " (" + choice.name + ')';
    return list;
}

Value choiceFromText(const Parameter& parameter, const std::string& text)
{
    for (const auto& choice : parameter.choices)
        if (text == choice.name || text == std::to_string(choice.value))
            return choice.value;
    throw std::invalid_argument("Parameter " + parameter.name + ": expected one of " +
                                listed(parameter.choices) + ", found \"" + text + '"');
}

struct Text
{
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(double value) const { return numberText(value); }
    std::string operator()(const std::string& value) const { return value; }
};

} // namespace

std::vector<Choice> choicesFromText(const std::string& text)
{
    std::vector<Choice> choices;
    std::istringstream list(text);
    for (std::string item; std::getline(list, item, ';');) {
        Choice choice;
        const char* const end = item.data() + item.size();
        const auto [stop, error] = std::from_chars(item.data(), end, choice.value);
        if (error != std::errc{} || stop == end || *stop != '=')
            continue; // not a valid choice
        choice.name.assign(stop + 1, end);
        choices.push_back(choice);
    }
    return choices;
}

std::string toText(const Value& value)
{
    reference::probe("parameters::toText");
    return std::visit(Text{}, value);
}

Value fromText(const Parameter& parameter, const std::string& text)
{
    reference::probe("parameters::fromText", parameter.name, '=', text);
    if (!parameter.choices.empty())
        return choiceFromText(parameter, text);
    if (std::holds_alternative<std::int64_t>(parameter.value))
        return numberFromText<std::int64_t>(parameter, "an integer", text);
    if (std::holds_alternative<double>(parameter.value))
        return numberFromText<double>(parameter, "a number", text);
    return text;
}

} // namespace ovra::parameters
