// SPDX-License-Identifier: MIT
#include "Fixture.h"

#include <set>

namespace simulation::tests {

class FaultPlan : public SimulationTest
{
protected:
    FaultPlan() { useMachine(SMALL_MACHINE); }
};

TEST_F(FaultPlan, FailsTheNthCallOfAnEntryOrOfAnyOnceOrEachCall)
{
    EXPECT_EQ(runtime.FgSim_addFault("Fg_getBoardType", 2, FG_INIT_ERROR), FG_OK);
    EXPECT_EQ(runtime.Fg_getBoardType(0), 7);
    EXPECT_EQ(runtime.FgCam_getCount(0), 2);
    EXPECT_EQ(runtime.Fg_getBoardType(0), FG_INIT_ERROR);
    EXPECT_EQ(lastLine(), "Planned failure of Fg_getBoardType");
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
    const auto* const plan =
        R"("name": "Small", "faults": [{"entry": "Fg_getBoardType", "nth": 1, "code": -1}],)";
    ASSERT_EQ(useMachine(with(SMALL_MACHINE, "\"name\": \"Small\",", plan)), FG_OK) << lastLine();
    EXPECT_EQ(runtime.Fg_getBoardType(0), -1);
    EXPECT_EQ(runtime.Fg_getBoardType(0), 7);
}

TEST_F(FaultPlan, ShowsInTheJournalAmongTheRuntimesInnerCalls)
{
    auto* grabber = open();
    ASSERT_NE(grabber, nullptr) << lastLine();
    // The applet is found by its path: the installation has no folder for this board's model.
    const auto moved = write("Elsewhere.hap", SMALL_APPLET);
    const auto config = write("moved.mcf", "[Kamerasektion]\nHapName=" + moved + ";\n");
    free(grabber);
    runtime.FgSim_setJournal(1);
    runtime.FgSim_addFault("Fg_loadConfig", 1, FG_TIMEOUT);
    EXPECT_EQ(runtime.Fg_InitConfig(config.c_str(), 0), nullptr);
    EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_TIMEOUT);
    grabber = runtime.Fg_InitConfig(config.c_str(), 0);
    EXPECT_NE(grabber, nullptr) << lastLine();
    runtime.FgSim_setJournal(0);
    char journal[256] = "";
    std::size_t bytes = sizeof journal;
    EXPECT_EQ(runtime.FgSim_getJournal(journal, &bytes), FG_OK);
    EXPECT_STREQ(journal, "Fg_InitConfig\n  Fg_Init\n  Fg_loadConfig -> -17\n  Fg_FreeGrabber\n"
                          "Fg_getLastErrorNumber\nFg_InitConfig\n  Fg_Init\n  Fg_loadConfig\n");
    runtime.Fg_FreeGrabber(grabber);
}

TEST_F(FaultPlan, AnEntryThatIsNotSimulatedSaysSo)
{
    EXPECT_EQ(runtime.Fg_setFlash(nullptr, 1, 0), FG_NOT_SIMULATED);
    EXPECT_EQ(lastLine(), "Fg_setFlash has no behaviour in a virtual installation");
    EXPECT_EQ(runtime.Fg_NumaAllocDmaBuffer(nullptr, 1), nullptr);
    EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_NOT_SIMULATED);
}

TEST_F(FaultPlan, EveryStatusCodeHasItsOwnDescription)
{
    std::set<std::string> seen;
    for (int code = FG_DEVICE_LOST; code <= FG_OK; ++code) {
        const auto* text = runtime.Fg_getErrorDescription(nullptr, code);
        ASSERT_NE(text, nullptr) << code;
        EXPECT_TRUE(seen.insert(text).second) << text;
        EXPECT_STREQ(runtime.getErrorDescription(code), text);
    }
    EXPECT_EQ(runtime.Fg_getErrorDescription(nullptr, -4711), nullptr);
    EXPECT_EQ(runtime.Fg_getErrorDescription(nullptr, 1), nullptr);
}

TEST_F(FaultPlan, ARuntimeCanLackEntriesThatItsOthersUse)
{
    const auto function = [](const char* name) { return symbolOf(OVRA_RUNTIME_WITHOUT_INIT, name); };
    EXPECT_EQ(function("Fg_Init"), nullptr);
    EXPECT_EQ(function("Fg_InitEx"), nullptr);
    using InitHandle = int(Fg_Struct**, const char*, unsigned int);
    using FreeGrabber = int(Fg_Struct*);
    reinterpret_cast<FgSim_setMachine_t*>(function("FgSim_setMachine"))(
        write("other.json", SMALL_MACHINE).c_str());
    Fg_Struct* grabber = nullptr;
    const auto applet = write("Small.hap", SMALL_APPLET);
    EXPECT_EQ(reinterpret_cast<InitHandle*>(function("Fg_InitHandle"))(&grabber, applet.c_str(), 0), FG_OK);
    EXPECT_EQ(reinterpret_cast<FreeGrabber*>(function("Fg_FreeGrabber"))(grabber), FG_OK);
}

} // namespace simulation::tests
