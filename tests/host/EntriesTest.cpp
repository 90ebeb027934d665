// Configuration entries, in memory and in a file.

#include "LogCollector.h"
#include "TemporaryFolder.h"

#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"

#include <gmock/gmock.h>

namespace {

using ovra::core::HarloApplication;
using ovra::reference::Application;
using ovra::reference::ApplicationOptions;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

constexpr long long absent = -1;

class EntriesTest : public testing::Test
{
protected:
    ApplicationOptions options() const
    {
        return {.runtimeDirectory = {},
                .runtimeLibrary = {},
                .configurationFile = folder.text() + "/entries.cfg"};
    }

    TemporaryFolder folder;
};

TEST_F(EntriesTest, OutliveTheApplicationInAFile)
{
    {
        const Application application(options());
        HarloApplication::setConfigEntry("a.b", 12);
        HarloApplication::setConfigEntry("c", -3);
        HarloApplication::setConfigEntry("a.b", 13);
    }
    EXPECT_EQ(folder.read("entries.cfg"), "a.b=13\nc=-3\n");
    const Application application(options());
    EXPECT_EQ(HarloApplication::getConfigIntEntry("a.b", absent), 13);
    EXPECT_EQ(HarloApplication::getConfigIntEntry("c", absent), -3);
    EXPECT_EQ(HarloApplication::getConfigIntEntry("d", absent), absent);
}

TEST_F(EntriesTest, LiveInMemoryWithoutAFile)
{
    const Application application;
    HarloApplication::setConfigEntry("a", 1);
    EXPECT_EQ(HarloApplication::getConfigIntEntry("a", absent), 1);
}

TEST_F(EntriesTest, LeaveNoTemporaryFileBehind)
{
    const Application application(options());
    HarloApplication::setConfigEntry("a", 1);
    const std::filesystem::directory_iterator files(folder.path());
    EXPECT_EQ(std::distance(files, {}), 1);
}

TEST_F(EntriesTest, KeepWhatPeopleWroteBetweenThem)
{
    folder.write("entries.cfg", "# limits\n\n a = 5 \nbroken\nb=1\n");
    const LogCollector log;
    const Application application(options());
    HarloApplication::setConfigEntry("b", 2);
    EXPECT_EQ(folder.read("entries.cfg"), "# limits\n\n a = 5 \nbroken\nb=2\n");
    EXPECT_EQ(HarloApplication::getConfigIntEntry("a", absent), 5);
    EXPECT_EQ(log.texts().size(), 1U);
}

struct LineCase
{
    const char* name;
    const char* line;
    long long value; // of the key "key"
    bool complained;
};

class EntryLineTest : public EntriesTest, public testing::WithParamInterface<LineCase>
{};

TEST_P(EntryLineTest, IsReadOrNamedByFileAndLine)
{
    folder.write("entries.cfg", std::string("other=1\n") + GetParam().line + "\n");
    const LogCollector log;
    const Application application(options());
    EXPECT_EQ(HarloApplication::getConfigIntEntry("key", absent), GetParam().value);
    EXPECT_EQ(HarloApplication::getConfigIntEntry("other", absent), 1);
    const std::string complaint =
        std::string("entries.cfg:2: expected key=integer, found \"") + GetParam().line + '"';
    if (GetParam().complained)
        EXPECT_THAT(log.texts(), ElementsAre(EndsWith(complaint)));
    else
        EXPECT_THAT(log.texts(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Lines, EntryLineTest,
    testing::Values(LineCase{"Plain", "key=17", 17, false}, LineCase{"Negative", "key=-17", -17, false},
                    LineCase{"Spaced", "key = 17\r", 17, false},
                    LineCase{"Wide", "key=9000000000000", 9000000000000LL, false},
                    LineCase{"Comment", "# key=17", absent, false}, LineCase{"Empty", "", absent, false},
                    LineCase{"NoValue", "key=", absent, true}, LineCase{"NoKey", "=17", absent, true},
                    LineCase{"NoSeparator", "key 17", absent, true},
                    LineCase{"Text", "key=many", absent, true}, LineCase{"Trailing", "key=17x", absent, true},
                    LineCase{"TooLarge", "key=99999999999999999999", absent, true}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(EntriesTest, SayThatThereIsAFolderInPlaceOfTheFile)
{
    folder.write("entries.cfg/something", "x");
    const LogCollector log;
    const Application application(options());
    EXPECT_EQ(HarloApplication::getConfigIntEntry("a", absent), absent);
    EXPECT_THAT(log.texts(), ElementsAre(testing::HasSubstr("entries.cfg: is a folder, not a file")));
}

TEST_F(EntriesTest, SayOnceThatTheFileCannotBeWritten)
{
    const LogCollector log;
    const Application application({.runtimeDirectory = {},
                                   .runtimeLibrary = {},
                                   .configurationFile = folder.text() + "/no/such/folder.cfg"});
    HarloApplication::setConfigEntry("a", 4);
    EXPECT_EQ(HarloApplication::getConfigIntEntry("a", absent), 4);
    EXPECT_THAT(log.texts(), ElementsAre(testing::HasSubstr("folder.cfg: cannot be written")));
}

} // namespace
