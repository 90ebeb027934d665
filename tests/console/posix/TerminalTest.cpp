// SPDX-License-Identifier: MIT
// The console at a terminal: input and output of a user's session.
#include "../Workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace ovra::tests;
using testing::HasSubstr;

namespace {

/// The console with a pseudo-terminal.
class Terminal
{
public:
    Terminal(const Workspace& workspace, const std::string& machine)
    {
        winsize size{24, 100, 0, 0};
        const std::string folder = workspace.path("out").string(), state = workspace.path("state").string();
        m_process = forkpty(&m_terminal, nullptr, nullptr, &size);
        if (m_process == 0) {
            setenv("XDG_STATE_HOME", state.c_str(), 1); // NOLINT(concurrency-mt-unsafe): one thread
            setenv("TERM", "xterm", 1);                 // NOLINT(concurrency-mt-unsafe): one thread
            signal(SIGINT, SIG_DFL); // a shell's background jobs ignore it, and pass that on
            execl(OVRA_CONSOLE, OVRA_CONSOLE, "--machine", machine.c_str(), "--output-dir", folder.c_str(),
                  nullptr);
            _exit(127);
        }
    }

    ~Terminal()
    {
        close(m_terminal);
        if (m_process > 0) {
            kill(m_process, SIGKILL);
            waitpid(m_process, nullptr, 0);
        }
    }

    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    void type(const std::string& keys)
    {
        ASSERT_EQ(write(m_terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }

    /// Returns the output until \p text appears, or the program ends.
    std::string seeUntil(const std::string& text)
    {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        std::size_t end = 0;
        while ((end = m_seen.find(text)) == std::string::npos && std::chrono::steady_clock::now() < limit) {
            pollfd source{m_terminal, POLLIN, 0};
            char part[1024];
            if (poll(&source, 1, 1000) <= 0)
                continue;
            const ssize_t count = read(m_terminal, part, sizeof part);
            if (count <= 0)
                break; // the program has ended
            m_seen.append(part, static_cast<std::size_t>(count));
        }
        EXPECT_NE(end, std::string::npos) << "expected: " << text << "\nseen: " << m_seen;
        const std::string shown = m_seen.substr(0, end == std::string::npos ? end : end + text.size());
        m_seen.erase(0, shown.size());
        return shown;
    }

    /// How often the program's threads have slept and woken up.
    long wakeUps() const
    {
        long sum = 0;
        const auto threads = std::filesystem::path("/proc") / std::to_string(m_process) / "task";
        for (const auto& thread : std::filesystem::directory_iterator(threads)) {
            std::ifstream status(thread.path() / "status");
            for (std::string line; std::getline(status, line);)
                if (line.starts_with("voluntary_ctxt_switches:"))
                    sum += std::stol(line.substr(line.find(':') + 1));
        }
        return sum;
    }

    void hangUp() const { kill(m_process, SIGHUP); }

    int exitCode()
    {
        int status = 0;
        waitpid(m_process, &status, 0);
        m_process = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t m_process = 0;
    int m_terminal = -1;
    std::string m_seen;
};

struct AtTheTerminal : testing::Test
{
    const Workspace workspace;
    const std::string machine =
        workspace
            .write(
                "machine.json",
                R"({"name": "M", "boards": [{"model": "ovra-quad-cl", "boardType": 2625, "serial": "1", "ports": 1}],
                       "delays": [{"entry": "Fg_Init", "microseconds": 4000000}]})")
            .string();
};

TEST_F(AtTheTerminal, WordsAreCompletedAndLinesComeBackInTheNextSession)
{
    {
        Terminal terminal(workspace, machine);
        terminal.seeUntil("ovra> ");
        terminal.type("stru\t0\t\n"); // there is no second board and no further argument
        terminal.seeUntil("board 0 holds no applet");
        terminal.type("load 0 SingleAreaG\t");
        terminal.seeUntil("ay.hap ");
        terminal.type("\x03"); // drops the line
        terminal.seeUntil("Ctrl-C again, or quit, ends the session.");
        terminal.type("echo re\xc3\xbc-called\n");
        terminal.seeUntil("\r\nre\xc3\xbc-called\r\n");
        terminal.type("quit\n");
        EXPECT_EQ(terminal.exitCode(), 1); // for the structure of an empty board
    }
    Terminal terminal(workspace, machine);
    terminal.seeUntil("ovra> ");
    terminal.type("\x1b[A\x1b[A\n"); // up twice: past quit
    terminal.seeUntil("\r\nre\xc3\xbc-called\r\n");
    terminal.seeUntil("ovra> ");
    terminal.type("\x04");
    terminal.seeUntil("Application closed.");
    EXPECT_EQ(terminal.exitCode(), 0);
}

TEST_F(AtTheTerminal, CtrlCGivesThePromptBackAndMessagesOfWhatGoesOnStandAboveWhatIsTyped)
{
    Terminal terminal(workspace, machine);
    terminal.seeUntil("ovra> ");
    terminal.type("load 0 SingleAreaGray.hap\n");
    terminal.seeUntil("Loading applet");
    terminal.type("\x03");
    terminal.seeUntil("interrupted; what the command began goes on");
    for (const char* refused :
         {"load 0 SingleAreaGray.hap", "unload 0", "load-mcf 0 a.mcf", "store-mcf 0 a.mcf", "start 0 dma 0",
          "stop 0 dma 0", "buffers 0 0 4", "set 0 GAIN 2", "generator 0 0 on", "camera 0 0 Width 8",
          "trigger 0 0", "rescan"}) {
        terminal.type(std::string(refused) + "\n");
        terminal.seeUntil("an earlier command is still under way; try again when it has ended");
    }
    for (const auto& [allowed, answer] : {std::pair("sync-mode 0", "Sync mode 0"), {"boards", "no applet"}}) {
        terminal.type(std::string(allowed) + "\n");
        terminal.seeUntil(answer);
    }
    terminal.seeUntil("ovra> ");
    terminal.type("echo wh");
    terminal.seeUntil("echo wh");
    const auto above = terminal.seeUntil("ovra> echo wh"); // drawn again below the message
    EXPECT_THAT(above, HasSubstr("\r\x1b[J"));
    if (above.find("DMA memory: 12.0") == std::string::npos) { // what a load says last
        terminal.seeUntil("DMA memory: 12.0");
        terminal.seeUntil("ovra> echo wh");
    }
    terminal.type("ole\n");
    terminal.seeUntil("\r\nwhole\r\n");
    terminal.seeUntil("ovra> ");
    terminal.type("watch\n");
    terminal.seeUntil("watch\r\n");
    terminal.seeUntil("board 0 DMA 0");
    terminal.type("\x03");
    EXPECT_THAT(terminal.seeUntil("ovra> "), HasSubstr("^C\r\n"));
    terminal.type("echo next\n"); // the next line begins to count anew
    terminal.seeUntil("\r\nnext\r\n");
    terminal.seeUntil("ovra> ");
    terminal.type("wait 60\n");
    terminal.seeUntil("wait 60\r\n");
    terminal.type("\x03");
    terminal.seeUntil("interrupted");
    terminal.type("\x03");
    terminal.seeUntil("Application closed.");
    EXPECT_EQ(terminal.exitCode(), 130);
}

TEST_F(AtTheTerminal, ThePromptWakesUpForSomethingToDoOnly)
{
    Terminal terminal(workspace, machine);
    terminal.seeUntil("ovra> ");
    const long before = terminal.wakeUps();
    std::this_thread::sleep_for(std::chrono::seconds(1)); // the time that is measured
    EXPECT_LT(terminal.wakeUps() - before, 40);           // once it looked around every 5 ms
}

TEST_F(AtTheTerminal, AHangUpEndsTheSessionInOrder)
{
    Terminal terminal(workspace, machine);
    terminal.seeUntil("ovra> ");
    terminal.hangUp();
    terminal.seeUntil("Application closed.");
    EXPECT_EQ(terminal.exitCode(), 130);
}

} // namespace
