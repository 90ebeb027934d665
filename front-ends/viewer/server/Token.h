// SPDX-License-Identifier: MIT
/// \file
/// Token: the secret that admits a page. Each run of the program has its own.
#pragma once

#include <string>
#include <string_view>

namespace ovra::viewer {

/// 128 random bits, as 32 hexadecimal digits.
std::string makeToken();

/// Takes a time that depends only on the lengths.
bool sameToken(std::string_view left, std::string_view right);

} // namespace ovra::viewer
