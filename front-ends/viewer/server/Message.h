// SPDX-License-Identifier: MIT
/// \file
/// The messages that a browser sends over its WebSocket, read and checked.
///
///   Hello        the first message: protocol version and token
///   Request      asks for an action; answered with done, or failed with a text
///   ShowView     asks for images of a channel: this region, for a screen area of this size
///   HideView     ends that
///   Acknowledge  an image was drawn; the next may follow
#pragma once

#include "images/ImageView.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

namespace ovra::viewer {

/// A page with another version is rejected.
inline constexpr int PROTOCOL_VERSION = 1;

struct Hello
{
    int version = 0;
    std::string token;
};

struct Request
{
    std::int64_t id = 0; ///< comes back with the answer
    std::string name;
    nlohmann::json arguments = nlohmann::json::object();
};

struct ShowView
{
    std::uint32_t channel = 0;
    std::uint32_t view = 0; ///< comes back with each image
    Region region;
    int screenWidth = 0; ///< device pixels
    int screenHeight = 0;
    bool histogram = false;
    std::optional<std::array<int, 2>> pixel; ///< its samples come with each image
    std::optional<std::array<int, 4>> line;  ///< from, to; the samples along it come with each image
};

struct HideView
{
    std::uint32_t channel = 0;
};

struct Acknowledge
{
    std::uint32_t channel = 0;
};

using Message = std::variant<Hello, Request, ShowView, HideView, Acknowledge>;

/// The message is invalid. The text says what is wrong and where.
class MessageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Parses \p text, which may contain anything. Throws only MessageError and std::bad_alloc.
Message readMessage(std::string_view text);

// Read arguments of a request. Throw MessageError with the name if it is missing or wrong.

std::string textArgument(const nlohmann::json& arguments, const char* name);
bool flagArgument(const nlohmann::json& arguments, const char* name);
/// A whole number from \p lowest to \p highest.
std::int64_t numberArgument(const nlohmann::json& arguments, const char* name, std::int64_t lowest,
                            std::int64_t highest);

} // namespace ovra::viewer
