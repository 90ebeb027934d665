#include "Fixture.h"

namespace simulation::tests {

using testing::HasSubstr;

class Machine : public SimulationTest
{};

TEST_F(Machine, ShowsItsBoardsByIndex)
{
    ASSERT_EQ(useMachine(smallMachine), FG_OK);
    EXPECT_EQ(runtime.Fg_getBoardType(0), 7);
    EXPECT_EQ(runtime.Fg_getBoardType(1), 8);
    EXPECT_STREQ(runtime.Fg_getBoardNameByType(8), "dual");
    EXPECT_EQ(runtime.Fg_getBoardType(2), FG_INVALID_BOARD_NUMBER);
    EXPECT_EQ(runtime.Fg_getBoardType(-1), FG_INVALID_BOARD_NUMBER);
    EXPECT_EQ(runtime.Fg_getBoardNameByType(9), nullptr);
    char text[16] = "";
    std::size_t bytes = sizeof text;
    EXPECT_EQ(runtime.Fg_getSystemInformation(nullptr, FG_INFO_NR_OF_BOARDS, 0, text, &bytes), FG_OK);
    EXPECT_STREQ(text, "2");
    bytes = sizeof text;
    EXPECT_EQ(runtime.Fg_getSystemInformation(nullptr, FG_INFO_BOARD_SERIAL, 1, text, &bytes), FG_OK);
    EXPECT_STREQ(text, "f00d");
    EXPECT_EQ(bytes, 5U);
    struct Row
    {
        unsigned int board;
        const char* ports;
    };
    for (const auto& row : {Row{0, "4"}, Row{1, "2"}}) {
        bytes = sizeof text;
        EXPECT_EQ(runtime.Fg_getSystemInformation(nullptr, FG_INFO_NR_OF_PORTS, row.board, text, &bytes),
                  FG_OK);
        EXPECT_STREQ(text, row.ports);
        EXPECT_EQ(bytes, 2U);
    }
    EXPECT_EQ(runtime.Fg_getSystemInformation(nullptr, FG_INFO_NR_OF_PORTS, 2, text, &bytes),
              FG_INVALID_BOARD_NUMBER);
    bytes = 4;
    EXPECT_EQ(runtime.Fg_getSystemInformation(nullptr, FG_INFO_BOARD_SERIAL, 1, text, &bytes),
              FG_INVALID_ARGUMENT);
    EXPECT_EQ(bytes, 5U);
}

TEST_F(Machine, ShowsItsCamerasByPort)
{
    ASSERT_EQ(useMachine(smallMachine), FG_OK);
    EXPECT_EQ(runtime.FgCam_getCount(0), 2);
    EXPECT_EQ(runtime.FgCam_getCount(1), 0);
    EXPECT_EQ(runtime.FgCam_getPort(0, 1), 1);
    EXPECT_LT(runtime.FgCam_getPort(0, 2), 0);
    char text[16] = "";
    EXPECT_EQ(runtime.FgCam_getString(0, 1, FGCAM_MODEL, text, sizeof text), FG_OK);
    EXPECT_STREQ(text, "Fast");
    EXPECT_LT(runtime.FgCam_getString(0, 2, FGCAM_MODEL, text, sizeof text), 0);
    EXPECT_EQ(runtime.FgCam_setInteger(0, 0, FGCAM_WIDTH, 41), FG_VALUE_OUT_OF_RANGE);
    EXPECT_EQ(runtime.FgCam_setInteger(0, 0, FGCAM_SENSOR_WIDTH, 4), FG_NOT_WRITABLE);
    EXPECT_EQ(runtime.FgCam_setInteger(0, 0, FGCAM_WIDTH, 20), FG_OK);
    EXPECT_EQ(runtime.FgCam_start(0, 0), FG_OK);
    EXPECT_EQ(runtime.FgCam_setInteger(0, 0, FGCAM_WIDTH, 40), FG_NOT_WRITABLE);
    EXPECT_EQ(runtime.FgCam_stop(0, 0), FG_OK);
    int width = 0;
    EXPECT_EQ(runtime.FgCam_getInteger(0, 0, FGCAM_WIDTH, &width), FG_OK);
    EXPECT_EQ(width, 20);
}

TEST_F(Machine, IsReadAgainWhenItsFileChangedAndNoBoardIsInUse)
{
    ASSERT_EQ(useMachine(smallMachine), FG_OK);
    auto* grabber = open();
    ASSERT_NE(grabber, nullptr) << lastLine();
    write("machine.json", with(smallMachine, "\"boardType\": 8", "\"boardType\": 1009"));
    EXPECT_EQ(runtime.Fg_InitLibraries(nullptr), FG_OK);
    EXPECT_EQ(runtime.Fg_getBoardType(1), 8);
    free(grabber);
    EXPECT_EQ(runtime.Fg_InitLibraries(nullptr), FG_OK);
    EXPECT_EQ(runtime.Fg_getBoardType(1), 1009);
}

TEST_F(Machine, LeavesNothingLoadedWhenTheNewFileIsBroken)
{
    ASSERT_EQ(useMachine(smallMachine), FG_OK);
    EXPECT_EQ(useMachine(with(smallMachine, "\"port\": 1", "\"port\": 4")), FG_MACHINE_DESCRIPTION);
    EXPECT_EQ(runtime.Fg_getBoardType(0), FG_MACHINE_DESCRIPTION);
    EXPECT_EQ(runtime.FgCam_getCount(0), FG_MACHINE_DESCRIPTION);
    EXPECT_EQ(useMachine(smallMachine), FG_OK);
    EXPECT_EQ(runtime.Fg_getBoardType(0), 7);
}

TEST_F(Machine, IsTheInstalledOneWhereNothingElseIsNamed)
{
    runtime.FgSim_setMachine(nullptr);
    ASSERT_EQ(runtime.Fg_InitLibraries(nullptr), FG_OK) << lastLine();
    EXPECT_EQ(runtime.FgCam_getCount(0) + runtime.FgCam_getCount(1), 4);
    EXPECT_STRNE(runtime.Fg_getBoardNameByType(runtime.Fg_getBoardType(0)),
                 runtime.Fg_getBoardNameByType(runtime.Fg_getBoardType(1)));
}

struct Broken
{
    int line;
    const char* from;
    const char* to;
    const char* expected; ///< behind "machine description <file>: "
};

void PrintTo(const Broken& row, std::ostream* stream)
{
    *stream << "row of line " << row.line;
}

class BrokenMachine : public Machine, public testing::WithParamInterface<Broken>
{};

TEST_P(BrokenMachine, IsRefusedWithOneLineThatNamesThePlace)
{
    const auto& row = GetParam();
    EXPECT_EQ(useMachine(with(smallMachine, row.from, row.to)), FG_MACHINE_DESCRIPTION)
        << "row of line " << row.line;
    EXPECT_EQ(lastLine().find("machine description " + path("machine.json") + ": "), 0U) << lastLine();
    EXPECT_THAT(lastLine(), HasSubstr(row.expected)) << "row of line " << row.line;
    EXPECT_EQ(lastLine().find('\n'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, BrokenMachine,
    testing::Values(
        Broken{__LINE__, "\"Small\",", "\"Small\"", ": line 3, column 12: syntax error while parsing object"},
        Broken{__LINE__, "\"serial\": \"F00D\"", "\"serial\": 12",
               "/boards/1/serial: expected a hexadecimal text, found a number"},
        Broken{__LINE__, "F00D", "xyz",
               "/boards/1/serial: expected a hexadecimal text of up to eight digits, found 'xyz'"},
        Broken{__LINE__, "F00D", "AB12", "/boards/1/serial: expected a serial that no other board has"},
        Broken{__LINE__, "\"boardType\": 8", "\"boardType\": 65536",
               "/boards/1/boardType: expected a whole number from 0 to 65535, found 65536"},
        Broken{__LINE__, "\"boardType\": 8", "\"boardType\": 7",
               "/boards/1/boardType: expected a type that no other model has"},
        Broken{__LINE__, "\"model\": \"dual\", ", "",
               "/boards/1/model: expected a name of letters, digits, '-', '_' or '.', found nothing"},
        Broken{__LINE__, "\"dual\"", "\"../dual\"", "/boards/1/model: expected a name"},
        Broken{__LINE__, "\"boards\"", "\"borads\"", "/borads: expected one of 'name', 'boards'"},
        Broken{__LINE__, "\"port\": 1", "\"port\": 4",
               "/cameras/1/port: expected a whole number from 0 to 3, found 4"},
        Broken{__LINE__, "\"port\": 1", "\"port\": 0",
               "/cameras/1/port: expected a port without another camera"},
        Broken{__LINE__, "\"board\": 0, \"port\": 1", "\"board\": 2, \"port\": 1",
               "/cameras/1/board: expected a whole number from 0 to 1, found 2"},
        Broken{__LINE__, "\"landscape\"", "\"beach\"",
               "/cameras/0/scene: expected one of 'landscape', 'circuit-board'"},
        Broken{__LINE__, "\"frameRate\": 200", "\"frameRate\": -1",
               "/cameras/0/frameRate: expected a number from 0 to 100000, found -1"},
        Broken{__LINE__, "\"sensorWidth\": 40", "\"sensorWidth\": 0",
               "/cameras/0/sensorWidth: expected a whole number from 1"},
        Broken{__LINE__, "\"name\": \"Small\",",
               "\"name\": \"Small\", \"faults\": [{\"entry\": \"Fg_Nothing\", \"code\": -1}],",
               "/faults/0/entry: expected the name of an entry"}),
    rowName<Broken>);

TEST_F(Machine, NamesTheFileThatIsMissing)
{
    runtime.Fg_FreeLibraries();
    runtime.FgSim_setMachine(path("nowhere.json").c_str());
    EXPECT_EQ(runtime.Fg_InitLibraries(nullptr), FG_MACHINE_DESCRIPTION);
    EXPECT_EQ(lastLine(),
              "machine description " + path("nowhere.json") + ": expected a readable file, found none");
}

TEST_F(Machine, NamesTheFileThatTheSystemCannotLookAt)
{
    const auto file = path(std::string(300, 'x') + ".json"); // longer than names can be
    runtime.Fg_FreeLibraries();
    runtime.FgSim_setMachine(file.c_str());
    EXPECT_EQ(runtime.Fg_InitLibraries(nullptr), FG_MACHINE_DESCRIPTION);
    EXPECT_EQ(lastLine(), "machine description " + file + ": expected a readable file, found none");
}

} // namespace simulation::tests
