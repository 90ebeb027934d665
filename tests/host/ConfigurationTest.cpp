// SPDX-License-Identifier: MIT
// Configuration entries, in memory and in a file.

#include "LogCollector.h"

#include "tests/TemporaryFolder.h"

#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"

#include <gmock/gmock.h>

namespace {

using ovra::core::HarloApplication;
using ovra::reference::Application;
using ovra::reference::ApplicationOptions;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

constexpr long long ABSENT = -1;

class ConfigurationTest : public testing::Test
{
protected:
    ApplicationOptions options(const std::string& file = "/configuration.cfg") const
    {
        return {.runtimeDirectory = {}, .runtimeLibrary = {}, .configurationFile = folder.text() + file};
    }

    TemporaryFolder folder;
    const LogCollector log;
};

TEST_F(ConfigurationTest, OutliveTheApplicationInAFileAmongWhatPeopleWrote)
{
    folder.write("configuration.cfg", "# limits\n\n a = 5 \nbroken\nb=1\n");
    folder.write("configuration.cfg.new", "the user's");
    {
        const Application application(options());
        HarloApplication::setConfigEntry("c.d", 12);
        HarloApplication::setConfigEntry("b", -3);
        HarloApplication::setConfigEntry("c.d", 13);
    }
    std::string text = folder.read("configuration.cfg");
    std::erase(text, '\r'); // line ends are the platform's
    EXPECT_EQ(text, "# limits\n\n a = 5 \nbroken\nb=-3\nc.d=13\n");
    const std::filesystem::directory_iterator files(folder.path());
    EXPECT_EQ(std::distance(files, {}), 2); // no temporary one
    EXPECT_EQ(folder.read("configuration.cfg.new"), "the user's");
    const Application application(options());
    EXPECT_EQ(HarloApplication::getConfigIntEntry("a", ABSENT), 5);
    EXPECT_EQ(HarloApplication::getConfigIntEntry("b", ABSENT), -3);
    EXPECT_EQ(HarloApplication::getConfigIntEntry("c.d", ABSENT), 13);
    EXPECT_EQ(log.texts().size(), 2U); // once for each application
}

TEST_F(ConfigurationTest, AreReadOrNamedByFileAndLine)
{
    struct Row
    {
        const char* line;
        long long value; // of the key "key"
        bool complained = false;
    };
    const Row rows[] = {
        {"key=17", 17},
        {"key=-17", -17},
        {"key = 17\r", 17},
        {"key=9000000000000", 9000000000000LL},
        {"# key=17", ABSENT},
        {"", ABSENT},
        {"key=", ABSENT, true},
        {"=17", ABSENT, true},
        {"key 17", ABSENT, true},
        {"key=many", ABSENT, true},
        {"key=17x", ABSENT, true},
        {"key=99999999999999999999", ABSENT, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        const LogCollector messages;
        folder.write("configuration.cfg", std::string("other=1\n") + row.line + "\n");
        const Application application(options());
        EXPECT_EQ(HarloApplication::getConfigIntEntry("key", ABSENT), row.value);
        EXPECT_EQ(HarloApplication::getConfigIntEntry("other", ABSENT), 1);
        ASSERT_EQ(messages.texts().size(), row.complained ? 1U : 0U);
        for (const auto& complaint : messages.texts())
            EXPECT_THAT(complaint,
                        EndsWith(std::string("configuration.cfg:2: expected key=integer, found \"") +
                                 row.line + '"'));
    }
}

TEST_F(ConfigurationTest, SayOnceThatTheFileCannotBeReadOrWrittenAndLeaveNothingBesideIt)
{
    folder.write("configuration.cfg/something", "x");
    {
        const Application application(options());
        EXPECT_EQ(HarloApplication::getConfigIntEntry("a", ABSENT), ABSENT);
        HarloApplication::setConfigEntry("a", 4);
    }
    EXPECT_FALSE(std::filesystem::exists(folder.path("configuration.cfg.new")));
    const Application application(options("/no/such/folder.cfg"));
    HarloApplication::setConfigEntry("a", 4);
    EXPECT_EQ(HarloApplication::getConfigIntEntry("a", ABSENT), 4);
    EXPECT_THAT(log.texts(),
                ElementsAre(HasSubstr("configuration.cfg: is a folder, not a file"),
                            HasSubstr("configuration.cfg: cannot be written ("),
                            HasSubstr("folder.cfg: cannot be written (No such file or directory)")));
}

} // namespace
