// SPDX-License-Identifier: MIT
/// \file
/// The arguments of a command.
#pragma once

#include <chrono>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace ovra::console {

/// The words after a command's name. Positions count from 0 and must exist.
class Arguments
{
public:
    explicit Arguments(std::vector<std::string> words);

    std::size_t count() const;
    const std::string& text(std::size_t position) const;
    /// All words, one blank between them.
    std::string joined() const;

    /// An integer between two bounds. Throws RequestError with \p name as the argument's name.
    int integer(std::size_t position, const char* name, int minimum,
                int maximum = std::numeric_limits<int>::max()) const;
    /// A time in seconds, such as "2" or "0.5". Throws RequestError.
    std::chrono::milliseconds seconds(std::size_t position) const;

private:
    std::vector<std::string> m_words;
};

} // namespace ovra::console
