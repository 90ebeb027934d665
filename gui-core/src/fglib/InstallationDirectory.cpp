#include "fglib/InstallationDirectory.h"

#include "platform/Module.h"
#include "platform/Paths.h"
#include "platform/SpinLockVariableGuard.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace ovra::gui::fglib {

using templates::platform::DIRECTORY_SEPARATOR;
using templates::platform::SpinLockVariableGuard;

namespace {

constexpr std::size_t DIRECTORY_BYTES = 1024;

char directory[DIRECTORY_BYTES];
bool resolved = false;
std::atomic<std::int32_t> resolutionLock{0};

/// Of the letters that the product folders are written with; a locale has no say in what a path is.
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

/// Position behind the last character before \p end that is no separator.
std::size_t skipSeparatorsBack(const char* path, std::size_t end, char separator)
{
    while (end > 0 && path[end - 1] == separator)
        --end;
    return end;
}

bool resolveFromOwnLocation()
{
    // The buffer lies in this library, so its address finds the library's file.
    const std::size_t length = templates::platform::moduleFileName(directory, directory, DIRECTORY_BYTES);
    return length > 0 && length < DIRECTORY_BYTES && cutToInstallation(directory, DIRECTORY_SEPARATOR);
}

bool resolveFromEnvironment()
{
    // Read once, under the lock; nobody in the process writes these two.
    const char* value = std::getenv("OVRADIR5_64"); // NOLINT(concurrency-mt-unsafe)
    if (!value)
        value = std::getenv("OVRADIR5"); // NOLINT(concurrency-mt-unsafe)
    if (!value)
        return false;
    copyDirectory(value, directory, DIRECTORY_BYTES, DIRECTORY_SEPARATOR);
    return true;
}

} // namespace

bool cutToInstallation(char* path, char separator)
{
    const char* last = std::strrchr(path, separator);
    if (!last || last == path)
        return false;

    auto end = static_cast<std::size_t>(last - path);
    while (true) {
        // Cuts off the file name on the first turn, the folder just looked at on every other.
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

const char* getInstallationDirectory()
{
    const SpinLockVariableGuard guard(&resolutionLock);
    if (!resolved)
        resolved = resolveFromOwnLocation() || resolveFromEnvironment();
    return resolved ? directory : nullptr;
}

} // namespace ovra::gui::fglib
