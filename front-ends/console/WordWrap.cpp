// SPDX-License-Identifier: MIT
#include "WordWrap.h"

#include <sstream>

namespace ovra::console {

std::vector<std::string> wrapWords(const std::string& text, std::size_t indent, std::size_t width)
{
    const std::string begin(indent, ' ');
    std::vector<std::string> lines;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const bool fits = !lines.empty() && lines.back().size() + 1 + word.size() <= width;
        if (fits)
            lines.back() += ' ' + word;
        else
            lines.push_back(begin + word);
    }
    return lines;
}

} // namespace ovra::console
