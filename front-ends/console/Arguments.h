/// \file
/// The arguments of a command, and the error of one that cannot be carried out.
#pragma once

#include <chrono>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace ovra::console {

/// A command that cannot be carried out. The text is the line the user sees.
class CommandError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The words after a command's name. Positions count from 0 and must exist.
class Arguments
{
public:
    explicit Arguments(std::vector<std::string> words);

    std::size_t count() const;
    const std::string& text(std::size_t position) const;
    /// All words, one blank between them.
    std::string joined() const;

    /// A whole number between two bounds. Throws CommandError, which calls the argument \p name.
    int integer(std::size_t position, const char* name, int minimum,
                int maximum = std::numeric_limits<int>::max()) const;
    /// A time such as "2" or "0.5". Throws CommandError.
    std::chrono::milliseconds seconds(std::size_t position) const;

private:
    std::vector<std::string> m_words;
};

} // namespace ovra::console
