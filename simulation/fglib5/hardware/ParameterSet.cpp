// SPDX-License-Identifier: MIT
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

} // namespace

double numberOf(const ParameterValue& value)
{
    if (const auto* number = std::get_if<double>(&value))
        return *number;
    if (const auto* integer = std::get_if<std::int64_t>(&value))
        return static_cast<double>(*integer);
    throw Failure(FG_INVALID_TYPE, "A text stands where a number is expected");
}

namespace {

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

ParameterDescription ofChannel(ParameterDescription description)
{
    description.perDma = true;
    return description;
}

std::vector<NamedValue> choicesOf(const std::vector<const PixelFormat*>& formats)
{
    std::vector<NamedValue> choices;
    for (const auto* format : formats)
        choices.push_back({format->number, format->name});
    return choices;
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

// Steps count from the minimum; a step of 0 allows any value.
void requireStep(const ParameterDescription& description, std::int64_t value)
{
    const auto step = static_cast<std::int64_t>(description.step);
    if (step > 1 && (value - static_cast<std::int64_t>(description.minimum)) % step != 0)
        outOfRange(description.name + " goes in steps of " + std::to_string(step) + ", " +
                   std::to_string(value) + " is none");
}

void requireChoice(const ParameterDescription& description, std::int64_t value)
{
    const auto& choices = description.choices;
    if (!choices.empty() && std::ranges::find(choices, value, &NamedValue::value) == choices.end())
        outOfRange(description.name + " takes " + textOf(choices) + ", " + std::to_string(value) +
                   " is none of them");
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
        const double number = numberOf(value);
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
    const auto whole = [](int id, const char* name, const char* unit, int minimum, int maximum, int initial) {
        return ofChannel(
            numberParameter(id, name, unit, FG_TYPE_INT32, minimum, maximum, std::int64_t{initial}));
    };
    std::vector<ParameterDescription> descriptions = {
        whole(FG_WIDTH, "FG_WIDTH", "pixel", 1, dma.maxWidth, dma.width),
        whole(FG_HEIGHT, "FG_HEIGHT", "lines", 1, dma.maxHeight, dma.height),
        ofChannel(choiceParameter(FG_PIXELFORMAT, "FG_PIXELFORMAT", choicesOf(dma.formats),
                                  dma.formats.front()->number)),
        whole(FG_TIMEOUT_PARAMETER, "FG_TIMEOUT", "s", 1, std::numeric_limits<std::int32_t>::max(), 10),
    };
    if (!dma.generator)
        return descriptions;
    const int pattern =
        dma.generator->pattern == Pattern::Ramp ? FG_GEN_PATTERN_RAMP : FG_GEN_PATTERN_CHECKERBOARD;
    descriptions.push_back(whole(FG_GEN_ENABLE, "FG_GEN_ENABLE", "", 0, 1, dma.generator->enabled ? 1 : 0));
    descriptions.push_back(ofChannel(numberParameter(FG_GEN_FRAMERATE, "FG_GEN_FRAMERATE", "Hz",
                                                     FG_TYPE_DOUBLE, 0, 100000, dma.generator->frameRate)));
    descriptions.push_back(ofChannel(choiceParameter(
        FG_GEN_PATTERN, "FG_GEN_PATTERN",
        {{FG_GEN_PATTERN_RAMP, "ramp"}, {FG_GEN_PATTERN_CHECKERBOARD, "checkerboard"}}, pattern)));
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
        if (text.find_first_of("\r\n") != std::string::npos) // a configuration file cannot contain it
            outOfRange(description.name + " takes a text of one line");
        return text;
    }
    const double number = numberOf(value);
    if (!(number >= description.minimum && number <= description.maximum))
        outOfRange(description.name + " takes " + textOf(description.minimum) + " to " +
                   textOf(description.maximum) + ", " + textOf(value) + " is outside");
    if (description.type == FG_TYPE_DOUBLE)
        return number;
    const auto integer = integerOf(value);
    requireStep(description, integer);
    requireChoice(description, integer);
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

RegisterList::RegisterList(std::initializer_list<const ParameterSet*> sets)
{
    for (const auto* set : sets) {
        for (const auto& description : set->descriptions()) {
            choices.push_back(textOf(description.choices));
            descriptions.push_back({description.id, description.name.c_str(), description.unit.c_str(),
                                    description.type, description.minimum, description.maximum,
                                    description.step, description.writable ? 1 : 0, choices.back().c_str()});
        }
    }
    info.count = static_cast<unsigned int>(descriptions.size());
    info.parameters = descriptions.data();
}

} // namespace simulation
