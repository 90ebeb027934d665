// SPDX-License-Identifier: MIT
#include "../Process.h"

#include <csignal>
#include <cstdlib>
#include <thread>
#include <utility>

#include <pthread.h>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace ovra::frontend {

namespace {

struct KnownSignal
{
    int number;
    Signal meaning;
};

constexpr KnownSignal KNOWN_SIGNALS[] = {
    {SIGINT, Signal::Interrupt},
    {SIGTERM, Signal::Terminate},
    {SIGHUP, Signal::Hangup},
};

// True for a signal that the process inherited as ignored, as background programs do.
bool isIgnored(int signal)
{
    struct sigaction present = {};
    return sigaction(signal, nullptr, &present) != 0 || present.sa_handler == SIG_IGN;
}

sigset_t handledSignals()
{
    sigset_t set;
    sigemptyset(&set);
    for (const auto& known : KNOWN_SIGNALS)
        if (!isIgnored(known.number))
            sigaddset(&set, known.number);
    return set;
}

Signal meaningOf(int number)
{
    for (const auto& known : KNOWN_SIGNALS)
        if (known.number == number)
            return known.meaning;
    return Signal::Terminate;
}

} // namespace

std::vector<std::string> commandLineArguments(int argumentCount, char** arguments)
{
    return {arguments + 1, arguments + argumentCount};
}

std::string systemDescription()
{
    utsname system{};
    uname(&system);
    return std::string(system.sysname) + ' ' + system.release + ' ' + system.machine + ", " +
           std::to_string(std::thread::hardware_concurrency()) + " processors";
}

std::string userName()
{
    const passwd* const user = getpwuid(getuid()); // NOLINT(concurrency-mt-unsafe): nobody else asks
    return user ? user->pw_name : "";
}

std::string homeFolder()
{
    const char* const home = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe): nobody changes it
    return home ? home : "";
}

void setEnvironmentVariable(const std::string& name, const std::string& value)
{
    setenv(name.c_str(), value.c_str(), 1); // NOLINT(concurrency-mt-unsafe): no other thread yet
}

// Later threads inherit the mask, so signals reach only the thread that waits for them.
void handleSignals(std::function<void(Signal)> handler)
{
    std::signal(SIGPIPE, SIG_IGN);
    const sigset_t signals = handledSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals, handler = std::move(handler)] {
        for (int number = 0; sigwait(&signals, &number) == 0;)
            handler(meaningOf(number));
    }).detach();
}

void endAtOnce(Signal signal)
{
    for (const auto& known : KNOWN_SIGNALS) {
        if (known.meaning != signal)
            continue;
        std::signal(known.number, SIG_DFL);
        sigset_t one;
        sigemptyset(&one);
        sigaddset(&one, known.number);
        pthread_sigmask(SIG_UNBLOCK, &one, nullptr);
        std::raise(known.number);
    }
    std::_Exit(EXIT_FAILURE);
}

} // namespace ovra::frontend
