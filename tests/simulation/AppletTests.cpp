#include "Fixture.h"

namespace simulation::tests {

using testing::HasSubstr;

class Applet : public SimulationTest
{
protected:
    Applet() { useMachine(smallMachine); }

    int ask(Fg_Struct* grabber, int query, unsigned int process, int value = -1)
    {
        const int status = runtime.Fg_getParameter(grabber, query, &value, process);
        return status == FG_OK ? value : status;
    }
};

TEST_F(Applet, TellsItsLayout)
{
    auto* grabber = open();
    ASSERT_NE(grabber, nullptr) << lastLine();
    struct Row
    {
        int query;
        unsigned int process;
        int value;
        int expected;
    };
    for (const auto& row :
         {Row{FG_NR_OF_PROCESSES, 0, -1, 2}, Row{FG_NR_OF_DMAS_OF_PROCESS, 0, -1, 2},
          Row{FG_NR_OF_DMAS_OF_PROCESS, 1, -1, 1}, Row{FG_NR_OF_CAMS_OF_PROCESS, 1, -1, 2},
          Row{FG_DMA_PORT, 0, 1, 1}, Row{FG_DMA_PORT, 1, 0, 4}, Row{FG_CAM_PORT, 1, 0, 3},
          Row{FG_CAM_PORT, 1, 1, -1}, Row{FG_CAM_PORT, 1, 2, FG_INVALID_PARAMETER},
          Row{FG_DMA_PORT, 0, -1, FG_INVALID_PARAMETER}, Row{FG_DMA_PORT, 2, 0, FG_INVALID_DMA},
          Row{FG_NR_OF_DMAS_OF_PROCESS, 2, -1, FG_INVALID_DMA}})
        EXPECT_EQ(ask(grabber, row.query, row.process, row.value), row.expected)
            << "query " << row.query << " process " << row.process << " value " << row.value;
}

TEST_F(Applet, FailsTheQueriesThatItsFileSays)
{
    auto content = with(smallApplet, "\"boardType\": 7,", "\"boardType\": 7, \"processCountFails\": true,");
    content =
        with(content, "\"ports\": [0, 1]", "\"ports\": [0, 1], \"dmaPortFails\": 1, \"camPortFails\": 0");
    content = with(content, "\"ports\": [3, -1]",
                   "\"ports\": [3, -1], \"dmaCountFails\": true, \"portCountFails\": true");
    auto* grabber = open(content);
    ASSERT_NE(grabber, nullptr) << lastLine();
    EXPECT_EQ(ask(grabber, FG_NR_OF_PROCESSES, 0), FG_INVALID_PARAMETER);
    EXPECT_EQ(ask(grabber, FG_DMA_PORT, 0, 0), 0);
    EXPECT_EQ(ask(grabber, FG_DMA_PORT, 0, 1), FG_INVALID_PARAMETER);
    EXPECT_EQ(ask(grabber, FG_CAM_PORT, 0, 0), FG_INVALID_PARAMETER);
    EXPECT_EQ(ask(grabber, FG_NR_OF_DMAS_OF_PROCESS, 1), FG_INVALID_PARAMETER);
    EXPECT_EQ(ask(grabber, FG_NR_OF_CAMS_OF_PROCESS, 1), FG_INVALID_PARAMETER);
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
        with(smallApplet, "\"boardType\": 7,", "\"boardType\": 7, \"nrOfProcessesInFile\": false,");
    struct Row
    {
        std::string file;
        const char* type;
        int wrapped;
        int processes;
    };
    const std::vector<Row> rows = {
        {write("a.hap", smallApplet), "HAP", 0, 2},
        {write("b.hap", with(smallApplet, "\"tags\"", "\"type\": \"hap\", \"tags\"")), "hap", 0, 2},
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

TEST_F(Applet, OfLegacyKindIsAskedForItsChannels)
{
    const auto file = std::string(OVRA_STAGE) + "/dll/ovra-quad-cl/LegacyDual" + OVRA_LIBRARY_ENDING;
    auto* grabber = runtime.Fg_Init(file.c_str(), 0);
    ASSERT_NE(grabber, nullptr) << lastLine();
    EXPECT_EQ(ask(grabber, FG_NR_OF_PROCESSES, 0), 2);
    EXPECT_EQ(ask(grabber, FG_DMA_PORT, 1, 0), 1);
    EXPECT_EQ(ask(grabber, FG_CAM_PORT, 1, 0), 1);
    EXPECT_NE(runtime.Fg_getParameterInfo(grabber, 1), nullptr);
    EXPECT_EQ(runtime.Fg_getParameterInfo(grabber, 2), nullptr);
    EXPECT_EQ(runtime.Fg_FreeGrabber(grabber), FG_OK);
}

TEST_F(Applet, ShippedOnesLoadOnTheirBoards)
{
    runtime.Fg_FreeLibraries();
    runtime.FgSim_setMachine(nullptr);
    ASSERT_EQ(runtime.Fg_InitLibraries(nullptr), FG_OK) << lastLine();
    for (const int board : {0, 1}) {
        FgAppletIterator* list = nullptr;
        const int count = runtime.Fg_getAppletIterator(board, FG_APPLETS_INSTALLED, &list, 0);
        EXPECT_GE(count, 3);
        for (int i = 0; i < count; ++i) {
            const auto* file =
                runtime.Fg_getAppletStringProperty(runtime.Fg_getAppletIteratorItem(list, i), FG_APPLET_PATH);
            auto* grabber = runtime.Fg_Init(file, static_cast<unsigned int>(board));
            EXPECT_NE(grabber, nullptr) << lastLine();
            EXPECT_NE(runtime.Fg_getParameterInfo(grabber, 0), nullptr) << file;
            runtime.Fg_FreeGrabber(grabber);
        }
        EXPECT_EQ(runtime.Fg_freeAppletIterator(list), FG_OK);
    }
}

struct BrokenApplet
{
    int line;
    const char* from;
    const char* to;
    const char* expected;
};

void PrintTo(const BrokenApplet& row, std::ostream* stream)
{
    *stream << "row of line " << row.line;
}

class BrokenAppletFile : public Applet, public testing::WithParamInterface<BrokenApplet>
{};

TEST_P(BrokenAppletFile, IsRefusedWithOneLineThatNamesThePlace)
{
    const auto& row = GetParam();
    EXPECT_EQ(open(with(smallApplet, row.from, row.to)), nullptr) << "row of line " << row.line;
    EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_INVALID_APPLET_FILE);
    EXPECT_EQ(lastLine().find("applet file " + path("Hardware Applets/quad/Small.hap") + ": "), 0U)
        << lastLine();
    EXPECT_THAT(lastLine(), HasSubstr(row.expected)) << "row of line " << row.line;
    EXPECT_NE(open(), nullptr) << lastLine(); // the board is free
}

INSTANTIATE_TEST_SUITE_P(
    Rows, BrokenAppletFile,
    testing::Values(BrokenApplet{__LINE__, "{", "", ": line 2, column 13: syntax error"},
                    BrokenApplet{__LINE__, "virtual-applet-1", "other",
                                 "/format: expected one of 'virtual-applet-1', found 'other'"},
                    BrokenApplet{__LINE__, "\"dmas\": [4]", "\"dmas\": [5]",
                                 "/processes/1/dmas/0: expected the index of a channel that /dmas describes"},
                    BrokenApplet{__LINE__, "\"index\": 4", "\"index\": 1",
                                 "/dmas/2/index: expected an index that no other DMA channel has"},
                    BrokenApplet{__LINE__, "\"maxWidth\": 64", "\"maxWidth\": 39",
                                 "/dmas/0/width: expected a whole number from 1 to 39, found 40"},
                    BrokenApplet{__LINE__, "\"ramp\"", "\"stripes\"",
                                 "/dmas/0/generator/pattern: expected one of 'ramp', 'checkerboard'"},
                    BrokenApplet{__LINE__, "\"default\": 0.5", "\"default\": 5",
                                 "/parameters/0/default: expected a number from -2 to 4, found 5"},
                    BrokenApplet{__LINE__, "\"id\": 10002", "\"id\": 5010",
                                 "/parameters/1/id: expected a whole number from 10000"},
                    BrokenApplet{__LINE__, "\"id\": 10002", "\"id\": 10001",
                                 "/parameters/1/id: expected an id that no other parameter has"},
                    BrokenApplet{__LINE__, "\"type\": \"double\"", "\"type\": \"float\"",
                                 "/parameters/0/type: expected one of 'int32'"}),
    rowName<BrokenApplet>);

} // namespace simulation::tests
