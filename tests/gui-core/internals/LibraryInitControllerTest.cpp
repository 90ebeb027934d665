#include "LibraryInitController.h"
#include "DestroySingleton.h"

#include "gui-core/EntryPoints.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LibraryUse.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using ovra::gui::LibraryInitController;
using ovra::reference::Journal;
using ovra::templates::patterns::GuardedSingleton;

namespace {

std::vector<std::string> events;

void startUp()
{
    events.emplace_back("start");
}

void failingStartUp()
{
    throw std::runtime_error("no such thing");
}

void shutDownA()
{
    events.emplace_back("shut down A");
}

void shutDownB()
{
    events.emplace_back("shut down B");
}

/// Writes its life down.
template <char NAME>
class Recorder : public GuardedSingleton<Recorder<NAME>>
{
public:
    Recorder() { note("created"); }
    ~Recorder() override { note("destroyed"); }
    void beforeDestruction() override { note("before destruction"); }
    void afterCreation() override { note("after creation"); }

private:
    static void note(const std::string& what) { events.push_back(std::string(1, NAME) + " " + what); }
};

using First = Recorder<'1'>;
using Second = Recorder<'2'>;

class Controller : public testing::Test
{
protected:
    Controller() { events.clear(); }
};

std::vector<std::string> hostCalls()
{
    return Journal::lines();
}

const std::vector<std::string> starts = {"OvraCoreInit",    "OvraEnvironmentInit",  "OvraParametersInit",
                                         "OvraDisplayInit", "OvraDisplayFglibInit", "OvraFglibModelInit"};
const std::vector<std::string> shutDowns = {"OvraCoreDeinit",         "OvraEnvironmentDeinit",
                                            "OvraParametersDeinit",   "OvraDisplayDeinit",
                                            "OvraDisplayFglibDeinit", "OvraFglibModelDeinit"};

std::vector<std::string> repeated(const std::vector<std::string>& once, int times)
{
    std::vector<std::string> all;
    for (int i = 0; i < times; ++i)
        all.insert(all.end(), once.begin(), once.end());
    return all;
}

} // namespace

TEST_F(Controller, TheLastReleaseShutsLibrariesDownAndThenDestroysSingletonsInOrderOfRegistration)
{
    LibraryInitController::acquire();
    First::instance();
    LibraryInitController::registerLibrary(&startUp, &shutDownA);
    Second::instance();
    LibraryInitController::acquire();
    LibraryInitController::registerLibrary(&startUp, &shutDownB);

    LibraryInitController::release();
    events.emplace_back("one release");
    LibraryInitController::release();

    const std::vector<std::string> expected = {
        "1 created",   "1 after creation",     "start",       "2 created",   "2 after creation",
        "start",       "one release",          "shut down A", "shut down B", "1 before destruction",
        "1 destroyed", "2 before destruction", "2 destroyed",
    };
    EXPECT_EQ(events, expected);
}

TEST_F(Controller, ASingletonIsMadeAnewAfterItWasDestroyed)
{
    LibraryInitController::acquire();
    First::instance();
    LibraryInitController::release();
    events.clear();
    LibraryInitController::acquire();
    First::instance();
    First::instance();
    EXPECT_EQ(events, (std::vector<std::string>{"1 created", "1 after creation"}));
    LibraryInitController::release();
}

TEST_F(Controller, ASingletonMadeWithoutAControllerIsLeftAlone)
{
    Second& second = Second::instance();
    LibraryInitController::acquire();
    LibraryInitController::release();
    EXPECT_EQ(&Second::instance(), &second);
    EXPECT_EQ(events, (std::vector<std::string>{"2 created", "2 after creation"}));
    ovra::tests::destroySingleton<Second>();
}

TEST_F(Controller, OneReleaseTooManyWrapsTheCountAndNothingElse)
{
    LibraryInitController::release();
    EXPECT_EQ(LibraryInitController::useCount(), 0xFFFFFFFFU);
    LibraryInitController::acquire();
    EXPECT_EQ(LibraryInitController::useCount(), 0U);
    LibraryInitController::acquire();
    EXPECT_EQ(LibraryInitController::useCount(), 1U);
    LibraryInitController::release();
}

TEST_F(Controller, AStartUpThatThrowsLeavesTheLockFreeAndItsShutDownRegistered)
{
    LibraryInitController::acquire();
    EXPECT_THROW(LibraryInitController::registerLibrary(&failingStartUp, &shutDownA), std::runtime_error);
    // Hangs, and fails by the time limit, when the lock is still taken.
    std::thread([] { LibraryInitController::useCount(); }).join();
    LibraryInitController::release();
    EXPECT_EQ(events, (std::vector<std::string>{"shut down A"}));
}

TEST_F(Controller, AHostLibraryMayComeBackWhileItIsStarted)
{
    LibraryInitController::acquire();
    LibraryInitController::registerLibrary(
        [] {
            LibraryInitController::registerLibrary(&startUp, &shutDownB);
            events.push_back("uses " + std::to_string(LibraryInitController::useCount()));
        },
        &shutDownA);
    LibraryInitController::release();
    EXPECT_EQ(events, (std::vector<std::string>{"start", "uses 1", "shut down A", "shut down B"}));
}

TEST_F(Controller, EveryInitStartsTheHostAndOnlyTheLastDeinitStopsItAsOften)
{
    Journal::start();
    OvraGuiCoreInit();
    OvraGuiCoreInit();
    EXPECT_EQ(hostCalls(), repeated(starts, 2));
    Journal::clear();
    OvraGuiCoreDeinit();
    EXPECT_EQ(hostCalls(), std::vector<std::string>{});
    OvraGuiCoreDeinit();
    EXPECT_EQ(hostCalls(), repeated(shutDowns, 2));
    Journal::stop();
}

TEST_F(Controller, AHostStartThatThrowsPassesThroughAndTheNextInitSucceeds)
{
    Journal::start();
    Journal::throwAt(1, "OvraParametersInit");
    EXPECT_THROW(OvraGuiCoreInit(), ovra::reference::ReferenceFault);
    EXPECT_NO_THROW(OvraGuiCoreInit());
    Journal::stop();
    OvraGuiCoreDeinit();
    OvraGuiCoreDeinit();
    EXPECT_EQ(LibraryInitController::useCount(), 0U);
}

TEST_F(Controller, AHostLibraryThatFailsToStopKeepsNothingElseFromStopping)
{
    OvraGuiCoreInit();
    First::instance();
    Journal::start();
    Journal::throwAt(1, "OvraCoreDeinit");
    EXPECT_THROW(OvraGuiCoreDeinit(), ovra::reference::ReferenceFault);
    EXPECT_EQ(hostCalls(), shutDowns);
    Journal::stop();
    EXPECT_EQ(events.back(), "1 destroyed");
    EXPECT_EQ(LibraryInitController::useCount(), 0U);
    EXPECT_EQ(ovra::reference::libraryUses("ovra-core"), 0);
}

TEST_F(Controller, AHostLibraryThatStartsTheLibraryAgainWhileItIsStoppedFindsItStarted)
{
    LibraryInitController::acquire();
    LibraryInitController::registerLibrary(&startUp, [] {
        LibraryInitController::acquire();
        LibraryInitController::registerLibrary(&startUp, &shutDownB);
    });
    LibraryInitController::release();
    EXPECT_EQ(LibraryInitController::useCount(), 1U);
    EXPECT_EQ(events, (std::vector<std::string>{"start", "start"}));
    LibraryInitController::release();
    EXPECT_EQ(events.back(), "shut down B");
    EXPECT_EQ(LibraryInitController::useCount(), 0U);
}

TEST_F(Controller, ConcurrentRoundsEndBalanced)
{
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            for (int round = 0; round < 50; ++round) {
                OvraGuiCoreInit();
                OvraGuiCoreDeinit();
            }
        });
    threads.clear();
    EXPECT_EQ(LibraryInitController::useCount(), 0U);
    EXPECT_EQ(ovra::reference::libraryUses("ovra-core"), 0);
}
