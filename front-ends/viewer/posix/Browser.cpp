#include "Browser.h"

#include <array>
#include <cerrno>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ovra::viewer {

// Not through a shell: the address would have to be quoted for it.
bool openBrowser(const std::string& address)
{
    std::string program = "xdg-open";
    std::string argument = address;
    const std::array<char*, 3> words{program.data(), argument.data(), nullptr};
    pid_t child = 0;
    if (posix_spawnp(&child, program.c_str(), nullptr, nullptr, words.data(), environ) != 0)
        return false;
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace ovra::viewer
