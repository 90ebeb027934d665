// SPDX-License-Identifier: MIT
#include "Browser.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>

#include <spawn.h>
#include <stdlib.h> // NOLINT(modernize-deprecated-headers): mkstemps is not of C++
#include <sys/wait.h>
#include <unistd.h>

namespace ovra::viewer {

namespace {

/// All users of the machine can read the arguments of a program, but not this file. Returns "" if it cannot
/// be written.
std::string writeLeadingPage(const std::string& address)
{
    constexpr std::string_view ENDING = ".html";
    std::error_code error;
    auto name = (std::filesystem::temp_directory_path(error) / "ovra-viewer-XXXXXX").string();
    name += ENDING;
    const int file = error ? -1 : mkstemps(name.data(), static_cast<int>(ENDING.size()));
    if (file < 0)
        return {};
    const std::string page =
        "<!doctype html><title>ovra-viewer</title><meta http-equiv=\"refresh\" content=\"0; url=" + address +
        "\"><p><a href=\"" + address + "\">ovra-viewer</a></p>\n";
    const bool written = write(file, page.data(), page.size()) == static_cast<ssize_t>(page.size());
    close(file);
    if (written)
        return name;
    unlink(name.c_str());
    return {};
}

/// Some openers end only when the browser does.
bool endsWell(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

// Not through a shell: the path would have to be quoted for it.
Browser::Browser(const std::string& address, std::function<void()> onFailure)
    : m_file(writeLeadingPage(address))
{
    std::string program = "xdg-open";
    std::string argument = m_file;
    const std::array<char*, 3> words{program.data(), argument.data(), nullptr};
    pid_t child = 0;
    if (m_file.empty() ||
        posix_spawnp(&child, program.c_str(), nullptr, nullptr, words.data(), environ) != 0) {
        onFailure();
        return;
    }
    std::thread([child, onFailure = std::move(onFailure)] {
        if (!endsWell(child))
            onFailure();
    }).detach();
}

Browser::~Browser()
{
    if (!m_file.empty())
        unlink(m_file.c_str());
}

} // namespace ovra::viewer
