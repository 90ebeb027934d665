// SPDX-License-Identifier: MIT
#include "server/Message.h"

#include <limits>

namespace ovra::viewer {

using nlohmann::json;

namespace {

constexpr int DEEPEST_NESTING = 16;
constexpr int MAX_COORDINATE = 1 << 20;
constexpr int MAX_SCREEN_SIDE = 1 << 14;
constexpr std::size_t MAX_NAME_BYTES = 64;

json parse(std::string_view text)
{
    const auto shallow = [](int depth, json::parse_event_t, json&) {
        if (depth > DEEPEST_NESTING)
            throw MessageError("the message is nested too deeply");
        return true;
    };
    try {
        auto message = json::parse(text, shallow);
        if (!message.is_object())
            throw MessageError("a message is an object");
        return message;
    } catch (const json::exception&) {
        throw MessageError("the message is no JSON text");
    }
}

const json& member(const json& object, const char* name)
{
    const auto found = object.find(name);
    if (found == object.end())
        throw MessageError(std::string("'") + name + "' is missing");
    return *found;
}

std::int64_t wholeNumber(const json& value, const char* name, std::int64_t lowest, std::int64_t highest)
{
    const bool tooLarge =
        value.is_number_unsigned() && value.get<std::uint64_t>() > static_cast<std::uint64_t>(highest);
    if (!value.is_number_integer() || tooLarge || value.get<std::int64_t>() < lowest ||
        value.get<std::int64_t>() > highest)
        throw MessageError(std::string("'") + name + "' is no whole number from " + std::to_string(lowest) +
                           " to " + std::to_string(highest));
    return value.get<std::int64_t>();
}

template <std::size_t COUNT>
std::array<int, COUNT> coordinates(const json& value, const char* name, int lowest = -MAX_COORDINATE,
                                   int highest = MAX_COORDINATE)
{
    if (!value.is_array() || value.size() != COUNT)
        throw MessageError(std::string("'") + name + "' is no list of " + std::to_string(COUNT) + " numbers");
    std::array<int, COUNT> numbers{};
    for (std::size_t i = 0; i < COUNT; ++i)
        numbers[i] = static_cast<int>(wholeNumber(value[i], name, lowest, highest));
    return numbers;
}

template <std::size_t COUNT>
std::optional<std::array<int, COUNT>> optionalCoordinates(const json& message, const char* name)
{
    const auto found = message.find(name);
    if (found == message.end() || found->is_null())
        return std::nullopt;
    return coordinates<COUNT>(*found, name);
}

std::uint32_t channelOf(const json& message)
{
    return static_cast<std::uint32_t>(
        numberArgument(message, "channel", 0, std::numeric_limits<std::uint32_t>::max()));
}

Hello readHello(const json& message)
{
    return {static_cast<int>(numberArgument(message, "version", 0, MAX_COORDINATE)),
            textArgument(message, "token")};
}

Request readRequest(const json& message)
{
    Request request;
    request.id = numberArgument(message, "id", 0, std::numeric_limits<std::int32_t>::max());
    request.name = textArgument(message, "name");
    if (request.name.size() > MAX_NAME_BYTES)
        throw MessageError("'name' is too long");
    if (const auto found = message.find("arguments"); found != message.end())
        request.arguments = *found;
    if (!request.arguments.is_object())
        throw MessageError("'arguments' is no object");
    return request;
}

ShowView readShowView(const json& message)
{
    ShowView view;
    view.channel = channelOf(message);
    view.view = static_cast<std::uint32_t>(
        numberArgument(message, "view", 0, std::numeric_limits<std::uint32_t>::max()));
    const auto region = coordinates<4>(member(message, "region"), "region");
    view.region = {region[0], region[1], region[2], region[3]};
    const auto screen = coordinates<2>(member(message, "screen"), "screen", 1, MAX_SCREEN_SIDE);
    view.screenWidth = screen[0];
    view.screenHeight = screen[1];
    view.histogram = flagArgument(message, "histogram");
    view.pixel = optionalCoordinates<2>(message, "pixel");
    view.line = optionalCoordinates<4>(message, "line");
    return view;
}

} // namespace

Message readMessage(std::string_view text)
{
    const json message = parse(text);
    const std::string type = textArgument(message, "type");
    if (type == "hello")
        return readHello(message);
    if (type == "request")
        return readRequest(message);
    if (type == "show")
        return readShowView(message);
    if (type == "hide")
        return HideView{channelOf(message)};
    if (type == "shown")
        return Acknowledge{channelOf(message)};
    throw MessageError("there is no such type of message");
}

std::string textArgument(const json& arguments, const char* name)
{
    const json& value = member(arguments, name);
    if (!value.is_string())
        throw MessageError(std::string("'") + name + "' is no text");
    return value.get<std::string>();
}

bool flagArgument(const json& arguments, const char* name)
{
    const json& value = member(arguments, name);
    if (!value.is_boolean())
        throw MessageError(std::string("'") + name + "' is neither true nor false");
    return value.get<bool>();
}

std::int64_t numberArgument(const json& arguments, const char* name, std::int64_t lowest,
                            std::int64_t highest)
{
    return wholeNumber(member(arguments, name), name, lowest, highest);
}

} // namespace ovra::viewer
