// SPDX-License-Identifier: MIT
#include "Arguments.h"

#include "front-ends/shared/RequestError.h"

#include <charconv>
#include <system_error>
#include <utility>

namespace ovra::console {

using namespace frontend;

namespace {

constexpr double MAX_WAIT_SECONDS = 86400;

/// Reads all of \p text as a number; false if it is not one.
template <class Number>
bool read(const std::string& text, Number& number)
{
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

} // namespace

Arguments::Arguments(std::vector<std::string> words) : m_words(std::move(words)) {}

std::size_t Arguments::count() const
{
    return m_words.size();
}

const std::string& Arguments::text(std::size_t position) const
{
    return m_words.at(position);
}

std::string Arguments::joined() const
{
    std::string text;
    for (const auto& word : m_words)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

int Arguments::integer(std::size_t position, const char* name, int minimum, int maximum) const
{
    int number = 0;
    if (!read(text(position), number) || number < minimum || number > maximum)
        throw RequestError(std::string(name) + " must be a whole number from " + std::to_string(minimum) +
                           " to " + std::to_string(maximum) + ", not '" + text(position) + "'");
    return number;
}

std::chrono::milliseconds Arguments::seconds(std::size_t position) const
{
    double number = 0;
    if (!read(text(position), number) || !(number >= 0 && number <= MAX_WAIT_SECONDS))
        throw RequestError("SECONDS must be a number from 0 to 86400, not '" + text(position) + "'");
    return std::chrono::milliseconds(static_cast<std::int64_t>(number * 1000));
}

} // namespace ovra::console
