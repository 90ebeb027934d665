// The application's loop, and what holds without an application.

#include "LogCollector.h"
#include "TemporaryFolder.h"

#include "ovra-core/Command.h"
#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/Plugin.h"
#include "ovra-core/PluginManager.h"
#include "ovra-core/reference/Application.h"
#include "ovra-core/reference/Runtime.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <thread>

namespace {

using namespace std::chrono_literals;
using ovra::core::Command;
using ovra::core::HarloApplication;
using ovra::core::Plugin;
using ovra::reference::Application;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(Loop, RunsWorkOfOtherThreadsUntilItIsToldToQuit)
{
    Application application;
    std::vector<int> seen;
    std::thread other([&] {
        application.post([&] { seen.push_back(1); });
        application.post([&] { seen.push_back(2); });
        application.post([&] { application.quit(); });
    });
    application.exec();
    other.join();
    EXPECT_THAT(seen, ElementsAre(1, 2));
}

TEST(Loop, LeavesWorkThatItsWorkQueuesForTheNextTime)
{
    Application application;
    int runs = 0;
    std::function<void()> again = [&] {
        ++runs;
        application.post(again);
    };
    application.post(again);
    application.processEvents();
    EXPECT_EQ(runs, 1);
    application.processEvents();
    EXPECT_EQ(runs, 2);
}

TEST(Loop, WakesALoopOfTheFrontEndForWorkThatArrivesAndForWorkLeftBehind)
{
    Application application;
    int wakeUps = 0;
    application.setWakeUpCallback([&] { ++wakeUps; });
    application.post([] {});
    EXPECT_EQ(wakeUps, 1);
    application.post([] {});
    EXPECT_EQ(wakeUps, 2);
    bool done = false;
    application.post([&] { done = true; });
    application.post([] {});
    EXPECT_TRUE(application.pumpUntil([&] { return done; }, 5s));
    EXPECT_EQ(wakeUps, 5);
}

TEST(Loop, GivesUpAtTheLimit)
{
    Application application;
    EXPECT_FALSE(application.pumpUntil([] { return false; }, 10ms));
}

TEST(Loop, WakesALoopOfTheFrontEndForWorkThatIsLeftAtTheLimit)
{
    Application application;
    int wakeUps = 0;
    application.post([] {});
    application.setWakeUpCallback([&] { ++wakeUps; });
    EXPECT_FALSE(application.pumpUntil([] { return false; }, 0ms));
    EXPECT_EQ(wakeUps, 1);
}

class LeftByAnExceptionTest : public testing::TestWithParam<void (*)(Application&)>
{};

TEST_P(LeftByAnExceptionTest, WakesALoopOfTheFrontEndForTheRest)
{
    Application application;
    int wakeUps = 0;
    bool ran = false;
    application.post([] { throw std::runtime_error("work"); });
    application.post([&] { ran = true; });
    application.setWakeUpCallback([&] { ++wakeUps; });
    EXPECT_THROW(GetParam()(application), std::runtime_error);
    EXPECT_EQ(wakeUps, 1);
    EXPECT_FALSE(ran);
    application.processEvents();
    EXPECT_TRUE(ran);
}

INSTANTIATE_TEST_SUITE_P(Loops, LeftByAnExceptionTest,
                         testing::Values([](Application& application) { application.exec(); },
                                         [](Application& application) {
                                             application.pumpUntil([] { return false; }, 20s);
                                         }));

TEST(Loop, KeepsTheExceptionOfItsWorkWhereTheWakeUpThrowsAsWell)
{
    const LogCollector log;
    Application application;
    application.post([] { throw std::runtime_error("work"); });
    application.post([] {});
    application.setWakeUpCallback([] { throw std::logic_error("no window"); });
    EXPECT_THROW(application.exec(), std::runtime_error);
    EXPECT_THAT(log.texts(), ElementsAre(HasSubstr("wake-up")));
}

TEST(Loop, IsForTheGuiThread)
{
    Application application;
    std::thread other([&] {
        EXPECT_THROW(application.exec(), std::logic_error);
        EXPECT_THROW(application.processEvents(), std::logic_error);
        EXPECT_THROW(application.pumpUntil([] { return true; }, 1s), std::logic_error);
    });
    other.join();
}

TEST(Loop, IsUsableAfterWorkThatThrows)
{
    Application application;
    bool ran = false;
    application.post([] { throw std::runtime_error("work"); });
    application.post([&] { ran = true; });
    EXPECT_THROW(application.processEvents(), std::runtime_error);
    application.processEvents();
    EXPECT_TRUE(ran);
}

TEST(Application, IsTheOnlyOneOfItsProcess)
{
    const Application application;
    EXPECT_THROW(Application(), std::logic_error);
    EXPECT_TRUE(HarloApplication::commandprocessor());
}

TEST(Application, AnswersWithDefaultsWhenThereIsNone)
{
    HarloApplication::setConfigEntry("key", 7);
    EXPECT_FALSE(HarloApplication::commandprocessor());
    EXPECT_FALSE(HarloApplication::pluginmanager());
    EXPECT_EQ(HarloApplication::getConfigIntEntry("key", 3), 3);
    EXPECT_EQ(HarloApplication::getRuntimeDirectory(), "");
    EXPECT_FALSE(ovra::reference::runtime());
}

TEST(Application, TellsTheRuntimeDirectoryWithoutAClosingSeparator)
{
    const TemporaryFolder folder;
    const Application application(
        {.runtimeDirectory = folder.text() + "/", .runtimeLibrary = {}, .configurationFile = {}});
    EXPECT_EQ(HarloApplication::getRuntimeDirectory(), folder.text());
}

TEST(Application, NamesTheRuntimeThatIsMissing)
{
    const TemporaryFolder folder;
    const Application application(
        {.runtimeDirectory = folder.text(), .runtimeLibrary = {}, .configurationFile = {}});
    EXPECT_FALSE(ovra::reference::runtime());
    EXPECT_THAT([] { ovra::reference::requireRuntime(); },
                testing::ThrowsMessage<std::runtime_error>(
                    testing::AllOf(HasSubstr("fglib5"), HasSubstr("no such file"))));
}

TEST(Application, NamesARuntimeThatIsNoLibrary)
{
    const TemporaryFolder folder;
    folder.write("broken.so", "not a library");
    const Application application(
        {.runtimeDirectory = {}, .runtimeLibrary = folder.text() + "/broken.so", .configurationFile = {}});
    EXPECT_THAT([] { ovra::reference::requireRuntime(); },
                testing::ThrowsMessage<std::runtime_error>(HasSubstr("broken.so: ")));
}

struct NotedPlugin : Plugin
{
    explicit NotedPlugin(std::vector<std::string>& calls) : calls(calls) {}
    void postConstruct() override { calls.push_back("postConstruct"); }
    void injectDependency(const std::string& key, const boost::any& value) override
    {
        calls.push_back(key + '=' + boost::any_cast<std::string>(value));
    }
    void postInjection() override { calls.push_back("postInjection"); }
    boost::shared_ptr<Command> createInitializationApplicationCommand() override
    {
        return note("initialise");
    }
    boost::shared_ptr<Command> createCleanupApplicationCommand() override { return note("clean up"); }

    boost::shared_ptr<Command> note(const std::string& text)
    {
        struct Note : Command
        {
            Note(std::vector<std::string>& calls, std::string text)
                : Command(Synchronous),
                  calls(calls),
                  text(std::move(text))
            {}
            void executeSync() override { calls.push_back(text); }
            std::vector<std::string>& calls;
            std::string text;
        };
        return boost::make_shared<Note>(calls, text);
    }

    std::vector<std::string>& calls;
};

TEST(Application, TakesAPluginThroughItsLife)
{
    Application application;
    std::vector<std::string> calls;
    application.addPlugin(boost::make_shared<NotedPlugin>(calls), {{"views", std::string("window")}});
    application.addPlugin(boost::make_shared<Plugin>()); // has no commands
    application.startPlugins();
    application.stopPlugins();
    EXPECT_THAT(calls,
                ElementsAre("postConstruct", "views=window", "postInjection", "initialise", "clean up"));
    EXPECT_EQ(application.plugins().size(), 2U);
}

TEST(Application, RemembersWhetherPluginsAreWatched)
{
    const Application application;
    EXPECT_FALSE(application.isMonitoringPlugins());
    HarloApplication::pluginmanager()->startMonitor();
    EXPECT_TRUE(application.isMonitoringPlugins());
    HarloApplication::pluginmanager()->stopMonitor();
    EXPECT_FALSE(application.isMonitoringPlugins());
}

} // namespace
