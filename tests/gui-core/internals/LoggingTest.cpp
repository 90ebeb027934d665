#include "NewProcess.h"
#include "TemporaryInstallation.h"

#include "native/Thread.h"
#include "platform/Logging.h"
#include "platform/ProcessEnvironment.h"
#include "platform/SharedLibrary.h"

#include "fglib/RuntimeLibrary.h"
#include "gui-core/EntryPoints.h"
#include "simulation/common-logging-dispatcher/DispatcherControl.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>
#include <thread>
#include <vector>

using ovra::templates::platform::setEnvironmentVariable;
using ovra::tests::TemporaryInstallation;
using ovra::tools::logging::Logger;
using ovra::tools::logging::Logging;

namespace {

template <class Function>
Function* control(const char* name)
{
    const auto dispatcher = ovra::gui::fglib::openRuntimeLibrary("common-logging-dispatcher", nullptr);
    return dispatcher ? reinterpret_cast<Function*>(dispatcher->locate(name)) : nullptr;
}

void useInstallation(const std::string& folder)
{
    setEnvironmentVariable("OVRADIR5_64", folder);
}

std::vector<std::string> linesOf(const std::filesystem::path& file)
{
    std::vector<std::string> lines;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

} // namespace

TEST(LoggingDeathTest, WithoutADispatcherEveryTagHasTheSilentDefaultLogger)
{
    IN_A_NEW_PROCESS([] {
        useInstallation("no such folder");
        Logging& logging = Logging::instance();
        Logger& logger = logging.getLogger("one");
        EXPECT_FALSE(logging.isConnected());
        EXPECT_EQ(&logging.getLogger("other"), &logger);
        EXPECT_EQ(logger.id(), 0U);
        EXPECT_EQ(logger.threshold(), 7U);
        EXPECT_FALSE(logger.isEnabled(2));
        logger.log(9, "goes nowhere", 0, 0);
        Logging::onSetLevel(&logging, 5, 1);
    });
}

TEST(LoggingDeathTest, ALibraryWithoutTheDescriptorIsNoDispatcher)
{
    IN_A_NEW_PROCESS([] {
        TemporaryInstallation installation;
        installation.add(OVRA_LEGACY_APPLET, "bin", "common-logging-dispatcher");
        useInstallation(installation.folder());
        EXPECT_FALSE(Logging::instance().isConnected());
        EXPECT_NE(ovra::gui::fglib::openRuntimeLibrary("common-logging-dispatcher", nullptr), nullptr)
            << "the file is a library, or the test shows nothing";
    });
}

TEST(LoggingDeathTest, LoggersFollowTheDispatcherUntilItDisconnects)
{
    IN_A_NEW_PROCESS([] {
        TemporaryInstallation installation;
        const auto file = installation.path() / "log.txt";
        useInstallation(OVRA_STAGE_DIR);
        setEnvironmentVariable("OVRA_LOG_FILE", file.string());
        setEnvironmentVariable("OVRA_LOG_LEVELS", "quiet=5;loud=1");
        // The dispatcher calls back before connect() has returned: re-entry must find the instance.
        setEnvironmentVariable("OVRA_LOG_CALLBACK_ON_CONNECT", "loud;quiet");

        Logging& logging = Logging::instance();
        ASSERT_TRUE(logging.isConnected());
        Logger& quiet = logging.getLogger("quiet");
        Logger& loud = logging.getLogger("loud");
        EXPECT_EQ(&logging.getLogger("quiet"), &quiet);
        EXPECT_NE(&loud, &quiet);
        EXPECT_TRUE(loud.isEnabled(1));
        EXPECT_FALSE(quiet.isEnabled(4));
        EXPECT_TRUE(quiet.isEnabled(5));

        const auto setLevel = control<LogSim_setLevel_t>("LogSim_setLevel");
        setLevel("quiet", 3);
        EXPECT_TRUE(quiet.isEnabled(4));
        setLevel("never asked for", 0);
        Logging::onSetLevel(&logging, 4711, 0);

        quiet.mute(ovra::templates::platform::currentThreadId());
        EXPECT_FALSE(quiet.isEnabled(4));
        std::thread([&quiet] { EXPECT_TRUE(quiet.isEnabled(4)) << "another thread"; }).join();
        quiet.unmute(ovra::templates::platform::currentThreadId());
        EXPECT_TRUE(quiet.isEnabled(4));

        loud.log(4, "before", 0, 0);
        control<LogSim_disconnect_t>("LogSim_disconnect")();
        loud.log(4, "after", 0, 0);
        EXPECT_FALSE(logging.isConnected());
        EXPECT_EQ(logging.getLogger("loud").id(), 0U);
        EXPECT_TRUE(loud.isEnabled(4)) << "a logger handed out before stays valid";
        EXPECT_EQ(linesOf(file), std::vector<std::string>{"4 loud before"});
    });
}

TEST(LoggingDeathTest, TheLibraryWritesItsTwoLinesWithThreadAndUseCount)
{
    IN_A_NEW_PROCESS([] {
        TemporaryInstallation installation;
        const auto file = installation.path() / "log.txt";
        useInstallation(OVRA_STAGE_DIR);
        setEnvironmentVariable("OVRA_LOG_FILE", file.string());
        setEnvironmentVariable("OVRA_LOG_LEVEL", "2");
        OvraGuiCoreInit();
        OvraGuiCoreInit();
        OvraGuiCoreDeinit();
        control<LogSim_setLevel_t>("LogSim_setLevel")("guard.library", 3);
        OvraGuiCoreDeinit();
        control<LogSim_setLevel_t>("LogSim_setLevel")("guard.library", 2);
        OvraGuiCoreInit();
        OvraGuiCoreDeinit();

        const std::string prefix =
            "2 guard.library thread-id=" + std::to_string(ovra::templates::platform::currentThreadId()) +
            "|LIBRARY ";
        const std::vector<std::string> expected = {
            prefix + "INIT: OvraGuiCore (useCount: 1)",   prefix + "INIT: OvraGuiCore (useCount: 2)",
            prefix + "DEINIT: OvraGuiCore (useCount: 2)", prefix + "INIT: OvraGuiCore (useCount: 1)",
            prefix + "DEINIT: OvraGuiCore (useCount: 1)",
        };
        EXPECT_EQ(linesOf(file), expected);
    });
}

TEST(LoggingDeathTest, ManyThreadsThatComeFirstFindOneInstance)
{
    IN_A_NEW_PROCESS([] {
        useInstallation(OVRA_STAGE_DIR);
        setEnvironmentVariable("OVRA_LOG_LEVEL", "2");
        std::vector<Logger*> found(8);
        {
            std::vector<std::jthread> threads;
            for (auto& slot : found)
                threads.emplace_back([&slot] { slot = &Logging::instance().getLogger("shared"); });
        }
        for (const Logger* logger : found)
            EXPECT_EQ(logger, found.front());
        EXPECT_TRUE(found.front()->isEnabled(2));
    });
}
