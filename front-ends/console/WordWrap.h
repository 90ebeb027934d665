// SPDX-License-Identifier: MIT
/// \file
/// Breaks texts into lines.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ovra::console {

/// The words of \p text in lines of at most \p width characters, each indented by \p indent blanks. A longer
/// word gets a line of its own.
std::vector<std::string> wrapWords(const std::string& text, std::size_t indent, std::size_t width);

} // namespace ovra::console
