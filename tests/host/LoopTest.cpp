// SPDX-License-Identifier: MIT
// Tests of the application's event loop, and of the host without an application.

#include "LogCollector.h"

#include "tests/TemporaryFolder.h"

#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/Plugin.h"
#include "ovra-core/PluginManager.h"
#include "ovra-core/reference/Application.h"
#include "ovra-core/reference/RuntimeEntries.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <thread>

namespace {

using namespace std::chrono_literals;
using ovra::core::HarloApplication;
using ovra::reference::Application;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(Loop, RunsWorkOfOtherThreadsUntilItIsToldToQuit)
{
    Application application;
    for (const char* round : {"first", "again"}) {
        std::vector<int> seen;
        std::thread other([&] {
            application.post([&] { seen.push_back(1); });
            application.post([&] { seen.push_back(2); });
            application.post([&] { application.quit(); });
        });
        application.exec();
        const auto seenByTheLoop = seen;
        other.join();
        EXPECT_THAT(seenByTheLoop, ElementsAre(1, 2)) << round;
        application.processEvents(); // what is left, if the loop has ended too early
    }
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
    bool done = false;
    application.setWakeUpCallback([&] { ++wakeUps; });
    application.post([&] { done = true; });
    EXPECT_EQ(wakeUps, 1);
    application.post([] {});
    EXPECT_EQ(wakeUps, 2);
    EXPECT_TRUE(application.pumpUntil([&] { return done; }, 5s));
    EXPECT_EQ(wakeUps, 3);
    EXPECT_FALSE(application.pumpUntil([] { return false; }, 0ms)); // the limit
    EXPECT_EQ(wakeUps, 4);
}

TEST(Loop, LeavesTheRestForTheNextTimeWhenItsWorkThrowsAndWakesALoopOfTheFrontEndForIt)
{
    struct Row
    {
        void (*loop)(Application&);
        int wakeUps;
    };
    const Row rows[] = {
        {[](Application& application) { application.exec(); }, 1},
        {[](Application& application) { application.pumpUntil([] { return false; }, 20s); }, 1},
        {[](Application& application) { application.processEvents(); }, 0},
    };
    for (const auto& row : rows) {
        Application application;
        int wakeUps = 0;
        bool ran = false;
        application.post([] { throw std::runtime_error("work"); });
        application.post([&] { ran = true; });
        application.setWakeUpCallback([&] { ++wakeUps; });
        EXPECT_THROW(row.loop(application), std::runtime_error);
        EXPECT_EQ(wakeUps, row.wakeUps);
        EXPECT_FALSE(ran);
        application.processEvents();
        EXPECT_TRUE(ran);
    }
}

TEST(Loop, KeepsTheExceptionOfItsWorkWhereTheWakeUpThrowsAsWell)
{
    const LogCollector log;
    Application application;
    application.post([] { throw std::runtime_error("work"); });
    application.setWakeUpCallback([] { throw std::logic_error("no window"); });
    application.post([] {}); // stays queued
    EXPECT_THROW(application.exec(), std::runtime_error);
    EXPECT_THAT(log.texts(), ElementsAre(HasSubstr("wake-up"), HasSubstr("wake-up")));
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

TEST(Application, IsTheOnlyOneOfItsProcessAndWithoutItThereAreDefaults)
{
    {
        const Application application;
        EXPECT_THROW(Application(), std::logic_error);
        EXPECT_TRUE(HarloApplication::commandprocessor());
    }
    HarloApplication::setConfigEntry("key", 7);
    EXPECT_FALSE(HarloApplication::commandprocessor());
    EXPECT_FALSE(HarloApplication::pluginmanager());
    EXPECT_EQ(HarloApplication::getConfigIntEntry("key", 3), 3);
    EXPECT_EQ(HarloApplication::getRuntimeDirectory(), "");
    EXPECT_FALSE(ovra::reference::runtime());
}

TEST(Application, NamesTheRuntimeThatIsMissingOrNoLibrary)
{
    const TemporaryFolder folder;
    folder.write("broken.so", "not a library");
    struct Row
    {
        std::string library;
        std::vector<const char*> named;
    };
    for (const auto& row :
         {Row{"", {"fglib5", "no such file"}}, Row{folder.text() + "/broken.so", {"broken.so: "}}}) {
        const Application application({.runtimeDirectory = folder.text() + "/",
                                       .runtimeLibrary = row.library,
                                       .configurationFile = {}});
        EXPECT_EQ(HarloApplication::getRuntimeDirectory(), folder.text()); // without a closing separator
        EXPECT_FALSE(ovra::reference::runtime());
        for (const char* part : row.named)
            EXPECT_THAT([] { ovra::reference::requireRuntime(); },
                        testing::ThrowsMessage<std::runtime_error>(HasSubstr(part)));
    }
}

TEST(Application, TakesAPluginUpInOrder)
{
    struct NotedPlugin : ovra::core::Plugin
    {
        void postConstruct() override { calls.emplace_back("postConstruct"); }
        void injectDependency(const std::string& key, const boost::any& value) override
        {
            calls.push_back(key + '=' + boost::any_cast<std::string>(value));
        }
        void postInjection() override { calls.emplace_back("postInjection"); }
        std::vector<std::string> calls;
    };
    Application application;
    const auto plugin = boost::make_shared<NotedPlugin>();
    application.addPlugin(plugin, {{"views", std::string("window")}});
    application.startPlugins(); // it has no commands
    application.stopPlugins();
    EXPECT_THAT(plugin->calls, ElementsAre("postConstruct", "views=window", "postInjection"));
}

} // namespace
