// SPDX-License-Identifier: MIT
#include "Fixture.h"

namespace simulation::tests {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Machine : public SimulationTest
{};

TEST_F(Machine, ShowsItsBoardsByIndex)
{
    ASSERT_EQ(useMachine(SMALL_MACHINE), FG_OK);
    EXPECT_EQ(runtime.Fg_getBoardType(0), 7);
    EXPECT_EQ(runtime.Fg_getBoardType(1), 8);
    EXPECT_STREQ(runtime.Fg_getBoardNameByType(8), "dual");
    EXPECT_EQ(runtime.Fg_getBoardType(2), FG_INVALID_BOARD_NUMBER);
    EXPECT_EQ(runtime.Fg_getBoardType(-1), FG_INVALID_BOARD_NUMBER);
    EXPECT_EQ(runtime.Fg_getBoardNameByType(9), nullptr);
    struct Row
    {
        int query;
        unsigned int board;
        std::size_t room;
        int status;
        std::size_t needed;
        const char* text = "";
    };
    const Row rows[] = {
        {FG_INFO_NR_OF_BOARDS, 0, 16, FG_OK, 2, "2"},
        {FG_INFO_NR_OF_PORTS, 0, 16, FG_OK, 2, "4"},
        {FG_INFO_NR_OF_PORTS, 1, 16, FG_OK, 2, "2"},
        {FG_INFO_NR_OF_PORTS, 2, 16, FG_INVALID_BOARD_NUMBER, 16},
        {FG_INFO_BOARD_SERIAL, 1, 16, FG_OK, 5, "f00d"},
        {FG_INFO_BOARD_SERIAL, 1, 4, FG_INVALID_ARGUMENT, 5},
    };
    for (const auto& row : rows) {
        char text[16] = "";
        std::size_t bytes = row.room;
        EXPECT_EQ(runtime.Fg_getSystemInformation(nullptr, row.query, row.board, text, &bytes), row.status);
        EXPECT_STREQ(text, row.text);
        EXPECT_EQ(bytes, row.needed);
    }
}

TEST_F(Machine, ShowsItsCamerasByPort)
{
    ASSERT_EQ(useMachine(SMALL_MACHINE), FG_OK);
    EXPECT_EQ(runtime.FgCam_getCount(1), 0);
    EXPECT_EQ(runtime.FgCam_getPort(0, 1), 1);
    EXPECT_LT(runtime.FgCam_getPort(0, 2), 0);
    char text[16] = "";
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
    ASSERT_EQ(useMachine(SMALL_MACHINE), FG_OK);
    auto* grabber = open();
    ASSERT_NE(grabber, nullptr) << lastLine();
    write("machine.json", with(SMALL_MACHINE, "\"boardType\": 8", "\"boardType\": 1009"));
    EXPECT_EQ(runtime.Fg_InitLibraries(nullptr), FG_OK);
    EXPECT_EQ(runtime.Fg_getBoardType(1), 8);
    free(grabber);
    EXPECT_EQ(runtime.Fg_InitLibraries(nullptr), FG_OK);
    EXPECT_EQ(runtime.Fg_getBoardType(1), 1009);
}

TEST_F(Machine, ThatIsBrokenIsRefusedWithOneLineThatNamesThePlaceAndLeavesNothingLoaded)
{
    const Broken rows[] = {
        {R"("Small",)", R"("Small")", ": line 3, column 12: syntax error while parsing object"},
        {R"("serial": "F00D")", R"("serial": 12)",
         "/boards/1/serial: expected a hexadecimal text, found a number"},
        {"F00D", "xyz", "/boards/1/serial: expected a hexadecimal text of up to eight digits, found 'xyz'"},
        {"F00D", "AB12", "/boards/1/serial: expected a serial that no other board has"},
        {R"("boardType": 8)", R"("boardType": 65536)",
         "/boards/1/boardType: expected a whole number from 0 to 65535, found 65536"},
        {R"("boardType": 8)", R"("boardType": 7)",
         "/boards/1/boardType: expected a type that no other model has"},
        {R"("model": "dual", )", "",
         "/boards/1/model: expected a name of letters, digits, '-', '_' or '.', found nothing"},
        {R"("dual")", R"("../dual")", "/boards/1/model: expected a name"},
        {R"("dual")", R"("a\nb")", "found 'a?b'"},
        {R"("boards")", R"("borads")", "/borads: expected one of 'name', 'boards'"},
        {R"("port": 1)", R"("port": 4)", "/cameras/1/port: expected a whole number from 0 to 3, found 4"},
        {R"("port": 1)", R"("port": 0)", "/cameras/1/port: expected a port without another camera"},
        {R"("board": 0, "port": 1)", R"("board": 2, "port": 1)",
         "/cameras/1/board: expected a whole number from 0 to 1, found 2"},
        {R"("landscape")", R"("beach")", "/cameras/0/scene: expected one of 'landscape', 'circuit-board'"},
        {R"("frameRate": 200)", R"("frameRate": -1)",
         "/cameras/0/frameRate: expected a number from 0 to 100000, found -1"},
        {R"("frameRate": 200)", R"("frameRate": 200, "lineRate": 9)",
         "/cameras/0/frameRate: expected no frame rate for a camera with a line rate"},
        {R"("frameRate": 200, "scene": "landscape")", R"("lineRate": 200)",
         "/cameras/0/sensorHeight: expected a whole number from 1 to 1, found 30"},
        {R"("scene": "landscape")", R"("replay": {"folder": "nowhere"})",
         "/cameras/0/replay/folder: expected PNG files in "},
        {R"("sensorWidth": 40)", R"("sensorWidth": 0)",
         "/cameras/0/sensorWidth: expected a whole number from 1"},
        {R"("name": "Small",)", R"("name": "Small", "faults": [{"entry": "Fg_Nothing", "code": -1}],)",
         "/faults/0/entry: expected the name of an entry"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.expected);
        ASSERT_EQ(useMachine(SMALL_MACHINE), FG_OK);
        EXPECT_EQ(useMachine(with(SMALL_MACHINE, row.from, row.to)), FG_MACHINE_DESCRIPTION);
        EXPECT_THAT(lastLine(), StartsWith("machine description " + path("machine.json") + ": "));
        EXPECT_THAT(lastLine(), AllOf(HasSubstr(row.expected), Not(HasSubstr("\n"))));
        EXPECT_EQ(runtime.Fg_getBoardType(0), FG_MACHINE_DESCRIPTION);
        EXPECT_EQ(runtime.FgCam_getCount(0), FG_MACHINE_DESCRIPTION);
    }
}

TEST_F(Machine, NamesTheFileThatIsMissingOrThatTheSystemCannotLookAt)
{
    for (const auto& file :
         {path("nowhere.json"), path(std::string(300, 'x') + ".json")}) { // too long a name
        runtime.Fg_FreeLibraries();
        runtime.FgSim_setMachine(file.c_str());
        EXPECT_EQ(runtime.Fg_InitLibraries(nullptr), FG_MACHINE_DESCRIPTION);
        EXPECT_EQ(lastLine(), "machine description " + file + ": expected a readable file, found none");
    }
}

} // namespace simulation::tests
