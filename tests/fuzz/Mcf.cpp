// SPDX-License-Identifier: MIT
// Fuzzer for look-ups in a configuration text, compared with a reader that builds a map.

#include "Require.h"

#include "mcf/Mcf.h"

#include <map>
#include <set>
#include <sstream>
#include <string>

using ovra::gui::mcf::mcfValue;

namespace {

using Sections = std::map<std::string, std::map<std::string, std::string>>;

Sections readWhole(const std::string& text)
{
    Sections sections;
    std::istringstream stream(text);
    std::string section = "none";
    for (std::string line; std::getline(stream, line);) {
        if (!stream.eof() && !line.empty() && line.back() == '\r')
            line.pop_back();
        const auto equals = line.find('=');
        if (line.size() > 1 && line.front() == '[' && line.back() == ']') {
            section = line.substr(1, line.size() - 2);
        } else if (equals != std::string::npos && line.back() == ';') {
            std::string value = line.substr(equals + 1, line.size() - equals - 2);
            if (!value.empty() && value.front() == '\'' && value.back() == '\'')
                value = value.size() < 2 ? "" : value.substr(1, value.size() - 2);
            sections[section][line.substr(0, equals)] = value;
        }
    }
    return sections;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(data, data + size);
    Sections expected = readWhole(text);
    std::set<std::string> keys{"", text};
    for (const auto& [section, values] : expected)
        for (const auto& [key, value] : values)
            keys.insert({key, value});
    for (const char* section : {"", "none", "absent"})
        expected.try_emplace(section);
    for (const auto& [section, values] : expected)
        for (const auto& key : keys) {
            const auto known = values.find(key);
            require(mcfValue(text, section, key) == (known == values.end() ? "" : known->second),
                    "the value that the whole reader has, or none");
        }
    return 0;
}
