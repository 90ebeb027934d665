#include "Fixture.h"

#include <algorithm>

namespace simulation::tests {

using testing::HasSubstr;

class Configuration : public SimulationTest
{
protected:
    Configuration()
    {
        useMachine(smallMachine);
        grabber_ = open();
    }

    std::string stored(const char* name)
    {
        EXPECT_EQ(runtime.Fg_saveConfig(grabber_, path(name).c_str()), FG_OK) << lastLine();
        return read(path(name));
    }

    int load(const std::string& content)
    {
        return runtime.Fg_loadConfig(grabber_, write("in.mcf", content).c_str());
    }

    Fg_Struct* grabber_;
};

TEST_F(Configuration, StoresTheAppletsNameAndAllWritableValues)
{
    const double gain = 0.1;
    runtime.Fg_setParameter(grabber_, 10001, &gain, 4);
    EXPECT_EQ(stored("a.mcf"),
              "[Kamerasektion]\nHapName=Small.hap;\n"
              "\n[Applet]\nMODE=2;\nLABEL='a';\n"
              "\n[DMA0]\nFG_WIDTH=40;\nFG_HEIGHT=30;\nFG_PIXELFORMAT=8;\nFG_TIMEOUT=10;\n"
              "FG_GEN_ENABLE=0;\nFG_GEN_FRAMERATE=0;\nGAIN=0.5;\n"
              "\n[DMA1]\nFG_WIDTH=40;\nFG_HEIGHT=30;\nFG_PIXELFORMAT=8;\nFG_TIMEOUT=10;\n"
              "FG_GEN_ENABLE=0;\nFG_GEN_FRAMERATE=100;\nGAIN=0.5;\n"
              "\n[DMA4]\nFG_WIDTH=8;\nFG_HEIGHT=8;\nFG_PIXELFORMAT=8;\nFG_TIMEOUT=10;\nGAIN=0.1;\n");
}

TEST_F(Configuration, RestoresWhatWasStoredToTheByte)
{
    const std::int32_t width = 17;
    const double gain = 1.0 / 3;
    runtime.Fg_setParameter(grabber_, FG_WIDTH, &width, 0);
    runtime.Fg_setParameter(grabber_, 10001, &gain, 1);
    runtime.Fg_setParameter(grabber_, 10003, "it's = a; label", 0);
    const auto first = stored("a.mcf");
    free(grabber_);
    grabber_ = open();
    ASSERT_NE(stored("b.mcf"), first);
    ASSERT_EQ(runtime.Fg_loadConfig(grabber_, path("a.mcf").c_str()), FG_OK) << lastLine();
    EXPECT_EQ(stored("c.mcf"), first);
    double read = 0;
    runtime.Fg_getParameter(grabber_, 10001, &read, 1);
    EXPECT_EQ(read, gain);
}

TEST_F(Configuration, OfADllNamesTheFile)
{
    free(grabber_);
    const auto name = std::string("Wrapped") + OVRA_LIBRARY_ENDING;
    grabber_ = runtime.Fg_Init(write("dll/quad/" + name, smallApplet).c_str(), 0);
    EXPECT_THAT(stored("a.mcf"), testing::StartsWith("[fglib5]\nFileName='" + name + "';\n"));
    EXPECT_EQ(runtime.Fg_loadConfig(grabber_, path("a.mcf").c_str()), FG_OK) << lastLine();
    runtime.Fg_FreeGrabber(grabber_);
}

TEST_F(Configuration, ReplacesAFileWholeOrNotAtAll)
{
    const auto place = path("kept");
    std::filesystem::create_directories(place + "/inside"); // a folder cannot be replaced by a file
    EXPECT_EQ(runtime.Fg_saveConfig(grabber_, place.c_str()), FG_FILE_ERROR);
    EXPECT_EQ(lastLine(), "configuration file " + place + ": the file cannot be written");
    EXPECT_EQ(runtime.Fg_saveConfig(grabber_, path("no/folder/a.mcf").c_str()), FG_FILE_ERROR);
    write("a.mcf", "old");
    EXPECT_NE(stored("a.mcf"), "old");
    const std::filesystem::directory_iterator files(path("."));
    EXPECT_EQ(std::count_if(begin(files), end(files),
                            [](const auto& entry) { return entry.path().extension() == ".tmp"; }),
              0);
}

TEST_F(Configuration, IsReadWithEitherLineEndingAndComments)
{
    EXPECT_EQ(load("; a "
                   "comment\r\n[Kamerasektion]\r\nHapName=Small.hap;\r\n\r\n[DMA0]\r\nFG_WIDTH=3;\r\nFG_"
                   "HEIGHT=5\r\nFG_WIDTH=4;"),
              FG_OK)
        << lastLine();
    int size[2] = {};
    runtime.Fg_getParameter(grabber_, FG_WIDTH, &size[0], 0);
    runtime.Fg_getParameter(grabber_, FG_HEIGHT, &size[1], 0);
    EXPECT_EQ(size[0], 4);  // the last one counts
    EXPECT_EQ(size[1], 30); // a line without the final ";" does not
}

TEST_F(Configuration, ShippedExampleLoads)
{
    free(grabber_);
    runtime.Fg_FreeLibraries();
    runtime.FgSim_setMachine(nullptr);
    grabber_ = runtime.Fg_InitConfig(OVRA_STAGE "/mcf/SingleAreaGray.mcf", 0);
    ASSERT_NE(grabber_, nullptr) << lastLine();
    EXPECT_EQ(stored("a.mcf"), read(OVRA_STAGE "/mcf/SingleAreaGray.mcf"));
    runtime.Fg_FreeGrabber(grabber_);
}

struct Refused
{
    int line;
    const char* content;
    int code;
    const char* expected;
};

void PrintTo(const Refused& row, std::ostream* stream)
{
    *stream << "row of line " << row.line;
}

class RefusedConfiguration : public Configuration, public testing::WithParamInterface<Refused>
{};

TEST_P(RefusedConfiguration, ChangesNothingAndNamesFileLineAndReason)
{
    const auto& row = GetParam();
    const auto before = stored("before.mcf");
    EXPECT_EQ(load(row.content), row.code) << "row of line " << row.line;
    EXPECT_EQ(lastLine(), "configuration file " + path("in.mcf") + ": " + row.expected)
        << "row of line " << row.line;
    EXPECT_EQ(stored("after.mcf"), before);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RefusedConfiguration,
    testing::Values(Refused{__LINE__, "", FG_INVALID_CONFIGURATION,
                            "expected the name of an applet (HapName, FileName or Typ), found none"},
                    Refused{__LINE__, "[Kamerasektion]\nHapName=Other;\n", FG_INVALID_CONFIGURATION,
                            "made for applet 'Other.hap', the board carries 'Small.hap'"},
                    Refused{__LINE__, "[fglib5]\nFileName='Other';\n", FG_INVALID_CONFIGURATION,
                            "made for applet 'Other.dll', the board carries 'Small.hap'"},
                    Refused{__LINE__, "[fglib5]\nFileName='/far/Other';\n", FG_INVALID_CONFIGURATION,
                            "made for applet 'Other', the board carries 'Small.hap'"},
                    Refused{__LINE__, "[Kamerasektion]\nHapName=Small;\n[DMA0]\nFG_WIDTH=8;\nFG_DEPTH=3;\n",
                            FG_INVALID_CONFIGURATION,
                            "line 5: the applet has no parameter FG_DEPTH in [DMA0]"},
                    Refused{__LINE__, "[Kamerasektion]\nHapName=Small;\n[DMA0]\nFG_WIDTH=8;\nFG_HEIGHT=65;\n",
                            FG_INVALID_CONFIGURATION, "line 5: FG_HEIGHT takes 1 to 64, 65 is outside"},
                    Refused{__LINE__, "[Kamerasektion]\nHapName=Small;\n[DMA0]\nFG_WIDTH=8x;\n",
                            FG_INVALID_CONFIGURATION, "line 4: '8x' is not a number of the parameter's type"},
                    Refused{__LINE__, "[Kamerasektion]\nHapName=Small;\n[DMA3]\nFG_WIDTH=8;\n",
                            FG_INVALID_CONFIGURATION,
                            "line 4: the applet has no parameter FG_WIDTH in [DMA3]"},
                    Refused{__LINE__, "[Kamerasektion]\nHapName=Small;\n[Applet]\nCOUNTER=1;\n",
                            FG_INVALID_CONFIGURATION, "line 4: COUNTER cannot be written"},
                    Refused{__LINE__, "[Kamerasektion]\nHapName=Small;\n[Extra]\nA=1;\n",
                            FG_INVALID_CONFIGURATION, "line 4: unknown section [Extra]"}),
    rowName<Refused>);

} // namespace simulation::tests
