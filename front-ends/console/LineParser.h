// SPDX-License-Identifier: MIT
/// \file
/// Splits the lines of a session into words.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ovra::console {

/// A line that cannot be split.
class LineError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The words of \p line, which are separated by blanks and tabs.
///
/// - Between double quotes, blanks and # belong to the word; quotes may begin and end inside one. There is
///   no escape character: a backslash is part of a path.
/// - A # at the beginning of a word starts a comment, which reaches to the end of the line.
///
/// Throws LineError for a quote that is not closed.
std::vector<std::string> splitLine(std::string_view line);

} // namespace ovra::console
