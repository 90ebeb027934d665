// SPDX-License-Identifier: MIT
#include "fglib/InstallationPath.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace ovra::gui::fglib {

namespace {

/// For ASCII letters only, as the product folders consist of them; independent of the locale.
char lowered(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool equalWithoutCase(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return lowered(a) == lowered(b); });
}

bool isProductFolder(std::string_view name)
{
    constexpr std::array<std::string_view, 5> FOLDERS = {"bin", "dll", "Hardware Applets", "lib", "lib64"};
    return std::any_of(FOLDERS.begin(), FOLDERS.end(),
                       [name](std::string_view folder) { return equalWithoutCase(name, folder); });
}

/// Position behind the last character before \p end that is not a separator.
std::size_t skipSeparatorsBack(const char* path, std::size_t end, char separator)
{
    while (end > 0 && path[end - 1] == separator)
        --end;
    return end;
}

} // namespace

bool cutToInstallation(char* path, char separator)
{
    const char* last = std::strrchr(path, separator);
    if (!last || last == path)
        return false;

    auto end = static_cast<std::size_t>(last - path);
    while (true) {
        // Cuts off the file name in the first round, the folder just examined in every other.
        end = skipSeparatorsBack(path, end, separator);
        path[end] = '\0';

        std::size_t name = end;
        while (name > 0 && path[name - 1] != separator)
            --name;

        if (isProductFolder(path + name)) {
            path[skipSeparatorsBack(path, name, separator)] = '\0';
            return true;
        }
        if (name == 0)
            return false;
        end = name - 1;
    }
}

void copyDirectory(const char* text, char* buffer, std::size_t size, char separator)
{
    std::size_t length = std::min(std::strlen(text), size - 1);
    std::memcpy(buffer, text, length);
    while (length > 1 && buffer[length - 1] == separator)
        --length;
    buffer[length] = '\0';
}

} // namespace ovra::gui::fglib
