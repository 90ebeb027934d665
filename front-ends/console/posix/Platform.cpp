#include "../Platform.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include <unistd.h>

namespace ovra::console {

namespace {

std::atomic<bool> wasInterrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may touch nothing else");

extern "C" void onInterrupt(int signal)
{
    if (!wasInterrupted.exchange(true))
        return;
    std::signal(signal, SIG_DFL);
    std::raise(signal); // comes once this function has returned, and ends the program
}

// A program in the background is started with signals ignored, and stays so.
void noteOnce(int signal)
{
    struct sigaction present = {};
    if (sigaction(signal, nullptr, &present) != 0 || present.sa_handler == SIG_IGN)
        return;
    struct sigaction noting = {};
    noting.sa_handler = &onInterrupt;
    noting.sa_flags = SA_RESTART;
    sigaction(signal, &noting, nullptr);
}

} // namespace

std::vector<std::string> commandLineArguments(int argumentCount, char** arguments)
{
    return {arguments + 1, arguments + argumentCount};
}

bool inputIsTerminal()
{
    return isatty(STDIN_FILENO) != 0;
}

bool outputIsTerminal()
{
    return isatty(STDOUT_FILENO) != 0;
}

void prepareTerminal() {}

bool readInputLine(std::string& line)
{
    return static_cast<bool>(std::getline(std::cin, line));
}

void noteInterrupts()
{
    noteOnce(SIGINT);
    noteOnce(SIGTERM);
}

bool interrupted()
{
    return wasInterrupted;
}

void setEnvironmentVariable(const std::string& name, const std::string& value)
{
    setenv(name.c_str(), value.c_str(), 1); // NOLINT(concurrency-mt-unsafe): no other thread yet
}

} // namespace ovra::console
