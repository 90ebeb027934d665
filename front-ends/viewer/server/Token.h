/// \file
/// Token: what lets a page in. A new one for each run of the program.
#pragma once

#include <string>
#include <string_view>

namespace ovra::viewer {

/// 128 random bits, as 32 hexadecimal digits.
std::string makeToken();

/// In a time that depends on the lengths alone.
bool sameToken(std::string_view left, std::string_view right);

} // namespace ovra::viewer
