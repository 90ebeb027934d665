// SPDX-License-Identifier: MIT
#include "../Workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <stdexcept>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace ovra::tests;
using testing::HasSubstr;

namespace {

/// The console as a running process whose output the test reads. Its standard input stays open.
class RunningConsole
{
public:
    RunningConsole(const std::string& lines, const std::string& machine)
    {
        int input[2]{}, output[2]{};
        if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        m_process = fork();
        if (m_process == 0) {
            dup2(input[0], STDIN_FILENO);
            dup2(output[1], STDOUT_FILENO);
            dup2(output[1], STDERR_FILENO);
            execl(OVRA_CONSOLE, OVRA_CONSOLE, "--machine", machine.c_str(), nullptr);
            _exit(127);
        }
        close(input[0]);
        close(output[1]);
        m_input = fdopen(input[1], "w");
        m_output = fdopen(output[0], "r");
        std::fputs(lines.c_str(), m_input);
        std::fflush(m_input);
    }

    ~RunningConsole()
    {
        std::fclose(m_input);
        std::fclose(m_output);
        if (!m_ended) {
            kill(m_process, SIGKILL);
            waitpid(m_process, nullptr, 0);
        }
    }

    RunningConsole(const RunningConsole&) = delete;
    RunningConsole& operator=(const RunningConsole&) = delete;

    /// Sends \p signal once a line that begins with \p start has been printed.
    void interruptAfter(const std::string& start, int signal)
    {
        char line[512]{};
        while (std::fgets(line, sizeof line, m_output) && !std::string(line).starts_with(start)) {
        }
        kill(m_process, signal);
    }

    /// Reads the rest of the output.
    std::string rest()
    {
        std::string text;
        for (int character = 0; (character = std::fgetc(m_output)) != EOF;)
            text += static_cast<char>(character);
        return text;
    }

    /// Waits for the end; returns waitpid's status.
    int status()
    {
        int status = 0;
        waitpid(m_process, &status, 0);
        m_ended = true;
        return status;
    }

private:
    pid_t m_process = 0;
    bool m_ended = false;
    std::FILE* m_input = nullptr;
    std::FILE* m_output = nullptr;
};

struct Interrupting : testing::Test
{
    std::string machine(int unloadMicroseconds) const
    {
        return workspace
            .write(
                "machine.json",
                R"({"name": "M", "boards": [{"model": "ovra-quad-cl", "boardType": 2625, "serial": "1", "ports": 1}],
                    "delays": [{"entry": "Fg_FreeGrabber", "microseconds": )" +
                    std::to_string(unloadMicroseconds) + "}]}\n")
            .string();
    }

    const Workspace workspace;
    const std::string begin = "load 0 SingleAreaGray.hap\nstart 0 dma 0\n";
};

TEST_F(Interrupting, OnceEndsTheSessionInOrderWhateverItIsAt)
{
    struct Moment
    {
        const char* lines;
        const char* sign; ///< the line that marks that moment
        int signal;
    };
    for (const auto& [lines, sign, signal] : {Moment{"", "Acquiring: ", SIGINT}, // waits for the next line
                                              {"wait 60\necho next\n", "> wait 60", SIGTERM},
                                              {"wait 9 images\n", "> wait 9", SIGINT}}) {
        SCOPED_TRACE(sign);
        RunningConsole console(begin + lines, machine(0));
        console.interruptAfter(sign, signal);
        const std::string rest = console.rest();
        EXPECT_TRUE(rest.ends_with("DMA memory: 0.0 of 1024.0 MiB used.\nApplication closed.\n")) << rest;
        EXPECT_THAT(rest, testing::Not(HasSubstr("next")));
        const int status = console.status();
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 130) << status;
    }
}

TEST_F(Interrupting, TwiceEndsTheProgramAtOnce)
{
    constexpr int UNLOAD_MICROSECONDS = 60000000; // longer than the test waits
    RunningConsole console(begin + "wait 60\n", machine(UNLOAD_MICROSECONDS));
    console.interruptAfter("> wait 60", SIGTERM);
    console.interruptAfter("error: line 3: interrupted", SIGINT);
    const int status = console.status();
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
}

} // namespace
