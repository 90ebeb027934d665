// Which phase of a command runs when, and on which thread.

#include "LogCollector.h"

#include "ovra-core/Command.h"
#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <future>
#include <mutex>
#include <thread>

namespace {

using namespace std::chrono_literals;
using ovra::core::Command;
using ovra::core::HarloApplication;
using ovra::reference::Application;
using ovra::reference::PhaseFailure;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto limit = 20s;

/// What happened, in order.
class Events
{
public:
    void add(const std::string& event)
    {
        const std::lock_guard lock(m_mutex);
        m_events.push_back(event);
    }
    std::vector<std::string> all() const
    {
        const std::lock_guard lock(m_mutex);
        return m_events;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_events;
};

/// Notes its phases as "<name> <phase>", with " on the worker" where they run off the GUI thread.
class NotedCommand : public Command
{
public:
    using Step = std::function<void()>;

    NotedCommand(Events& events, std::string name, CommandType type)
        : Command(type),
          m_events(events),
          m_name(std::move(name))
    {}
    ~NotedCommand() override { note("released"); }

    void executeSync() override { run("sync", inSync); }
    void executeAsync() override { run("async", inAsync); }
    void executePostAsync() override { run("post", inPost); }

    Step inSync, inAsync, inPost;

private:
    void note(const std::string& phase)
    {
        const bool away = std::this_thread::get_id() != m_guiThread;
        m_events.add(m_name + ' ' + phase + (away ? " on the worker" : ""));
    }
    void run(const std::string& phase, const Step& step)
    {
        note(phase);
        if (step)
            step();
    }

    Events& m_events;
    const std::string m_name;
    const std::thread::id m_guiThread = guiThread();

public:
    static std::thread::id& guiThread()
    {
        static std::thread::id id;
        return id;
    }
};

class CommandProcessorTest : public testing::Test
{
protected:
    CommandProcessorTest() { NotedCommand::guiThread() = std::this_thread::get_id(); }

    boost::shared_ptr<NotedCommand> make(const std::string& name, Command::CommandType type)
    {
        return boost::make_shared<NotedCommand>(events, name, type);
    }
    static void submit(const boost::shared_ptr<Command>& command)
    {
        HarloApplication::commandprocessor()->executeCommand(command);
    }
    void pump()
    {
        ASSERT_TRUE(application->pumpUntil([this] { return application->idle(); }, limit));
    }

    Events events;
    std::unique_ptr<Application> application = std::make_unique<Application>();
};

TEST_F(CommandProcessorTest, RunsTheThreePhasesInTurnAndReleasesTheCommandOnTheGuiThread)
{
    submit(make("load", Command::Asynchronous));
    EXPECT_FALSE(application->idle());
    pump();
    EXPECT_THAT(events.all(),
                ElementsAre("load sync", "load async on the worker", "load post", "load released"));
}

class OneShotCommandTest : public CommandProcessorTest,
                           public testing::WithParamInterface<Command::CommandType>
{};

TEST_P(OneShotCommandTest, RunsAtOnceOnTheGuiThread)
{
    submit(make("command", GetParam()));
    EXPECT_THAT(events.all(), ElementsAre("command sync", "command released"));
    EXPECT_TRUE(application->idle());
}

TEST_P(OneShotCommandTest, RunsAtOnceWithinAPhaseOfAnother)
{
    const auto outer = make("outer", Command::Synchronous);
    outer->inSync = [&] {
        submit(make("inner", GetParam()));
        events.add("outer goes on");
    };
    submit(outer);
    EXPECT_THAT(events.all(), ElementsAre("outer sync", "inner sync", "inner released", "outer goes on"));
}

INSTANTIATE_TEST_SUITE_P(Types, OneShotCommandTest,
                         testing::Values(Command::Synchronous, Command::Cleanup, Command::Event));

TEST_F(CommandProcessorTest, StartsAThreePhaseCommandOfAPhaseAfterThatPhase)
{
    const auto load = make("load", Command::Asynchronous);
    load->inPost = [&] {
        submit(make("rescan", Command::Asynchronous));
        events.add("load post ends");
    };
    submit(load);
    pump();
    EXPECT_THAT(events.all(),
                ElementsAre("load sync", "load async on the worker", "load post", "load post ends",
                            "rescan sync", "rescan async on the worker", "rescan post", "rescan released"));
}

TEST_F(CommandProcessorTest, RunsTheSynchronousPhaseOfASecondCommandWhileTheFirstIsOnTheWorker)
{
    std::promise<void> reached, go;
    const auto first = make("first", Command::Asynchronous);
    first->inAsync = [&] {
        reached.set_value();
        go.get_future().wait();
    };
    submit(first);
    reached.get_future().wait();
    submit(make("second", Command::Asynchronous));
    EXPECT_THAT(events.all(), ElementsAre("first sync", "first async on the worker", "second sync"));
    go.set_value();
    pump();
    EXPECT_THAT(events.all(), ElementsAre("first sync", "first async on the worker", "second sync",
                                          testing::_, testing::_, testing::_, testing::_));
}

TEST_F(CommandProcessorTest, QueuesWhatOtherThreadsSubmitInTheirOrder)
{
    std::thread other([&] {
        submit(make("one", Command::Event));
        submit(make("two", Command::Asynchronous));
        submit(make("three", Command::Synchronous));
        events.add("submitted");
    });
    other.join();
    EXPECT_THAT(events.all(), ElementsAre("submitted"));
    pump();
    EXPECT_THAT(events.all(), ElementsAre("submitted", "one sync", "one released", "two sync", testing::_,
                                          testing::_, testing::_, testing::_, testing::_));
}

TEST_F(CommandProcessorTest, ShowsEventsOfTheWorkerBeforeItsCommandEnds)
{
    const auto first = make("message 1", Command::Event), second = make("message 2", Command::Event);
    const auto load = make("load", Command::Asynchronous);
    load->inAsync = [&] {
        submit(first);
        submit(second);
    };
    submit(load);
    pump();
    EXPECT_THAT(events.all(), ElementsAre("load sync", "load async on the worker", "message 1 sync",
                                          "message 2 sync", "load post"));
}

TEST_F(CommandProcessorTest, RefusesNoCommandAtAll)
{
    EXPECT_THROW(submit({}), std::invalid_argument);
}

// --- failures ---------------------------------------------------------------------------------------

struct FailureCase
{
    const char* phase;
    NotedCommand::Step NotedCommand::*step;
    std::vector<std::string> events;
};

class FailingPhaseTest : public CommandProcessorTest, public testing::WithParamInterface<FailureCase>
{};

TEST_P(FailingPhaseTest, IsReportedOnTheGuiThreadAndThePostAsynchronousPhaseRuns)
{
    std::vector<PhaseFailure> failures;
    application->setErrorHandler([&](const PhaseFailure& failure) {
        events.add("reported");
        EXPECT_EQ(std::this_thread::get_id(), NotedCommand::guiThread());
        failures.push_back(failure);
    });
    const auto command = make("command", Command::Asynchronous);
    (*command).*(GetParam().step) = [] { throw std::runtime_error("the cable is out"); };
    submit(command);
    pump();

    EXPECT_EQ(events.all(), GetParam().events);
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_THAT(failures[0].command, HasSubstr("NotedCommand"));
    EXPECT_EQ(failures[0].phase, GetParam().phase);
    EXPECT_EQ(failures[0].message, "the cable is out");
    EXPECT_THROW(std::rethrow_exception(failures[0].exception), std::runtime_error);
}

INSTANTIATE_TEST_SUITE_P(
    Phases, FailingPhaseTest,
    testing::Values(
        FailureCase{"executeSync", &NotedCommand::inSync, {"command sync", "reported", "command post"}},
        FailureCase{"executeAsync",
                    &NotedCommand::inAsync,
                    {"command sync", "command async on the worker", "reported", "command post"}},
        FailureCase{"executePostAsync",
                    &NotedCommand::inPost,
                    {"command sync", "command async on the worker", "command post", "reported"}}),
    [](const auto& info) { return std::string(info.param.phase); });

TEST_F(CommandProcessorTest, LogsFailuresThatNobodyHandles)
{
    const LogCollector log;
    const auto odd = make("odd", Command::Synchronous);
    odd->inSync = [] { throw 42; };
    submit(odd);
    EXPECT_THAT(log.texts(), ElementsAre(testing::AllOf(HasSubstr("NotedCommand::executeSync failed"),
                                                        HasSubstr("unknown type"))));
}

TEST_F(CommandProcessorTest, SurvivesAnErrorHandlerThatThrows)
{
    const LogCollector log;
    application->setErrorHandler([](const PhaseFailure&) { throw std::runtime_error("no window"); });
    const auto failing = make("failing", Command::Synchronous);
    failing->inSync = [] { throw std::runtime_error("first"); };
    submit(failing);
    EXPECT_THAT(log.texts(), ElementsAre(HasSubstr("first"), HasSubstr("no window")));
    submit(make("next", Command::Synchronous));
    EXPECT_THAT(events.all(), ElementsAre("failing sync", "next sync", "next released"));
}

// --- the end ----------------------------------------------------------------------------------------

TEST_F(CommandProcessorTest, LetsTheRunningPhaseEndAndFinishesWhatBeganWhenItTerminates)
{
    std::promise<void> reached;
    const auto running = make("running", Command::Asynchronous);
    running->inAsync = [&] {
        reached.set_value();
        while (!application->terminating())
            std::this_thread::yield();
    };
    submit(running);
    reached.get_future().wait();
    submit(make("waiting", Command::Asynchronous));
    HarloApplication::commandprocessor()->terminateAsyncCommands();
    events.add("terminated");
    submit(make("late", Command::Asynchronous));
    submit(make("late event", Command::Event));
    pump();
    EXPECT_THAT(events.all(), ElementsAre("running sync", "running async on the worker", "waiting sync",
                                          "running post", "waiting post", "waiting released", "terminated",
                                          "late released", "late event released"));
}

TEST_F(CommandProcessorTest, StartsNothingThatAPostAsynchronousPhaseSubmitsWhileItTerminates)
{
    const auto load = make("load", Command::Asynchronous);
    load->inPost = [&] { submit(make("rescan", Command::Asynchronous)); };
    submit(load);
    const auto cleanup = make("cleanup", Command::Cleanup);
    cleanup->inSync = [] { HarloApplication::commandprocessor()->terminateAsyncCommands(); };
    submit(cleanup);
    pump();
    const auto all = events.all();
    EXPECT_THAT(all, testing::Contains("load post"));
    EXPECT_THAT(all, testing::Not(testing::Contains("rescan sync")));
    EXPECT_THAT(all, testing::Contains("rescan released"));
}

TEST_F(CommandProcessorTest, TerminatesOnTheGuiThreadOnly)
{
    std::thread other([] {
        EXPECT_THROW(HarloApplication::commandprocessor()->terminateAsyncCommands(), std::logic_error);
    });
    other.join();
}

TEST_F(CommandProcessorTest, DropsWhatHasNotRunWhenTheApplicationGoes)
{
    const auto processor = HarloApplication::commandprocessor();
    std::thread other([&] { submit(make("queued", Command::Event)); });
    other.join();
    application.reset();
    EXPECT_THAT(events.all(), ElementsAre("queued released"));
    processor->executeCommand(make("late", Command::Event));
    EXPECT_THAT(events.all(), ElementsAre("queued released", "late released"));
    EXPECT_FALSE(HarloApplication::commandprocessor());
}

} // namespace
