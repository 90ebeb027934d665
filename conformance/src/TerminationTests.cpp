// SPDX-License-Identifier: MIT
// Tests of CommandProcessor::terminateAsyncCommands.

#include "Commands.h"
#include "Tests.h"

#include "ovra-core/HarloApplication.h"

#include <algorithm>
#include <atomic>
#include <future>

namespace ovra::conformance {

namespace {

using core::Command;
using core::HarloApplication;
using Names = std::vector<std::string>;

/// Two commands, "running" and "waiting". The first is on the worker and stays there until shortly after the
/// call of terminate().
class TerminationBench : public CommandBench
{
public:
    explicit TerminationBench(HostUnderTest& tested) : CommandBench(tested)
    {
        auto running = make("running", Command::Asynchronous);
        running->inAsync = [this] {
            while (!m_terminating)
                std::this_thread::yield();
            std::this_thread::sleep_for(LOOK_ON); // a host that does not wait has returned by then
            notes.add("worker ends");
        };
        running->inPost = [this] { submit(make("follower", Command::Asynchronous)); };
        submit(std::exchange(running, {}));
        awaitNote("running async");
        submit(make("waiting", Command::Asynchronous));
    }

    /// Terminates like the library, within a clean-up command. \p first runs in that command before.
    void terminate(const NotedCommand::Step& first = {})
    {
        auto cleanup = make("cleanup", Command::Cleanup);
        cleanup->inSync = [this, first] {
            if (first)
                first();
            notes.add("terminating");
            m_terminating = true;
            HarloApplication::commandprocessor()->terminateAsyncCommands();
            notes.add("terminated");
        };
        submit(cleanup);
        require(notes.contains("terminated"), "terminateAsyncCommands returns");
    }

private:
    std::atomic<bool> m_terminating{false};
};

void terminationWaitsForTheRunningPhase(HostUnderTest& host)
{
    TerminationBench bench(host);
    bench.terminate();
    require(bench.notes.inOrder("worker ends", "terminated"),
            "executeAsync has returned when terminateAsyncCommands returns");
}

void terminationStartsNoOtherWorkerPhase(HostUnderTest& host)
{
    TerminationBench bench(host);
    bench.terminate();
    require(!bench.notes.inOrder("terminating", "waiting async"),
            "no executeAsync starts once terminateAsyncCommands was called");
}

void terminationCompletesWhatBegan(HostUnderTest& host)
{
    TerminationBench bench(host);
    bench.terminate();
    for (const std::string name : {"running", "waiting"})
        if (bench.notes.contains(name + " sync")) {
            requireEqual(bench.notes.of(name + " post").size(), 1U,
                         "calls of executePostAsync for \"" + name + '"');
            require(bench.notes.inOrder(name + " post", "terminated"),
                    "executePostAsync has run when terminateAsyncCommands returns");
        }
}

void noPhaseRunsAfterTermination(HostUnderTest& host)
{
    TerminationBench bench(host);
    bench.terminate([&] {
        bench.submit(bench.make("queued", Command::Asynchronous));
        std::thread([&] { bench.submit(bench.make("event", Command::Event)); }).join();
    });
    const auto submitLate = [&](const std::string& suffix) {
        bench.submit(bench.make("late command " + suffix, Command::Asynchronous));
        bench.submit(bench.make("late event " + suffix, Command::Event));
    };
    submitLate("of the GUI thread");
    std::thread([&] { submitLate("of another thread"); }).join();
    const auto phasesAfterwards = [&] {
        auto notes = bench.notes.all();
        notes.erase(notes.begin(), std::ranges::find(notes, "terminated"));
        std::erase_if(notes, [](const std::string& note) {
            return note == "terminated" || note.ends_with(" released");
        });
        return notes;
    };
    stays(
        host, [&] { return phasesAfterwards().empty(); }, "no phase after terminateAsyncCommands");
}

} // namespace

std::vector<Test> terminationTests()
{
    return {
        {"termination-waits-for-the-running-phase",
         "terminateAsyncCommands lets the executeAsync that runs come to its end",
         terminationWaitsForTheRunningPhase},
        {"termination-starts-no-other-worker-phase",
         "Once terminateAsyncCommands was called no further executeAsync starts",
         terminationStartsNoOtherWorkerPhase},
        {"termination-completes-what-began",
         "terminateAsyncCommands runs the executePostAsync of each command whose executeSync ran",
         terminationCompletesWhatBegan},
        {"no-phase-runs-after-termination",
         "After terminateAsyncCommands has returned no phase runs, whatever is queued or submitted",
         noPhaseRunsAfterTermination},
    };
}

} // namespace ovra::conformance
