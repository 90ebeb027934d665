// SPDX-License-Identifier: MIT
#include "LibraryInitController.h"
#include "NewProcess.h"

#include "gui-core/EntryPoints.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LibraryUse.h"

#include <gmock/gmock.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using ovra::gui::LibraryInitController;
using ovra::reference::Journal;
using ovra::templates::patterns::GuardedSingleton;

namespace {

using Lines = std::vector<std::string>;

Lines events;

void startUp()
{
    events.emplace_back("start");
}

template <char NAME>
void shutDown()
{
    events.push_back(std::string("shut down ") + NAME);
}

/// Records its construction, hooks and destruction.
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

/// The host's libraries in their order, started or stopped (\p step is "Init" or "Deinit") so many times.
Lines hostLibraries(const std::string& step, int times = 1)
{
    Lines all;
    for (int i = 0; i < times; ++i)
        for (const char* name :
             {"Core", "Environment", "Parameters", "Display", "DisplayFglib", "FglibModel"})
            all.push_back(std::string("Ovra") + name + step);
    return all;
}

} // namespace

TEST_F(Controller, TheLastReleaseShutsLibrariesDownThenDestroysSingletonsInOrderAndTheyAreMadeAnewAfterIt)
{
    LibraryInitController::acquire();
    First::instance();
    LibraryInitController::registerLibrary(&startUp, &shutDown<'A'>);
    Second::instance();
    LibraryInitController::acquire();
    LibraryInitController::registerLibrary(&startUp, &shutDown<'B'>);

    LibraryInitController::release();
    events.emplace_back("one release");
    LibraryInitController::release();

    const Lines expected = {
        "1 created",   "1 after creation",     "start",       "2 created",   "2 after creation",
        "start",       "one release",          "shut down A", "shut down B", "1 before destruction",
        "1 destroyed", "2 before destruction", "2 destroyed",
    };
    EXPECT_EQ(events, expected);

    events.clear();
    LibraryInitController::acquire();
    First::instance();
    First::instance();
    EXPECT_EQ(events, (Lines{"1 created", "1 after creation"})) << "made anew, once";
    LibraryInitController::release();
}

TEST_F(Controller, ASingletonMadeWithoutAControllerIsLeftAlone)
{
    IN_A_NEW_PROCESS([] { // where no other test needs it
        Second& second = Second::instance();
        LibraryInitController::acquire();
        LibraryInitController::release();
        EXPECT_EQ(&Second::instance(), &second);
        EXPECT_EQ(events, (Lines{"2 created", "2 after creation"}));
    });
}

TEST_F(Controller, OneReleaseTooManyWrapsTheCountAndNothingElse)
{
    OvraGuiCoreDeinit();
    for (const std::uint32_t count : {0xFFFFFFFFU, 0U, 1U}) {
        EXPECT_EQ(LibraryInitController::useCount(), count);
        LibraryInitController::acquire();
    }
    LibraryInitController::release();
    LibraryInitController::release();
}

TEST_F(Controller, AHostLibraryMayComeBackWhileItIsStartedOrStopped)
{
    LibraryInitController::acquire();
    LibraryInitController::registerLibrary(
        [] {
            LibraryInitController::registerLibrary(&startUp, &shutDown<'B'>);
            events.push_back("uses " + std::to_string(LibraryInitController::useCount()));
        },
        &shutDown<'A'>);
    LibraryInitController::registerLibrary(&startUp, [] {
        LibraryInitController::acquire();
        LibraryInitController::registerLibrary(&startUp, &shutDown<'A'>);
    });
    LibraryInitController::release();
    EXPECT_EQ(events, (Lines{"start", "uses 1", "start", "shut down A", "shut down B", "start"}));
    EXPECT_EQ(LibraryInitController::useCount(), 1U) << "it finds the library started";
    events.clear();
    LibraryInitController::release();
    EXPECT_EQ(events, Lines{"shut down A"});
    EXPECT_EQ(LibraryInitController::useCount(), 0U);
}

TEST_F(Controller, EveryInitStartsTheHostAndOnlyTheLastDeinitStopsItAsOften)
{
    Journal::start();
    OvraGuiCoreInit();
    OvraGuiCoreInit();
    EXPECT_EQ(Journal::lines(), hostLibraries("Init", 2));
    Journal::clear();
    OvraGuiCoreDeinit();
    EXPECT_EQ(Journal::lines(), Lines{});
    OvraGuiCoreDeinit();
    EXPECT_EQ(Journal::lines(), hostLibraries("Deinit", 2));
    Journal::stop();
}

TEST_F(Controller, AHostStartThatThrowsPassesThroughAndTheNextInitSucceeds)
{
    Journal::start();
    Journal::throwAt(1, "OvraParametersInit");
    EXPECT_THROW(OvraGuiCoreInit(), ovra::reference::ReferenceFault);
    // If the lock is still taken, this hangs and fails by the time limit.
    std::thread([] { EXPECT_NO_THROW(OvraGuiCoreInit()); }).join();
    Journal::clear();
    OvraGuiCoreDeinit();
    OvraGuiCoreDeinit();
    Lines expected = hostLibraries("Deinit", 2);
    expected.erase(expected.begin() + 3, expected.begin() + 6); // the first start ends at its failure
    EXPECT_EQ(Journal::lines(), expected);
    Journal::stop();
    EXPECT_EQ(LibraryInitController::useCount(), 0U);
}

TEST_F(Controller, AHostLibraryThatFailsToStopKeepsNothingElseFromStopping)
{
    OvraGuiCoreInit();
    First::instance();
    Journal::start();
    Journal::throwAt(1, "OvraCoreDeinit");
    EXPECT_THROW(OvraGuiCoreDeinit(), ovra::reference::ReferenceFault);
    EXPECT_EQ(Journal::lines(), hostLibraries("Deinit"));
    Journal::stop();
    EXPECT_EQ(events.back(), "1 destroyed");
    EXPECT_EQ(LibraryInitController::useCount(), 0U);
    EXPECT_EQ(ovra::reference::libraryUses("ovra-core"), 0);
}

TEST_F(Controller, OfSeveralFailuresToStopTheFirstComesOut)
{
    LibraryInitController::acquire();
    LibraryInitController::registerLibrary(&startUp, [] { throw std::runtime_error("first"); });
    LibraryInitController::registerLibrary(&startUp, [] { throw std::runtime_error("second"); });
    EXPECT_THAT(&LibraryInitController::release, testing::ThrowsMessage<std::runtime_error>("first"));
}

TEST_F(Controller, AHostLibraryThatStartsAndStopsTheLibraryWhileItIsStoppedIsShutDownWithTheRest)
{
    LibraryInitController::acquire();
    First::instance();
    LibraryInitController::registerLibrary(&startUp, [] {
        LibraryInitController::acquire();
        LibraryInitController::registerLibrary(&startUp, &shutDown<'B'>);
        LibraryInitController::release();
    });
    LibraryInitController::registerLibrary(&startUp, &shutDown<'A'>);
    events.clear();
    LibraryInitController::release();
    EXPECT_EQ(events, (Lines{"start", "shut down A", "shut down B", "1 before destruction", "1 destroyed"}));
    EXPECT_EQ(LibraryInitController::useCount(), 0U);
}

TEST_F(Controller, NothingOfItIsReachedWhileAnotherThreadIsInIt)
{
    // While a host library starts or stops, another thread's use of the controller must wait.
    static std::atomic<int> done;
    static std::jthread other;
    struct Meeting
    {
        int line;
        void (*act)();
    };
    static const Meeting* meeting;
    const auto meet = [] {
        static std::atomic<bool> begun;
        begun = false;
        other = std::jthread([] {
            begun = true;
            meeting->act();
            ++done;
        });
        while (!begun)
            std::this_thread::yield();
        // Gives the other thread time to get through.
        for (int i = 0; i < 1000 && done == 0; ++i)
            std::this_thread::yield();
        EXPECT_EQ(done, 0) << "line " << meeting->line;
    };
    const Meeting meetings[] = {
        {__LINE__, [] { LibraryInitController::acquire(); }},
        {__LINE__, [] { LibraryInitController::registerLibrary(&startUp, &shutDown<'X'>); }},
        {__LINE__, [] { LibraryInitController::registerSingleton(*new First); }},
        {__LINE__, [] { LibraryInitController::useCount(); }},
        {__LINE__, [] { LibraryInitController::release(); }},
    };
    for (const Meeting& each : meetings) {
        meeting = &each;
        done = 0;
        LibraryInitController::acquire();
        LibraryInitController::acquire();
        LibraryInitController::registerLibrary(meet, [] {});
        other.join();
        while (LibraryInitController::useCount() > 1)
            LibraryInitController::release();
        done = 0;
        LibraryInitController::acquire();
        meeting = &meetings[3];
        LibraryInitController::release();
        LibraryInitController::registerLibrary([] {}, meet);
        LibraryInitController::release();
        other.join();
        EXPECT_EQ(LibraryInitController::useCount(), 0U);
    }
}

namespace {

std::atomic<int> made{0};

/// Its constructor gives another thread time to create a second one.
struct Slow : GuardedSingleton<Slow>
{
    Slow()
    {
        ++made;
        for (int i = 0; i < 1000 && made < 2; ++i)
            std::this_thread::yield();
    }
};

} // namespace

TEST_F(Controller, ThreadsThatComeTogetherMakeOneSingleton)
{
    LibraryInitController::acquire();
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 2; ++i)
            threads.emplace_back([] { Slow::instance(); });
    }
    EXPECT_EQ(made, 1);
    LibraryInitController::release();
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
