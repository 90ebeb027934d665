// SPDX-License-Identifier: MIT
#include "../Platform.h"

#include "front-ends/shared/Paths.h"

#include <cstdlib>
#include <string>

#include <sys/ioctl.h>
#include <unistd.h>

namespace ovra::console {

namespace {

std::string variable(const char* name)
{
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody changes them now
    return value ? value : "";
}

} // namespace

bool inputIsTerminal()
{
    return isatty(STDIN_FILENO) != 0;
}

bool outputIsTerminal()
{
    return isatty(STDOUT_FILENO) != 0;
}

bool errorsAreTerminal()
{
    return isatty(STDERR_FILENO) != 0;
}

void prepareTerminal() {}

int terminalColumns()
{
    constexpr int DEFAULT_COLUMNS = 80;
    winsize size{};
    const bool known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : DEFAULT_COLUMNS;
}

std::filesystem::path historyFile()
{
    const std::string state = variable("XDG_STATE_HOME");
    if (!state.empty())
        return frontend::pathOf(state) / "ovra" / "console-history";
    const std::string home = variable("HOME");
    return home.empty() ? std::filesystem::path()
                        : frontend::pathOf(home) / ".local" / "state" / "ovra" / "console-history";
}

} // namespace ovra::console
