// SPDX-License-Identifier: MIT
// Tests of the order and the threads of phases, and of commands that other commands submit.

#include "Commands.h"
#include "Tests.h"

#include <future>
#include <stdexcept>

namespace ovra::conformance {

namespace {

using core::Command;
using Names = std::vector<std::string>;

void phasesRunInOrder(HostUnderTest& host)
{
    CommandBench bench(host);
    bench.runToTheEnd(bench.make("load", Command::Asynchronous), "load");
    requireEqual(bench.notes.all(), Names{"load sync", "load async", "load post", "load released"},
                 "what happened");
}

void phasesRunOnTheirThreads(HostUnderTest& host)
{
    CommandBench bench(host);
    const auto noteThread = [&] {
        bench.notes.add(bench.onGuiThread() ? "... on the GUI thread" : "... on another thread");
    };
    auto load = bench.make("load", Command::Asynchronous);
    load->inSync = load->inAsync = load->inPost = noteThread;
    bench.runToTheEnd(std::move(load), "load");
    requireEqual(bench.notes.of("..."),
                 Names{"... on the GUI thread", "... on another thread", "... on the GUI thread"},
                 "threads of executeSync, executeAsync and executePostAsync");
}

void postPhaseWaitsForTheWorker(HostUnderTest& host)
{
    CommandBench bench(host);
    std::promise<void> go;
    auto load = bench.make("load", Command::Asynchronous);
    load->inAsync = [&] {
        go.get_future().wait();
        bench.notes.add("worker ends");
    };
    bench.submit(std::exchange(load, {}));
    bench.awaitNote("load async");
    stays(
        host, [&] { return !bench.notes.contains("load post"); },
        "no executePostAsync while executeAsync runs");
    go.set_value();
    bench.awaitNote("load released");
    require(bench.notes.inOrder("worker ends", "load post"), "executePostAsync after executeAsync");
}

void guiThreadIsFreeDuringTheWorker(HostUnderTest& host)
{
    CommandBench bench(host);
    std::promise<void> go;
    auto load = bench.make("load", Command::Asynchronous);
    load->inAsync = [&] { go.get_future().wait(); };
    bench.submit(std::exchange(load, {}));
    bench.awaitNote("load async");
    bench.submit(bench.make("event", Command::Event));
    require(bench.notes.contains("event sync"), "an event runs while another command is on the worker");
    go.set_value();
    bench.awaitNote("load released");
}

void commandLivesUntilItsLastPhaseHasReturned(HostUnderTest& host)
{
    CommandBench bench(host);
    auto load = bench.make("load", Command::Asynchronous);
    load->inPost = [&] { bench.notes.add("last phase ends"); };
    bench.runToTheEnd(std::move(load), "load");
    require(bench.notes.inOrder("last phase ends", "load released"),
            "the command is destroyed after its last phase");
    requireEqual(bench.notes.of("load released").size(), 1U, "number of times the command was destroyed");
}

void commandThatIsRunningIsRefused(HostUnderTest& host)
{
    CommandBench bench(host);
    std::promise<void> go;
    auto load = bench.make("load", Command::Asynchronous);
    load->inAsync = [&] { go.get_future().wait(); };
    bench.submit(load);
    bench.awaitNote("load async");
    bool refused = false;
    try {
        bench.submit(load);
    } catch (const std::logic_error&) {
        refused = true;
    }
    go.set_value();
    load.reset();
    bench.awaitNote("load released");
    require(refused, "std::logic_error for an object that is submitted while it runs");
    requireEqual(bench.notes.of("load sync").size(), 1U, "number of times that its synchronous phase ran");
}

void synchronousCommandRunsAtOnce(HostUnderTest& host)
{
    CommandBench bench(host);
    for (const auto& [type, name] : SYNCHRONOUS_TYPES) {
        bench.submit(bench.make(name, type));
        requireEqual(bench.notes.of(name),
                     Names{name + std::string(" sync"), name + std::string(" released")},
                     "what happened during executeCommand");
    }
}

void synchronousCommandRunsWithinAPhase(HostUnderTest& host)
{
    CommandBench bench(host);
    for (const auto& [type, name] : SYNCHRONOUS_TYPES)
        for (const auto phase : {&NotedCommand::inSync, &NotedCommand::inPost}) {
            const std::string outer = std::string("outer of ") + name;
            auto load = bench.make(outer, Command::Asynchronous);
            bool ran = false;
            (*load).*phase = [&] {
                auto unload = bench.make("inner", type);
                unload->inSync = [&ran] { ran = true; };
                bench.submit(unload);
                require(ran, std::string("a command of the type ") + name +
                                 " has run when executeCommand returns within another command's phase");
            };
            bench.submit(std::exchange(load, {}));
            await(
                host, [&] { return ran; }, "a phase of " + outer);
        }
}

/// A command whose executeAsync submits two events and a synchronous command.
boost::shared_ptr<NotedCommand> submittingOnTheWorker(CommandBench& bench,
                                                      const NotedCommand::Step& inSubmitted = {})
{
    auto load = bench.make("load", Command::Asynchronous);
    load->inAsync = [&bench, inSubmitted] {
        for (const auto& [name, type] :
             {std::pair("message 1", Command::Event), std::pair("message 2", Command::Synchronous),
              std::pair("message 3", Command::Event)}) {
            auto command = bench.make(name, type);
            command->inSync = inSubmitted;
            bench.submit(command);
        }
        bench.notes.add("all submitted");
    };
    return load;
}

void workerDoesNotWait(HostUnderTest& host)
{
    CommandBench bench(host);
    bench.submit(submittingOnTheWorker(bench));
    bench.awaitNote("load async");
    // Keeps the GUI thread busy without processing events.
    const auto deadline = std::chrono::steady_clock::now() + PATIENCE;
    while (!bench.notes.contains("all submitted")) {
        if (std::chrono::steady_clock::now() >= deadline)
            fail("Expected: executeCommand returns on the worker although the GUI thread is busy");
        std::this_thread::yield();
    }
    bench.awaitNote("load released");
}

void commandsOfAWorkerRunOnTheGuiThread(HostUnderTest& host)
{
    CommandBench bench(host);
    bench.runToTheEnd(
        submittingOnTheWorker(
            bench,
            [&] { require(bench.onGuiThread(), "a command that a worker submits runs on the GUI thread"); }),
        "load");
    bench.awaitNote("message 3 released");
    requireEqual(bench.notes.of("message 1 sync").size(), 1U, "number of times a submitted event ran");
}

void commandsOfAWorkerRunInOrder(HostUnderTest& host)
{
    CommandBench bench(host);
    bench.runToTheEnd(submittingOnTheWorker(bench), "load");
    bench.awaitNote("message 3 released");
    auto order = bench.notes.of("message");
    std::erase_if(order, [](const std::string& note) { return !note.ends_with(" sync"); });
    requireEqual(order, Names{"message 1 sync", "message 2 sync", "message 3 sync"}, "order");
}

void commandsOfAWorkerComeBeforeItsPostPhase(HostUnderTest& host)
{
    CommandBench bench(host);
    bench.runToTheEnd(submittingOnTheWorker(bench), "load");
    require(bench.notes.inOrder("message 3 sync", "load post"),
            "what executeAsync submitted has run before executePostAsync");
}

} // namespace

std::vector<Test> commandTests()
{
    return {
        {"phases-run-in-order",
         "executeSync, executeAsync and executePostAsync of a command run once, in order", phasesRunInOrder},
        {"phases-run-on-their-threads", "executeAsync runs on a worker, the other phases on the GUI thread",
         phasesRunOnTheirThreads},
        {"post-phase-waits-for-the-worker", "executePostAsync starts after executeAsync has returned",
         postPhaseWaitsForTheWorker},
        {"gui-thread-is-free-during-the-worker",
         "While executeAsync runs, the GUI thread runs other commands", guiThreadIsFreeDuringTheWorker},
        {"command-lives-until-its-last-phase-returned",
         "The processor keeps a command until its last phase has returned, and no longer",
         commandLivesUntilItsLastPhaseHasReturned},
        {"running-command-is-refused",
         "The processor refuses a command object that is still running: a load would keep its slot for ever",
         commandThatIsRunningIsRefused},
        {"synchronous-command-runs-at-once",
         "On the GUI thread, commands of the types synchronous, clean-up and event run within executeCommand",
         synchronousCommandRunsAtOnce},
        {"synchronous-command-runs-within-a-phase",
         "The same holds within another command's phase: loading an applet unloads its board that way",
         synchronousCommandRunsWithinAPhase},
        {"worker-does-not-wait", "executeCommand on a worker returns without waiting for the GUI thread",
         workerDoesNotWait},
        {"commands-of-a-worker-run-on-the-gui-thread", "What a worker submits runs on the GUI thread",
         commandsOfAWorkerRunOnTheGuiThread},
        {"commands-of-a-worker-run-in-order", "What a worker submits runs in the order of submission",
         commandsOfAWorkerRunInOrder},
        {"commands-of-a-worker-precede-its-post-phase",
         "What executeAsync submits runs before executePostAsync: messages stay in their order",
         commandsOfAWorkerComeBeforeItsPostPhase},
    };
}

} // namespace ovra::conformance
