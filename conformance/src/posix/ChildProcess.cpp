// SPDX-License-Identifier: MIT
#include "../ChildProcess.h"

#include <stdexcept>
#include <system_error>
#include <thread>

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ; // NOLINT(readability-redundant-declaration): POSIX leaves it to the program

namespace ovra::conformance {

namespace {

constexpr std::chrono::milliseconds LOOKS_EVERY{2};

pid_t start(const std::filesystem::path& program, const std::vector<std::string>& arguments,
            const std::filesystem::path& output)
{
    std::vector<std::string> words{program.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (auto& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    pid_t child = 0;
    const int error = posix_spawn(&child, program.c_str(), &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("cannot start " + program.string() + ": " +
                                 std::generic_category().message(error));
    return child;
}

} // namespace

ChildResult runChild(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                     const std::filesystem::path& output, std::chrono::milliseconds limit)
{
    const pid_t child = start(program, arguments, output);
    const auto deadline = std::chrono::steady_clock::now() + limit;
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() >= deadline) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            return {Ending::Overdue, 0};
        }
        std::this_thread::sleep_for(LOOKS_EVERY);
    }
    if (WIFSIGNALED(status))
        return {Ending::Terminated, WTERMSIG(status)};
    return {Ending::Exited, WEXITSTATUS(status)};
}

} // namespace ovra::conformance
