#include "hardware/ParameterSet.h"

#include "Failure.h"
#include "descriptions/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace simulation {

namespace {

[[noreturn]] void outOfRange(const std::string& what)
{
    throw Failure(FG_VALUE_OUT_OF_RANGE, what);
}

template <class Integer>
ParameterValue readInteger(const void* value)
{
    Integer number{};
    std::memcpy(&number, value, sizeof number);
    if (!std::in_range<std::int64_t>(number))
        outOfRange(std::to_string(number) + " is too large");
    return static_cast<std::int64_t>(number);
}

template <class Integer>
void writeInteger(std::int64_t number, void* target)
{
    if (!std::in_range<Integer>(number))
        outOfRange(std::to_string(number) + " does not fit the asked type");
    const auto converted = static_cast<Integer>(number);
    std::memcpy(target, &converted, sizeof converted);
}

std::int64_t integerOf(const ParameterValue& value)
{
    if (const auto* integer = std::get_if<std::int64_t>(&value))
        return *integer;
    if (std::holds_alternative<std::string>(value))
        throw Failure(FG_INVALID_TYPE, "A text stands where a number is expected");
    const double number = std::get<double>(value);
    if (!(std::abs(number) <= EXACT_INTEGERS) || std::trunc(number) != number)
        outOfRange(textOf(value) + " is not a whole number");
    return static_cast<std::int64_t>(number);
}

double doubleOf(const ParameterValue& value)
{
    if (const auto* number = std::get_if<double>(&value))
        return *number;
    if (const auto* integer = std::get_if<std::int64_t>(&value))
        return static_cast<double>(*integer);
    throw Failure(FG_INVALID_TYPE, "A text stands where a number is expected");
}

const std::string& stringOf(const ParameterValue& value)
{
    if (const auto* text = std::get_if<std::string>(&value))
        return *text;
    throw Failure(FG_INVALID_TYPE, "A number stands where a text is expected");
}

char* copied(const std::string& text)
{
    auto* copy = new char[text.size() + 1]; // freed by Fg_freeParameterStringWithType
    std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

ParameterDescription integerParameter(int id, const char* name, const char* unit, int minimum, int maximum,
                                      int initial)
{
    return {.id = id,
            .name = name,
            .unit = unit,
            .type = FG_TYPE_INT32,
            .minimum = static_cast<double>(minimum),
            .maximum = static_cast<double>(maximum),
            .step = 1,
            .initial = std::int64_t{initial},
            .writable = true,
            .perDma = true};
}

template <class Number>
ParameterValue parsed(const std::string& text)
{
    Number number{};
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end)
        throw Failure(FG_INVALID_TYPE, "'" + text + "' is not a number of the parameter's type");
    return number;
}

// A step counts from the minimum; one of 0 means any value.
void requireStep(const ParameterDescription& description, std::int64_t value)
{
    const auto step = static_cast<std::int64_t>(description.step);
    if (step > 1 && (value - static_cast<std::int64_t>(description.minimum)) % step != 0)
        outOfRange(description.name + " goes in steps of " + std::to_string(step) + ", " +
                   std::to_string(value) + " is none");
}

} // namespace

ParameterValue readValue(const void* value, FgValueType type)
{
    switch (type) {
    case FG_TYPE_INT32:
        return readInteger<std::int32_t>(value);
    case FG_TYPE_UINT32:
        return readInteger<std::uint32_t>(value);
    case FG_TYPE_INT64:
        return readInteger<std::int64_t>(value);
    case FG_TYPE_UINT64:
        return readInteger<std::uint64_t>(value);
    case FG_TYPE_DOUBLE: {
        double number = 0;
        std::memcpy(&number, value, sizeof number);
        return number;
    }
    case FG_TYPE_STRING:
        return std::string(static_cast<const char*>(value));
    default:
        throw Failure(FG_INVALID_TYPE, "There is no value type " + std::to_string(type));
    }
}

void writeValue(const ParameterValue& value, void* target, FgValueType type)
{
    switch (type) {
    case FG_TYPE_INT32:
        return writeInteger<std::int32_t>(integerOf(value), target);
    case FG_TYPE_UINT32:
        return writeInteger<std::uint32_t>(integerOf(value), target);
    case FG_TYPE_INT64:
        return writeInteger<std::int64_t>(integerOf(value), target);
    case FG_TYPE_UINT64:
        return writeInteger<std::uint64_t>(integerOf(value), target);
    case FG_TYPE_DOUBLE: {
        const double number = doubleOf(value);
        std::memcpy(target, &number, sizeof number);
        return;
    }
    case FG_TYPE_STRING: {
        char* text = copied(stringOf(value));
        std::memcpy(target, &text, sizeof(char*));
        return;
    }
    default:
        throw Failure(FG_INVALID_TYPE, "There is no value type " + std::to_string(type));
    }
}

std::string textOf(const ParameterValue& value)
{
    if (const auto* text = std::get_if<std::string>(&value))
        return "'" + *text + "'";
    if (const auto* integer = std::get_if<std::int64_t>(&value))
        return std::to_string(*integer);
    return numberText(std::get<double>(value));
}

ParameterValue valueOf(const std::string& text, FgValueType type)
{
    if (type == FG_TYPE_STRING)
        return text;
    return type == FG_TYPE_DOUBLE ? parsed<double>(text) : parsed<std::int64_t>(text);
}

std::vector<ParameterDescription> channelParameters(const DmaDescription& dma)
{
    std::vector<ParameterDescription> descriptions = {
        integerParameter(FG_WIDTH, "FG_WIDTH", "pixel", 1, dma.maxWidth, dma.width),
        integerParameter(FG_HEIGHT, "FG_HEIGHT", "lines", 1, dma.maxHeight, dma.height),
        integerParameter(FG_PIXELFORMAT, "FG_PIXELFORMAT", "", FG_PIXELFORMAT_MONO8, FG_PIXELFORMAT_MONO8,
                         FG_PIXELFORMAT_MONO8),
        integerParameter(FG_TIMEOUT_PARAMETER, "FG_TIMEOUT", "s", 1, std::numeric_limits<std::int32_t>::max(),
                         10),
    };
    if (!dma.generator)
        return descriptions;
    descriptions.push_back(
        integerParameter(FG_GEN_ENABLE, "FG_GEN_ENABLE", "", 0, 1, dma.generator->enabled ? 1 : 0));
    descriptions.push_back({.id = FG_GEN_FRAMERATE,
                            .name = "FG_GEN_FRAMERATE",
                            .unit = "Hz",
                            .type = FG_TYPE_DOUBLE,
                            .minimum = 0,
                            .maximum = 100000,
                            .step = 0,
                            .initial = dma.generator->frameRate,
                            .writable = true,
                            .perDma = true});
    return descriptions;
}

ParameterSet::ParameterSet(std::vector<ParameterDescription> descriptions) : m_specs(std::move(descriptions))
{
    for (const auto& description : m_specs)
        m_values.push_back(description.initial);
}

const ParameterDescription* ParameterSet::find(int id) const
{
    const auto found = std::ranges::find(m_specs, id, &ParameterDescription::id);
    return found == m_specs.end() ? nullptr : &*found;
}

const ParameterDescription* ParameterSet::find(std::string_view name) const
{
    const auto found = std::ranges::find(m_specs, name, &ParameterDescription::name);
    return found == m_specs.end() ? nullptr : &*found;
}

std::size_t ParameterSet::indexOf(int id) const
{
    return static_cast<std::size_t>(std::ranges::find(m_specs, id, &ParameterDescription::id) -
                                    m_specs.begin());
}

const ParameterValue& ParameterSet::get(int id) const
{
    return m_values[indexOf(id)];
}

ParameterValue ParameterSet::checked(const ParameterDescription& description,
                                     const ParameterValue& value) const
{
    if (!description.writable)
        throw Failure(FG_NOT_WRITABLE, description.name + " cannot be written");
    if (description.type == FG_TYPE_STRING) {
        const auto& text = stringOf(value);
        if (text.find_first_of("\r\n") != std::string::npos) // a configuration file could not hold it
            outOfRange(description.name + " takes a text of one line");
        return text;
    }
    const double number = doubleOf(value);
    if (!(number >= description.minimum && number <= description.maximum))
        outOfRange(description.name + " takes " + textOf(description.minimum) + " to " +
                   textOf(description.maximum) + ", " + textOf(value) + " is outside");
    if (description.type == FG_TYPE_DOUBLE)
        return number;
    const auto integer = integerOf(value);
    requireStep(description, integer);
    return integer;
}

void ParameterSet::set(const ParameterDescription& description, const ParameterValue& value)
{
    m_values[indexOf(description.id)] = checked(description, value);
}

int ParameterSet::integer(int id) const
{
    return static_cast<int>(std::get<std::int64_t>(get(id)));
}

} // namespace simulation
