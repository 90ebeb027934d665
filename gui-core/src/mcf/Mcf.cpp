// SPDX-License-Identifier: MIT
#include "mcf/Mcf.h"

#include <array>
#include <fstream>

namespace ovra::gui::mcf {

namespace {

constexpr std::size_t BLOCK_BYTES = 16384;

/// Removes the first line from \p text and returns it without its ending.
std::string_view takeLine(std::string_view& text)
{
    const std::size_t feed = text.find('\n');
    std::string_view line = text.substr(0, feed);
    if (feed == std::string_view::npos) {
        text = {};
        return line;
    }
    text.remove_prefix(feed + 1);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

bool isHeader(std::string_view line)
{
    return line.size() >= 2 && line.front() == '[' && line.back() == ']';
}

std::string_view withoutQuotes(std::string_view value)
{
    if (!value.starts_with('\'') || !value.ends_with('\''))
        return value;
    return value.size() < 2 ? std::string_view() : value.substr(1, value.size() - 2); // one may be both
}

} // namespace

std::string readMcf(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary); // a text means the same on all platforms
    std::string text;
    for (std::array<char, BLOCK_BYTES> block{}; stream.read(block.data(), block.size()).gcount() > 0;)
        text.append(block.data(), static_cast<std::size_t>(stream.gcount()));
    return text;
}

std::string_view mcfValue(std::string_view text, std::string_view section, std::string_view key)
{
    std::string_view value;
    bool inSection = section == "none";
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (isHeader(line)) {
            inSection = line.substr(1, line.size() - 2) == section;
        } else if (inSection && line.ends_with(';')) {
            const std::size_t equals = line.find('=');
            if (equals != std::string_view::npos && line.substr(0, equals) == key)
                value = withoutQuotes(line.substr(equals + 1, line.size() - equals - 2));
        }
    }
    return value;
}

} // namespace ovra::gui::mcf
