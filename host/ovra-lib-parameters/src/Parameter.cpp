#include "ovra-lib-parameters/Parameter.h"

#include "ovra_log/reference/Journal.h"

#include <array>
#include <charconv>
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
    // Written so that a number that is none is outside, too.
    if (hasRange(parameter) && !(value >= parameter.minimum && value <= parameter.maximum))
        refuse(parameter, kind, text);
    return number;
}

struct Text
{
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(double value) const { return numberText(value); }
    std::string operator()(const std::string& value) const { return value; }
};

} // namespace

std::string toText(const Value& value)
{
    reference::probe("parameters::toText");
    return std::visit(Text{}, value);
}

Value fromText(const Parameter& parameter, const std::string& text)
{
    reference::probe("parameters::fromText", parameter.name, '=', text);
    if (std::holds_alternative<std::int64_t>(parameter.value))
        return numberFromText<std::int64_t>(parameter, "an integer", text);
    if (std::holds_alternative<double>(parameter.value))
        return numberFromText<double>(parameter, "a number", text);
    return text;
}

} // namespace ovra::parameters
