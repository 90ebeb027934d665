// SPDX-License-Identifier: MIT
// Tests of phases that throw.

#include "Commands.h"
#include "Tests.h"

#include <stdexcept>
#include <utility>

namespace ovra::conformance {

namespace {

using core::Command;
using Names = std::vector<std::string>;

[[noreturn]] void throwFailure()
{
    throw std::runtime_error("a failure that the test plans");
}

void failedSyncPhaseSkipsTheWorker(HostUnderTest& host)
{
    CommandBench bench(host);
    auto load = bench.make("load", Command::Asynchronous);
    load->inSync = throwFailure;
    bench.runToTheEnd(std::move(load), "load");
    require(!bench.notes.contains("load async"), "no executeAsync after an executeSync that failed");
}

/// \p step of the command throws; executePostAsync has to run once, on the GUI thread.
void requirePostPhaseAfter(HostUnderTest& host, NotedCommand::Step NotedCommand::*step)
{
    CommandBench bench(host);
    auto load = bench.make("load", Command::Asynchronous);
    (*load).*step = throwFailure;
    load->inPost = [&] { require(bench.onGuiThread(), "executePostAsync on the GUI thread"); };
    bench.runToTheEnd(std::move(load), "load");
    requireEqual(bench.notes.of("load post").size(), 1U, "number of calls of executePostAsync");
}

void postPhaseFollowsAFailedSyncPhase(HostUnderTest& host)
{
    requirePostPhaseAfter(host, &NotedCommand::inSync);
}

void postPhaseFollowsAFailedWorkerPhase(HostUnderTest& host)
{
    requirePostPhaseAfter(host, &NotedCommand::inAsync);
}

/// Lets each phase of each type of command throw by \p throwing, in turn.
void requireTheProcessorGoesOn(HostUnderTest& host, const NotedCommand::Step& throwing)
{
    CommandBench bench(host);
    for (const auto& [type, name] : SYNCHRONOUS_TYPES) {
        auto command = bench.make(name, type);
        command->inSync = throwing;
        bench.submit(command);
    }
    int round = 0;
    for (const auto step : {&NotedCommand::inSync, &NotedCommand::inAsync, &NotedCommand::inPost}) {
        auto command = bench.make("failing", Command::Asynchronous);
        (*command).*step = throwing;
        bench.submit(std::exchange(command, {}));
        const std::string next = "next " + std::to_string(++round);
        bench.runToTheEnd(bench.make(next, Command::Asynchronous), next);
        requireEqual(bench.notes.of(next),
                     Names{next + " sync", next + " async", next + " post", next + " released"},
                     "what happened of the command after one that failed");
    }
}

void exceptionDoesNotEndTheProcessor(HostUnderTest& host)
{
    requireTheProcessorGoesOn(host, throwFailure);
}

void oddExceptionDoesNotEndTheProcessor(HostUnderTest& host)
{
    requireTheProcessorGoesOn(host, [] { throw 42; });
}

} // namespace

std::vector<Test> failureTests()
{
    return {
        {"failed-sync-phase-skips-the-worker", "When executeSync throws, executeAsync is skipped",
         failedSyncPhaseSkipsTheWorker},
        {"post-phase-follows-a-failed-sync-phase",
         "When executeSync throws, executePostAsync runs all the same: it ends a busy cursor",
         postPhaseFollowsAFailedSyncPhase},
        {"post-phase-follows-a-failed-worker-phase",
         "When executeAsync throws, executePostAsync runs all the same: it releases the loading slot",
         postPhaseFollowsAFailedWorkerPhase},
        {"exception-does-not-end-the-processor",
         "An exception that leaves a phase reaches neither the submitter nor the next command",
         exceptionDoesNotEndTheProcessor},
        {"odd-exception-does-not-end-the-processor", "The same holds for what is no std::exception",
         oddExceptionDoesNotEndTheProcessor},
    };
}

} // namespace ovra::conformance
