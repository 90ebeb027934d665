// SPDX-License-Identifier: MIT
#include "LineParser.h"

namespace ovra::console {

namespace {

bool isBlank(char character)
{
    return character == ' ' || character == '\t';
}

/// Removes the first word from \p rest and returns it.
std::string takeWord(std::string_view& rest)
{
    std::string word;
    bool quoted = false;
    while (!rest.empty() && (quoted || !isBlank(rest.front()))) {
        if (rest.front() == '"')
            quoted = !quoted;
        else
            word += rest.front();
        rest.remove_prefix(1);
    }
    if (quoted)
        throw LineError("a quote is not closed");
    return word;
}

} // namespace

std::vector<std::string> splitLine(std::string_view line)
{
    std::vector<std::string> words;
    while (!line.empty()) {
        if (isBlank(line.front())) {
            line.remove_prefix(1);
            continue;
        }
        if (line.front() == '#')
            break;
        words.push_back(takeWord(line));
    }
    return words;
}

} // namespace ovra::console
