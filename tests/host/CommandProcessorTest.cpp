// SPDX-License-Identifier: MIT
// Behaviour of the command processor beyond the library's requirements: reports, refusals, the end of the
// application.

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

/// What happened, in order.
class Events
{
public:
    void add(const std::string& event)
    {
        const std::lock_guard lock(m_mutex);
        m_events.push_back(event);
    }
    /// The events since the last call.
    std::vector<std::string> take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_events, {});
    }

private:
    std::mutex m_mutex;
    std::vector<std::string> m_events;
};

/// Notes its phases as "<name> <phase>", with " on the worker" if they run on another thread than the GUI
/// thread.
class NotedCommand : public Command
{
public:
    using Step = std::function<void()>;

    NotedCommand(Events& events, std::thread::id guiThread, std::string name, CommandType type)
        : Command(type),
          m_events(events),
          m_guiThread(guiThread),
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
    const std::thread::id m_guiThread;
    const std::string m_name;
};

class CommandProcessorTest : public testing::Test
{
protected:
    boost::shared_ptr<NotedCommand> make(const std::string& name, Command::CommandType type)
    {
        return boost::make_shared<NotedCommand>(events, guiThread, name, type);
    }
    static void submit(const boost::shared_ptr<Command>& command)
    {
        HarloApplication::commandprocessor()->executeCommand(command);
    }
    void pump()
    {
        ASSERT_TRUE(application->pumpUntil([this] { return application->idle(); }, 5min));
    }

    Events events;
    const std::thread::id guiThread = std::this_thread::get_id();
    std::unique_ptr<Application> application = std::make_unique<Application>();
};

TEST_F(CommandProcessorTest, StartsAThreePhaseCommandOfAPhaseAfterThatPhaseAndReleasesItOnTheGuiThread)
{
    const auto load = make("load", Command::Asynchronous);
    std::promise<void> posted;
    load->inPost = [&] {
        const auto rescan = make("rescan", Command::Asynchronous);
        rescan->inAsync = [&] { posted.get_future().wait(); };
        submit(rescan);
        application->post([&] {
            events.add("posted after it");
            posted.set_value();
        });
        events.add("load post ends");
    };
    submit(load);
    pump();
    auto seen = events.take();
    std::erase(seen, "rescan async on the worker"); // at any moment after its synchronous phase
    EXPECT_THAT(seen, ElementsAre("load sync", "load async on the worker", "load post", "load post ends",
                                  "rescan sync", "posted after it", "rescan post", "rescan released"));
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
    EXPECT_THAT(events.take(), ElementsAre("first sync", "first async on the worker", "second sync"));
    go.set_value();
    pump();
    EXPECT_THAT(events.take(), testing::SizeIs(4));
}

// --- failures ---------------------------------------------------------------------------------------

TEST_F(CommandProcessorTest, ReportsAPhaseThatFailsOnTheGuiThreadAndRunsThePostAsynchronousPhase)
{
    struct Row
    {
        const char* phase;
        NotedCommand::Step NotedCommand::*step;
        std::vector<std::string> events;
    };
    const Row rows[] = {
        {"executeSync", &NotedCommand::inSync, {"command sync", "reported", "command post"}},
        {"executeAsync",
         &NotedCommand::inAsync,
         {"command sync", "command async on the worker", "reported", "command post"}},
        {"executePostAsync",
         &NotedCommand::inPost,
         {"command sync", "command async on the worker", "command post", "reported"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.phase);
        events.take(); // the command of the row before is released
        application->setErrorHandler([&](const PhaseFailure& failure) {
            events.add("reported");
            EXPECT_EQ(std::this_thread::get_id(), guiThread);
            EXPECT_THAT(failure.command, HasSubstr("NotedCommand"));
            EXPECT_EQ(failure.phase, row.phase);
            EXPECT_EQ(failure.message, "the cable is out");
            EXPECT_THROW(std::rethrow_exception(failure.exception), std::runtime_error);
        });
        const auto command = make("command", Command::Asynchronous);
        (*command).*(row.step) = [] { throw std::runtime_error("the cable is out"); };
        submit(command);
        pump();
        EXPECT_EQ(events.take(), row.events);
    }
}

TEST_F(CommandProcessorTest, LogsFailuresThatNobodyHandlesOrWhoseHandlerThrows)
{
    const LogCollector log;
    const auto odd = make("odd", Command::Synchronous);
    odd->inSync = [] { throw 42; };
    submit(odd);
    application->setErrorHandler([](const PhaseFailure&) { throw std::runtime_error("no window"); });
    odd->inSync = [] { throw std::runtime_error("second"); };
    submit(odd);
    submit(make("next", Command::Synchronous));
    EXPECT_THAT(log.texts(),
                ElementsAre(testing::AllOf(HasSubstr("NotedCommand"), HasSubstr("::executeSync failed"),
                                           HasSubstr("unknown type")),
                            HasSubstr("second"), HasSubstr("no window")));
    EXPECT_THAT(events.take(), ElementsAre("odd sync", "odd sync", "next sync", "next released"));
}

// --- the end ----------------------------------------------------------------------------------------

TEST_F(CommandProcessorTest, RefusesNoCommandAtAllAndTerminationByAnotherThread)
{
    EXPECT_THROW(submit({}), std::invalid_argument);
    std::thread other([] {
        EXPECT_THROW(HarloApplication::commandprocessor()->terminateAsyncCommands(), std::logic_error);
    });
    other.join();
}

TEST_F(CommandProcessorTest, RefusesAnObjectThatIsStillUnderWayAndTakesItAgainAfterwards)
{
    const auto load = make("load", Command::Asynchronous);
    load->inSync = [&] { EXPECT_THROW(submit(load), std::logic_error); };
    load->inAsync = [&] { EXPECT_THROW(submit(load), std::logic_error); };
    load->inPost = load->inSync;
    const auto queued = make("queued", Command::Event);
    std::thread([&] {
        submit(queued);
        EXPECT_THROW(submit(queued), std::logic_error);
    }).join();
    pump();
    EXPECT_THAT(events.take(), ElementsAre("queued sync"));
    for (int round = 0; round < 2; ++round) {
        submit(load);
        EXPECT_THROW(submit(load), std::logic_error);
        pump();
    }
    const std::vector<std::string> once = {"load sync", "load async on the worker", "load post"};
    auto twice = once;
    twice.insert(twice.end(), once.begin(), once.end());
    EXPECT_EQ(events.take(), twice);
}

TEST_F(CommandProcessorTest, FinishesACommandWhoseSynchronousPhaseEndsAllOthers)
{
    const auto last = make("last", Command::Asynchronous);
    last->inSync = [] { HarloApplication::commandprocessor()->terminateAsyncCommands(); };
    submit(last);
    EXPECT_THAT(events.take(), ElementsAre("last sync", "last post"));
    EXPECT_TRUE(application->idle());
}

TEST_F(CommandProcessorTest, FinishesWhatBeganAndDropsWhatHasNotRunWhenTheApplicationGoes)
{
    const auto processor = HarloApplication::commandprocessor();
    std::promise<void> reached;
    const auto running = make("running", Command::Asynchronous);
    running->inAsync = [&] { reached.set_value(); };
    running->inPost = [&] { EXPECT_TRUE(HarloApplication::commandprocessor()); };
    submit(running);
    reached.get_future().wait();
    std::thread other([&] { submit(make("queued", Command::Event)); });
    other.join();
    application.reset();
    EXPECT_THAT(events.take(), ElementsAre("running sync", "running async on the worker", "running post",
                                           "queued released"));
    processor->executeCommand(make("late", Command::Event));
    EXPECT_THAT(events.take(), ElementsAre("late released"));
}

} // namespace
