// SPDX-License-Identifier: MIT
// Fuzzer for the walk from a file's path up to the installation and for the copying of a path, compared with
// plain implementations.

#include "Require.h"

#include "fglib/InstallationPath.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include <strings.h>

using namespace ovra::gui::fglib;

namespace {

std::string withoutSeparatorsAtTheEnd(std::string text, char separator, std::size_t shortest)
{
    while (text.size() > shortest && text.back() == separator)
        text.pop_back();
    return text;
}

bool isProductFolder(const std::string& name)
{
    constexpr std::array FOLDERS{"bin", "dll", "Hardware Applets", "lib", "lib64"};
    return std::any_of(FOLDERS.begin(), FOLDERS.end(),
                       [&](const char* folder) { return strcasecmp(folder, name.c_str()) == 0; });
}

/// Folder by folder, upwards.
std::optional<std::string> plainInstallation(std::string path, char separator)
{
    const auto last = path.rfind(separator);
    if (last == std::string::npos || last == 0)
        return std::nullopt;
    path.resize(last);
    while (true) {
        path = withoutSeparatorsAtTheEnd(path, separator, 0);
        const auto name = path.rfind(separator) + 1; // 0 where there is none
        if (isProductFolder(path.substr(name)))
            return withoutSeparatorsAtTheEnd(path.substr(0, name), separator, 0);
        if (name == 0)
            return std::nullopt;
        path.resize(name - 1);
    }
}

} // namespace

/// The first byte chooses separator and room, the rest is the path.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const char separator = (data[0] & 1) != 0 ? '/' : '\\';
    const std::size_t room = 1U + (data[0] >> 1);
    std::string path(data + 1, data + size);
    path.resize(std::strlen(path.c_str()));

    std::vector<char> copy(room);
    copyDirectory(path.c_str(), copy.data(), room, separator);
    require(copy.data() == withoutSeparatorsAtTheEnd(path.substr(0, room - 1), separator, 1),
            "a copy without separators at the end");

    std::vector<char> cut(path.c_str(), path.c_str() + path.size() + 1);
    const auto expected = plainInstallation(path, separator);
    require(cutToInstallation(cut.data(), separator) == expected.has_value(),
            "an installation where there is one");
    require(!expected || cut.data() == *expected, "the folder above the nearest product folder");
    return 0;
}
