#include "Fixture.h"

#include <chrono>
#include <set>

namespace simulation::tests {

class FaultPlan : public SimulationTest
{
protected:
    FaultPlan() { useMachine(smallMachine); }

    std::string journal() const
    {
        std::size_t bytes = 0;
        runtime.FgSim_getJournal(nullptr, &bytes);
        std::string text(bytes, '\0');
        runtime.FgSim_getJournal(text.data(), &bytes);
        text.pop_back();
        return text;
    }
};

TEST_F(FaultPlan, FailsTheNthCallOfAnEntryOnce)
{
    EXPECT_EQ(runtime.FgSim_addFault("Fg_getBoardType", 2, FG_INIT_ERROR), FG_OK);
    EXPECT_EQ(runtime.Fg_getBoardType(0), 7);
    EXPECT_EQ(runtime.FgCam_getCount(0), 2);
    EXPECT_EQ(runtime.Fg_getBoardType(0), FG_INIT_ERROR);
    EXPECT_EQ(lastLine(), "Planned failure of Fg_getBoardType");
    EXPECT_EQ(runtime.Fg_getBoardType(0), 7);
}

TEST_F(FaultPlan, FailsTheNthCallOfAnyEntryOrEachCall)
{
    runtime.FgSim_addFault("*", 3, FG_TIMEOUT);
    EXPECT_EQ(runtime.Fg_getBoardType(0), 7);
    EXPECT_EQ(runtime.FgCam_getCount(0), 2);
    EXPECT_EQ(runtime.Fg_getBoardNameByType(7), nullptr);
    EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_TIMEOUT);
    runtime.FgSim_addFault("FgCam_getCount", 0, FG_NO_MEMORY);
    EXPECT_EQ(runtime.FgCam_getCount(0), FG_NO_MEMORY);
    EXPECT_EQ(runtime.FgCam_getCount(0), FG_NO_MEMORY);
    runtime.FgSim_clearFaults();
    EXPECT_EQ(runtime.FgCam_getCount(0), 2);
    EXPECT_EQ(runtime.FgSim_addFault("Fg_nothing", 1, FG_TIMEOUT), FG_INVALID_ARGUMENT);
    EXPECT_EQ(runtime.FgSim_addFault("Fg_Init", 1, 3), FG_INVALID_ARGUMENT);
}

TEST_F(FaultPlan, StillReleasesWhatAReleasingEntryHolds)
{
    auto* grabber = open();
    ASSERT_NE(grabber, nullptr) << lastLine();
    auto* ring = runtime.Fg_AllocMemEx(grabber, 4800, 4);
    runtime.FgSim_addFault("Fg_FreeMemEx", 1, FG_TIMEOUT);
    EXPECT_EQ(runtime.Fg_FreeMemEx(grabber, ring), FG_TIMEOUT);
    EXPECT_EQ(runtime.FgSim_live(FGSIM_RINGS), 0);
    runtime.FgSim_addFault("Fg_FreeGrabber", 1, FG_TIMEOUT);
    EXPECT_EQ(runtime.Fg_FreeGrabber(grabber), FG_TIMEOUT);
    EXPECT_EQ(runtime.FgSim_live(FGSIM_BOARD_HANDLES), 0);
}

TEST_F(FaultPlan, OfAMachineComesAndGoesWithIt)
{
    const auto plan = R"("name": "Small", "faults": [{"entry": "Fg_getBoardType", "nth": 1, "code": -1}],)";
    ASSERT_EQ(useMachine(with(smallMachine, "\"name\": \"Small\",", plan)), FG_OK) << lastLine();
    EXPECT_EQ(runtime.Fg_getBoardType(0), -1);
    EXPECT_EQ(runtime.Fg_getBoardType(0), 7);
}

TEST_F(FaultPlan, DelaysAnEntry)
{
    runtime.FgSim_setDelay("Fg_getBoardType", 20000);
    const auto start = std::chrono::steady_clock::now();
    runtime.Fg_getBoardType(0);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
    runtime.FgSim_setDelay("Fg_getBoardType", 0);
}

TEST_F(FaultPlan, CountsCallsByEntry)
{
    runtime.FgSim_resetCounts();
    runtime.Fg_getBoardType(0);
    runtime.Fg_getBoardType(0);
    runtime.FgCam_getCount(0);
    EXPECT_EQ(runtime.FgSim_callCount("Fg_getBoardType"), 2);
    EXPECT_EQ(runtime.FgSim_callCount("Fg_Init"), 0);
    EXPECT_EQ(runtime.FgSim_totalCalls(), 3);
    EXPECT_EQ(runtime.FgSim_callCount("Fg_nothing"), FG_INVALID_ARGUMENT);
}

TEST_F(FaultPlan, ShowsInTheJournalAmongTheRuntimesInnerCalls)
{
    auto* grabber = open();
    ASSERT_NE(grabber, nullptr) << lastLine();
    const auto file = path("Hardware Applets/quad/stored.mcf");
    ASSERT_EQ(runtime.Fg_saveConfig(grabber, file.c_str()), FG_OK) << lastLine();
    // The applet is found by its path: the installation has no folder for this board's model.
    const auto moved = write("Elsewhere.hap", smallApplet);
    const auto config = write("moved.mcf", "[Kamerasektion]\nHapName=" + moved + ";\n");
    free(grabber);
    runtime.FgSim_setJournal(1);
    runtime.FgSim_addFault("Fg_loadConfig", 1, FG_TIMEOUT);
    EXPECT_EQ(runtime.Fg_InitConfig(config.c_str(), 0), nullptr);
    EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_TIMEOUT);
    grabber = runtime.Fg_InitConfig(config.c_str(), 0);
    EXPECT_NE(grabber, nullptr) << lastLine();
    runtime.FgSim_setJournal(0);
    EXPECT_EQ(journal(), "Fg_InitConfig\n  Fg_Init\n  Fg_loadConfig -> -17\n  Fg_FreeGrabber\n"
                         "Fg_getLastErrorNumber\nFg_InitConfig\n  Fg_Init\n  Fg_loadConfig\n");
    runtime.Fg_FreeGrabber(grabber);
}

TEST_F(FaultPlan, EveryEntryThatIsNotSimulatedSaysSo)
{
    const auto check = [&](const char* name) {
        EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_NOT_SIMULATED) << name;
        EXPECT_EQ(lastLine(), std::string(name) + " has no behaviour in a virtual installation");
    };
    EXPECT_EQ(runtime.Fg_setFlash(nullptr, 1, 0), FG_NOT_SIMULATED);
    check("Fg_setFlash");
    EXPECT_EQ(runtime.Fg_NumaAllocDmaBuffer(nullptr, 1), nullptr);
    check("Fg_NumaAllocDmaBuffer");
    runtime.Fg_AbortInitLibraries();
    check("Fg_AbortInitLibraries");
}

TEST_F(FaultPlan, EveryStatusCodeHasItsOwnDescription)
{
    std::set<std::string> seen;
    for (int code = FG_APPLET_BOARD_MISMATCH; code <= FG_OK; ++code) {
        const auto* text = runtime.Fg_getErrorDescription(nullptr, code);
        ASSERT_NE(text, nullptr) << code;
        EXPECT_TRUE(seen.insert(text).second) << text;
        EXPECT_STREQ(runtime.getErrorDescription(code), text);
    }
    EXPECT_NE(runtime.Fg_getErrorDescription(nullptr, FG_NOT_SIMULATED), nullptr);
    EXPECT_NE(runtime.Fg_getErrorDescription(nullptr, FG_RUNTIME_UNAVAILABLE), nullptr);
    EXPECT_EQ(runtime.Fg_getErrorDescription(nullptr, -4711), nullptr);
    EXPECT_EQ(runtime.Fg_getErrorDescription(nullptr, 1), nullptr);
}

TEST_F(FaultPlan, ARuntimeCanLackEntriesThatItsOthersUse)
{
    EXPECT_EQ(symbolOf(OVRA_RUNTIME_WITHOUT_INIT, "Fg_Init"), nullptr);
    EXPECT_EQ(symbolOf(OVRA_RUNTIME_WITHOUT_INIT, "Fg_InitEx"), nullptr);
    const auto function = [](const char* name) { return symbolOf(OVRA_RUNTIME_WITHOUT_INIT, name); };
    const auto setMachine = reinterpret_cast<FgSim_setMachine_t*>(function("FgSim_setMachine"));
    const auto initHandle =
        reinterpret_cast<int (*)(Fg_Struct**, const char*, unsigned int)>(function("Fg_InitHandle"));
    const auto freeGrabber = reinterpret_cast<int (*)(Fg_Struct*)>(function("Fg_FreeGrabber"));
    ASSERT_TRUE(setMachine && initHandle && freeGrabber);
    setMachine(write("other.json", smallMachine).c_str());
    Fg_Struct* grabber = nullptr;
    EXPECT_EQ(initHandle(&grabber, write("Small.hap", smallApplet).c_str(), 0), FG_OK);
    EXPECT_EQ(freeGrabber(grabber), FG_OK);
}

} // namespace simulation::tests
