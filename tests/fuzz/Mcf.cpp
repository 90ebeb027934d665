// The reader of configuration files, against one that is slow and plain.

#include "Require.h"

#include "mcf/McfFile.h"

#include <map>
#include <sstream>
#include <string>

using ovra::gui::commands::McfFile;

namespace {

using Sections = std::map<std::string, std::map<std::string, std::string>>;

Sections readPlainly(const std::string& text)
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
    const McfFile file = McfFile::parse(text);
    const Sections expected = readPlainly(text);

    require(file.sections().size() == expected.size(), "as many sections as the plain reader has");
    auto section = file.sections().begin();
    for (const auto& [name, keys] : expected) {
        require(section->name == name, "the plain reader's sections, in order");
        require(section->entries.size() == keys.size(), "as many keys as the plain reader has");
        auto entry = section->entries.begin();
        for (const auto& [key, value] : keys) {
            require(entry->key() == key, "the plain reader's keys, in order");
            require(entry->value() == value, "the plain reader's values");
            require(file.value(name, key) == value, "a value is found by its names");
            ++entry;
        }
        ++section;
    }
    require(file.value(text, text).empty(), "no value for names that are not there");
    return 0;
}
