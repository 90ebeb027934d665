// SPDX-License-Identifier: MIT
#include "Fixture.h"

namespace simulation::tests {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class Applet : public SimulationTest
{
protected:
    Applet() { useMachine(SMALL_MACHINE); }

    int ask(Fg_Struct* grabber, int query, unsigned int process, int value = -1)
    {
        const int status = runtime.Fg_getParameter(grabber, query, &value, process);
        return status == FG_OK ? value : status;
    }
};

TEST_F(Applet, IsAskedForWhatItHasOnly)
{
    auto* grabber = open();
    ASSERT_NE(grabber, nullptr) << lastLine();
    EXPECT_EQ(ask(grabber, FG_DMA_PORT, 1, 0), 4);
    EXPECT_EQ(ask(grabber, FG_DMA_PORT, 0, -1), FG_INVALID_PARAMETER);
    EXPECT_EQ(ask(grabber, FG_DMA_PORT, 2, 0), FG_INVALID_DMA);
    EXPECT_EQ(ask(grabber, FG_CAM_PORT, 1, 1), -1);
    EXPECT_EQ(ask(grabber, FG_CAM_PORT, 1, 2), FG_INVALID_PARAMETER);
    EXPECT_EQ(ask(grabber, FG_NR_OF_DMAS_OF_PROCESS, 2), FG_INVALID_DMA);
}

TEST_F(Applet, GoesOntoAFreeBoardOfItsTypeOnly)
{
    auto* grabber = open();
    ASSERT_NE(grabber, nullptr) << lastLine();
    EXPECT_EQ(open(), nullptr);
    EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_ALREADY_INITIALISED);
    EXPECT_EQ(runtime.Fg_getSerialNumber(grabber), 0xab12U);
    const auto file = path("Hardware Applets/quad/Small.hap");
    EXPECT_EQ(runtime.Fg_Init(file.c_str(), 1), nullptr);
    EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_APPLET_BOARD_MISMATCH);
    EXPECT_EQ(runtime.Fg_Init(file.c_str(), 2), nullptr);
    EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_INVALID_BOARD_NUMBER);
    auto* stale = grabber;
    free(grabber);
    EXPECT_EQ(runtime.Fg_FreeGrabber(stale), FG_INVALID_HANDLE);
    EXPECT_NE(open(), nullptr);
}

TEST_F(Applet, FileKindsAreToldApart)
{
    FgAppletIterator* list = nullptr;
    ASSERT_EQ(runtime.Fg_getAppletIterator(-1, FG_APPLETS_NONE, &list, 0), 0);
    const std::string ending = OVRA_LIBRARY_ENDING;
    const auto typeless =
        with(SMALL_APPLET, R"("boardType")", R"("nrOfProcessesInFile": false, "boardType")");
    struct Row
    {
        std::string file;
        const char* type;
        int wrapped;
        int processes;
    };
    const Row rows[] = {
        {write("a.hap", SMALL_APPLET), "HAP", 0, 2},
        {write("b.hap", with(SMALL_APPLET, R"("tags")", R"("type": "hap", "tags")")), "hap", 0, 2},
        {write("c" + ending, typeless), "DLL", 1, -1},
        {write("d" + ending, "no library"), "DLL", 0, -1},
        {std::string(OVRA_STAGE) + "/dll/ovra-quad-cl/LegacyDual" + ending, "DLL", 0, -1}};
    for (const auto& row : rows) {
        int added = 0;
        auto* item = runtime.Fg_addAppletIteratorItem(list, row.file.c_str(), &added);
        ASSERT_NE(item, nullptr) << lastLine();
        EXPECT_EQ(added, 1);
        EXPECT_STREQ(runtime.Fg_getAppletStringProperty(item, FG_APPLET_TYPE), row.type) << row.file;
        EXPECT_EQ(runtime.Fg_getAppletIntProperty(item, FG_APPLET_WRAPPED), row.wrapped) << row.file;
        EXPECT_EQ(runtime.Fg_getAppletIntProperty(item, FG_APPLET_NR_OF_PROCESSES), row.processes)
            << row.file;
        EXPECT_EQ(runtime.Fg_findAppletIteratorItem(list, row.file.c_str()), item);
    }
    auto* first = runtime.Fg_getAppletIteratorItem(list, 0);
    EXPECT_STREQ(runtime.Fg_getAppletStringProperty(first, FG_APPLET_TAGS), "interface=cl-full;x");
    EXPECT_EQ(runtime.Fg_getAppletIteratorItem(list, 5), nullptr);
    EXPECT_EQ(runtime.Fg_freeAppletIterator(list), FG_OK);
}

TEST_F(Applet, ThatIsBrokenIsRefusedWithOneLineThatNamesThePlace)
{
    const Broken rows[] = {
        {"{", "", ": line 2, column 13: syntax error"},
        {"virtual-applet-1", "other", "/format: expected one of 'virtual-applet-1', found 'other'"},
        {R"("dmas": [4])", R"("dmas": [5])",
         "/processes/1/dmas/0: expected the index of a channel that /dmas describes"},
        {R"("index": 4)", R"("index": 1)", "/dmas/2/index: expected an index that no other DMA channel has"},
        {R"("maxWidth": 64)", R"("maxWidth": 39)",
         "/dmas/0/width: expected a whole number from 1 to 39, found 40"},
        {R"("ramp")", R"("stripes")", "/dmas/0/generator/pattern: expected one of 'ramp', 'checkerboard'"},
        {R"("width": 8,)", R"("width": 8, "formats": ["Mono9"],)",
         "/dmas/2/formats/0: expected one of 'Mono8', 'Mono10',"},
        {R"("default": 2)", R"("default": 2, "effect": "gain")",
         "/parameters/1/type: expected 'double' for the effect 'gain'"},
        {R"("default": 0.5)", R"("default": 0.5, "effect": "gain")",
         "/parameters/0/effect: expected a range within 0 to 1000 for 'gain'"},
        {R"("default": 0.5)", R"("default": 0.5, "effect": "zoom")",
         "/parameters/0/effect: expected one of 'gain', 'offset', 'gamma'"},
        {R"("default": 0.5)", R"("default": 5)",
         "/parameters/0/default: expected a number from -2 to 4, found 5"},
        {R"("min": 2,)", R"("min": 2.5,)",
         "/parameters/1/default: expected a whole number from 3 to 10, found 2"},
        {R"("id": 10002)", R"("id": 5010)", "/parameters/1/id: expected a whole number from 10000"},
        {R"("id": 10002)", R"("id": 10001)", "/parameters/1/id: expected an id that no other parameter has"},
        {R"("type": "double")", R"("type": "float")", "/parameters/0/type: expected one of 'int32'"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.expected);
        EXPECT_EQ(open(with(SMALL_APPLET, row.from, row.to)), nullptr);
        EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_INVALID_APPLET_FILE);
        EXPECT_THAT(lastLine(),
                    AllOf(StartsWith("applet file " + path("Hardware Applets/quad/Small.hap") + ": "),
                          HasSubstr(row.expected)));
    }
    EXPECT_NE(open(), nullptr) << lastLine(); // the board is free
}

} // namespace simulation::tests
