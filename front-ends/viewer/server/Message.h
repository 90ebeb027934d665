/// \file
/// The messages that a browser sends over its WebSocket, read and checked.
///
///   Hello        first of all: protocol version, and the token that lets it in
///   Request      do something and answer: done, or failed with a text
///   ShowView     send a channel's images, this part of them, for a screen area of this size
///   HideView     send no more of them
///   Acknowledge  an image was drawn; the next one may come
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

/// Of the protocol; a page of another version is refused.
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
    std::optional<std::array<int, 2>> pixel; ///< whose samples come with each image
    std::optional<std::array<int, 4>> line;  ///< from, to: so do the samples along it
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

/// A message that is none. The text says what is wrong and where.
class MessageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Reads \p text, which may be anything. Throws MessageError, and nothing else but std::bad_alloc.
Message readMessage(std::string_view text);

// Arguments of a request; a wrong or missing one throws MessageError with its name.

std::string textArgument(const nlohmann::json& arguments, const char* name);
bool flagArgument(const nlohmann::json& arguments, const char* name);
/// A whole number from \p lowest to \p highest.
std::int64_t numberArgument(const nlohmann::json& arguments, const char* name, std::int64_t lowest,
                            std::int64_t highest);

} // namespace ovra::viewer
