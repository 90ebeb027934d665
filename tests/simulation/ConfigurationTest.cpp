// SPDX-License-Identifier: MIT
#include "Fixture.h"

#include <algorithm>

namespace simulation::tests {

using testing::HasSubstr;

class Configuration : public SimulationTest
{
protected:
    Configuration()
    {
        useMachine(SMALL_MACHINE);
        m_grabber = open();
    }

    std::string stored(const char* name)
    {
        EXPECT_EQ(runtime.Fg_saveConfig(m_grabber, path(name).c_str()), FG_OK) << lastLine();
        return read(path(name));
    }

    int load(const std::string& content)
    {
        return runtime.Fg_loadConfig(m_grabber, write("in.mcf", content).c_str());
    }

    Fg_Struct* m_grabber;
};

TEST_F(Configuration, StoresTheAppletsNameAndAllWritableValuesAndRestoresThemToTheByte)
{
    const std::int32_t width = 17;
    const double gain = 0.1;
    runtime.Fg_setParameter(m_grabber, FG_WIDTH, &width, 0);
    runtime.Fg_setParameter(m_grabber, 10001, &gain, 4);
    runtime.Fg_setParameter(m_grabber, 10003, "it's = a; label", 0);
    const auto first = stored("a.mcf");
    EXPECT_EQ(first, "[Kamerasektion]\nHapName=Small.hap;\n"
                     "\n[Applet]\nMODE=2;\nLABEL='it's = a; label';\n"
                     "\n[DMA0]\nFG_WIDTH=17;\nFG_HEIGHT=30;\nFG_PIXELFORMAT=8;\nFG_TIMEOUT=10;\n"
                     "FG_GEN_ENABLE=0;\nFG_GEN_FRAMERATE=0;\nFG_GEN_PATTERN=0;\nGAIN=0.5;\n"
                     "\n[DMA1]\nFG_WIDTH=40;\nFG_HEIGHT=30;\nFG_PIXELFORMAT=8;\nFG_TIMEOUT=10;\n"
                     "FG_GEN_ENABLE=0;\nFG_GEN_FRAMERATE=100;\nFG_GEN_PATTERN=1;\nGAIN=0.5;\n"
                     "\n[DMA4]\nFG_WIDTH=8;\nFG_HEIGHT=8;\nFG_PIXELFORMAT=8;\nFG_TIMEOUT=10;\nGAIN=0.1;\n");
    free(m_grabber);
    m_grabber = open();
    ASSERT_NE(stored("b.mcf"), first);
    ASSERT_EQ(runtime.Fg_loadConfig(m_grabber, path("a.mcf").c_str()), FG_OK) << lastLine();
    EXPECT_EQ(stored("c.mcf"), first);
}

TEST_F(Configuration, OfADllNamesTheFile)
{
    free(m_grabber);
    const auto name = std::string("Wrapped") + OVRA_LIBRARY_ENDING;
    m_grabber = runtime.Fg_Init(write("dll/quad/" + name, SMALL_APPLET).c_str(), 0);
    EXPECT_THAT(stored("a.mcf"), testing::StartsWith("[fglib5]\nFileName='" + name + "';\n"));
    EXPECT_EQ(runtime.Fg_loadConfig(m_grabber, path("a.mcf").c_str()), FG_OK) << lastLine();
    runtime.Fg_FreeGrabber(m_grabber);
}

TEST_F(Configuration, ReplacesAFileWholeOrNotAtAll)
{
    const auto place = path("kept");
    std::filesystem::create_directories(place + "/inside"); // a folder cannot be replaced by a file
    EXPECT_EQ(runtime.Fg_saveConfig(m_grabber, place.c_str()), FG_FILE_ERROR);
    EXPECT_EQ(lastLine(), "configuration file " + place + ": the file cannot be written");
    EXPECT_EQ(runtime.Fg_saveConfig(m_grabber, path("no/folder/a.mcf").c_str()), FG_FILE_ERROR);
    write("a.mcf", "old");
    EXPECT_NE(stored("a.mcf"), "old");
    const std::filesystem::directory_iterator files(path("."));
    EXPECT_EQ(std::count_if(begin(files), end(files),
                            [](const auto& entry) { return entry.path().extension() == ".tmp"; }),
              0);
}

TEST_F(Configuration, IsReadWithEitherLineEndingAndComments)
{
    EXPECT_EQ(load("; a comment\r\n[Kamerasektion]\r\nHapName=Small.hap;\r\n\r\n"
                   "[DMA0]\r\nFG_WIDTH=3;\r\nFG_HEIGHT=5\r\nFG_WIDTH=4;"),
              FG_OK)
        << lastLine();
    // The last one counts, a line without the final ";" does not.
    EXPECT_THAT(stored("a.mcf"), HasSubstr("[DMA0]\nFG_WIDTH=4;\nFG_HEIGHT=30;\n"));
}

TEST_F(Configuration, ShippedExampleLoads)
{
    free(m_grabber);
    runtime.Fg_FreeLibraries();
    runtime.FgSim_setMachine(nullptr);
    m_grabber = runtime.Fg_InitConfig(OVRA_STAGE "/mcf/SingleAreaGray.mcf", 0);
    ASSERT_NE(m_grabber, nullptr) << lastLine();
    EXPECT_EQ(stored("a.mcf"), read(OVRA_STAGE "/mcf/SingleAreaGray.mcf"));
    runtime.Fg_FreeGrabber(m_grabber);
}

TEST_F(Configuration, ThatIsRefusedChangesNothingAndNamesFileLineAndReason)
{
    struct Row
    {
        std::string content;
        const char* expected;
    };
    const std::string small = "[Kamerasektion]\nHapName=Small;\n";
    const Row rows[] = {
        {"", "expected the name of an applet (HapName, FileName or Typ), found none"},
        {"[Kamerasektion]\nHapName=Other;\n", "made for applet 'Other.hap', the board carries 'Small.hap'"},
        {"[fglib5]\nFileName='Other';\n", "made for applet 'Other.dll', the board carries 'Small.hap'"},
        {"[fglib5]\nFileName='/far/Other';\n", "made for applet 'Other', the board carries 'Small.hap'"},
        {small + "[DMA0]\nFG_WIDTH=8;\nFG_DEPTH=3;\n",
         "line 5: the applet has no parameter FG_DEPTH in [DMA0]"},
        {small + "[DMA0]\nFG_WIDTH=8;\nFG_HEIGHT=65;\n", "line 5: FG_HEIGHT takes 1 to 64, 65 is outside"},
        {small + "[DMA0]\nFG_WIDTH=8x;\n", "line 4: '8x' is not a number of the parameter's type"},
        {small + "[DMA3]\nFG_WIDTH=8;\n", "line 4: the applet has no parameter FG_WIDTH in [DMA3]"},
        {small + "[Applet]\nCOUNTER=1;\n", "line 4: COUNTER cannot be written"},
        {small + "[Extra]\nA=1;\n", "line 4: unknown section [Extra]"},
    };
    const auto before = stored("before.mcf");
    for (const auto& row : rows) {
        EXPECT_EQ(load(row.content), FG_INVALID_CONFIGURATION);
        EXPECT_EQ(lastLine(), "configuration file " + path("in.mcf") + ": " + row.expected);
        EXPECT_EQ(stored("after.mcf"), before) << row.expected;
    }
}

} // namespace simulation::tests
