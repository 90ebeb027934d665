// SPDX-License-Identifier: MIT
#include "LibraryInitController.h"
#include "NewProcess.h"

#include "fglib/RuntimeLibrary.h"
#include "logging/Logging.h"
#include "platform/ProcessEnvironment.h"
#include "platform/SharedLibrary.h"
#include "platform/Thread.h"
#include "tests/TemporaryFolder.h"

#include "gui-core/EntryPoints.h"
#include "simulation/common-logging-dispatcher/DispatcherControl.h"

#include <gtest/gtest.h>

#include <new>
#include <thread>
#include <vector>

using ovra::gui::fglib::openRuntimeLibrary;
using ovra::templates::platform::currentThreadId;
using ovra::templates::platform::setEnvironmentVariable;
using ovra::tools::logging::Logger;
using ovra::tools::logging::Logging;

namespace {

template <class Function>
Function* control(const char* name)
{
    const auto dispatcher = openRuntimeLibrary("common-logging-dispatcher", nullptr);
    return dispatcher ? reinterpret_cast<Function*>(dispatcher->locate(name)) : nullptr;
}

/// Sets the variables for the dispatcher's location and for the dispatcher itself.
void set(std::initializer_list<std::pair<const char*, std::string>> variables)
{
    for (const auto& [name, value] : variables)
        setEnvironmentVariable(name, value);
}

} // namespace

TEST(LoggingDeathTest, WithoutADispatcherEveryTagHasTheSilentDefaultLogger)
{
    // In the dispatcher's place there is nothing, or a library without the descriptor.
    for (const bool library : {false, true}) {
        IN_A_NEW_PROCESS([library] {
            const TemporaryFolder installation;
            if (library)
                installation.add(OVRA_LEGACY_APPLET, "bin", "common-logging-dispatcher");
            set({{"OVRADIR5_64", installation.path().string()}});
            Logging& logging = Logging::instance();
            EXPECT_FALSE(logging.isConnected());
            Logger& logger = logging.getLogger("one");
            EXPECT_EQ(&logging.getLogger("other"), &logger);
            EXPECT_EQ(logger.id(), 0U);
            EXPECT_EQ(logger.threshold(), 7U);
            EXPECT_FALSE(logger.isEnabled(2));
            logger.log(9, "goes nowhere", 0, 0);
            Logging::onSetLevel(&logging, 5, 1);
            EXPECT_EQ(openRuntimeLibrary("common-logging-dispatcher", nullptr) != nullptr, library);
        });
    }
}

TEST(LoggingDeathTest, LoggersFollowTheDispatcherUntilItDisconnects)
{
    IN_A_NEW_PROCESS([] {
        const TemporaryFolder folder;
        set({{"OVRADIR5_64", OVRA_STAGE_DIR},
             {"OVRA_LOG_FILE", folder.path("log.txt").string()},
             {"OVRA_LOG_LEVELS", "quiet=5;loud=1"},
             // The dispatcher calls back before connect() has returned: the nested call must find the
             // instance.
             {"OVRA_LOG_CALLBACK_ON_CONNECT", "loud;quiet"}});

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

        quiet.mute(currentThreadId());
        EXPECT_FALSE(quiet.isEnabled(4));
        std::thread([&quiet] { EXPECT_TRUE(quiet.isEnabled(4)) << "another thread"; }).join();
        quiet.unmute(currentThreadId());
        EXPECT_TRUE(quiet.isEnabled(4));

        loud.log(4, "before", 0, 0);
        control<LogSim_disconnect_t>("LogSim_disconnect")();
        loud.log(4, "after", 0, 0);
        EXPECT_FALSE(logging.isConnected());
        EXPECT_EQ(logging.getLogger("loud").id(), 0U);
        EXPECT_TRUE(loud.isEnabled(4)) << "a logger handed out before stays valid";
        EXPECT_EQ(folder.read("log.txt"), "4 loud before\n");
    });
}

TEST(LoggingDeathTest, IsThereForADispatcherThatComesBackWhileItConnectsAndGivesNoFunctions)
{
    IN_A_NEW_PROCESS([] {
        const TemporaryFolder installation;
        installation.add(OVRA_EARLY_DISPATCHER, "bin", "common-logging-dispatcher");
        set({{"OVRADIR5_64", installation.path().string()}});
        static const Logging* met;
        *control<void (*)()>("whileConnecting") = [] {
            met = &Logging::instance();
            Logging::instance().getLogger("early").log(9, "goes nowhere", 0, 0);
        };
        Logging& logging = Logging::instance();
        EXPECT_EQ(met, &logging);
        EXPECT_TRUE(logging.isConnected());
        EXPECT_EQ(logging.getLogger("late").id(), 0U);
        logging.getLogger("late").log(9, "goes nowhere", 0, 0);
    });
}

TEST(LoggingDeathTest, NothingGoesToADispatcherThatHasDisconnectedAndALineThatFailsEndsNothing)
{
    IN_A_NEW_PROCESS([] {
        const TemporaryFolder installation;
        installation.add(OVRA_EARLY_DISPATCHER, "bin", "common-logging-dispatcher");
        set({{"OVRADIR5_64", installation.path().string()}});
        static int lines = 0;
        *control<LoggingRegisterFunction>("givenRegister") = [](const char*, std::uint64_t* id,
                                                                std::uint32_t* threshold) {
            *id = 1;
            *threshold = 0;
        };
        *control<LoggingLogFunction>("givenLog") = [](std::uint64_t, std::uint32_t, const char*,
                                                      std::uint64_t, std::uint64_t) {
            if (++lines == 2)
                throw std::bad_alloc();
        };
        OvraGuiCoreInit();
        EXPECT_NO_THROW(OvraGuiCoreDeinit());
        EXPECT_EQ(ovra::gui::LibraryInitController::useCount(), 0U);
        EXPECT_EQ(lines, 2);

        Logging& logging = Logging::instance();
        Logger& logger = logging.getLogger("before");
        EXPECT_TRUE(logger.isEnabled(0));
        Logging::onDisconnect(&logging);
        logger.log(9, "goes nowhere", 0, 0);
        EXPECT_EQ(lines, 2);
    });
}

TEST(LoggingDeathTest, TheLibraryWritesItsTwoLinesWithThreadAndUseCount)
{
    IN_A_NEW_PROCESS([] {
        const TemporaryFolder folder;
        set({{"OVRADIR5_64", OVRA_STAGE_DIR},
             {"OVRA_LOG_FILE", folder.path("log.txt").string()},
             {"OVRA_LOG_LEVEL", "2"}});
        OvraGuiCoreInit();
        OvraGuiCoreInit();
        OvraGuiCoreDeinit();
        control<LogSim_setLevel_t>("LogSim_setLevel")("guard.library", 3);
        OvraGuiCoreDeinit();
        control<LogSim_setLevel_t>("LogSim_setLevel")("guard.library", 2);
        OvraGuiCoreInit();
        OvraGuiCoreDeinit();

        std::string expected;
        for (const char* step : {"INIT: OvraGuiCore (useCount: 1)", "INIT: OvraGuiCore (useCount: 2)",
                                 "DEINIT: OvraGuiCore (useCount: 2)", "INIT: OvraGuiCore (useCount: 1)",
                                 "DEINIT: OvraGuiCore (useCount: 1)"})
            expected +=
                "2 guard.library thread-id=" + std::to_string(currentThreadId()) + "|LIBRARY " + step + "\n";
        EXPECT_EQ(folder.read("log.txt"), expected);
    });
}

TEST(LoggingDeathTest, ManyThreadsThatComeFirstFindOneInstance)
{
    IN_A_NEW_PROCESS([] {
        set({{"OVRADIR5_64", OVRA_STAGE_DIR}, {"OVRA_LOG_LEVEL", "2"}});
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
