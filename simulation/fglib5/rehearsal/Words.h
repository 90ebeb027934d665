// SPDX-License-Identifier: MIT
/// \file
/// Words: reads the words of a line, separated by blanks, one after the other.
#pragma once

#include "Failure.h"

#include "fglib5/Fglib5Types.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

namespace simulation {

/// Failures are FG_INVALID_ARGUMENT and name the word.
class Words
{
public:
    explicit Words(std::string_view line) : m_rest(line) { skipBlanks(); }

    bool atEnd() const { return m_rest.empty(); }
    /// The next word, "" at the end.
    std::string_view peek() const { return m_rest.substr(0, m_rest.find_first_of(BLANKS)); }
    std::string_view rest() const { return m_rest; }

    /// Takes the next word. \p what names it in the message if there is none.
    std::string_view take(const char* what)
    {
        const auto word = peek();
        if (word.empty())
            throw Failure(FG_INVALID_ARGUMENT, std::string("Expected ") + what + " at the end of the line");
        m_rest.remove_prefix(word.size());
        skipBlanks();
        return word;
    }

    std::string_view takeRest()
    {
        const auto last = m_rest.find_last_not_of(BLANKS);
        return std::exchange(m_rest, {}).substr(0, last == std::string_view::npos ? 0 : last + 1);
    }

    /// Takes the next word if it is this one.
    bool takeIf(std::string_view word)
    {
        if (peek() != word)
            return false;
        take("");
        return true;
    }

    void expect(const char* word)
    {
        const auto found = peek();
        if (!takeIf(word))
            refuse(found, (std::string("'") + word + "'").c_str());
    }

    template <class Number>
    Number number(const char* what, Number smallest = std::numeric_limits<Number>::min(),
                  Number largest = std::numeric_limits<Number>::max())
    {
        const auto word = take(what);
        Number value{};
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
        if (error != std::errc{} || end != word.data() + word.size() ||
            !(value >= smallest && value <= largest))
            refuse(word, what);
        return value;
    }

    void expectEnd() const
    {
        if (!atEnd())
            throw Failure(FG_INVALID_ARGUMENT,
                          "Nothing may follow here, but there is '" + std::string(peek()) + "'");
    }

    [[noreturn]] static void refuse(std::string_view word, const char* what)
    {
        throw Failure(FG_INVALID_ARGUMENT,
                      std::string("Expected ") + what + ", found '" + std::string(word) + "'");
    }

private:
    static constexpr std::string_view BLANKS = " \t\r";

    void skipBlanks() { m_rest.remove_prefix(std::min(m_rest.find_first_not_of(BLANKS), m_rest.size())); }

    std::string_view m_rest;
};

} // namespace simulation
