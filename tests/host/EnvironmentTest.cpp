// SPDX-License-Identifier: MIT
// Tests of applet files and their monitor that need no runtime.

#include "LogCollector.h"

#include "tests/TemporaryFolder.h"

#include "ovra-core/reference/Application.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra-lib-environment/reference/EnvironmentObserver.h"

#include <gmock/gmock.h>

namespace {

using namespace std::chrono_literals;
using ovra::core::Environment;
using ovra::reference::Application;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class EnvironmentTest : public testing::Test
{
protected:
    auto files() { return environment->model()->root()->getFilesEntryNode(); }

    /// Paths below the installation.
    std::vector<std::string> paths()
    {
        std::vector<std::string> all;
        for (const auto each = files()->getAllFiles(); each->hasNext(); each->advance())
            all.push_back(each->current()->getFilePath().substr(folder.text().size() + 1));
        return all;
    }
    testing::AssertionResult becomes(const std::vector<std::string>& expected)
    {
        if (application.pumpUntil([&] { return paths() == expected; }, 5min))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "there is " << testing::PrintToString(paths());
    }

    TemporaryFolder folder;
    LogCollector log;
    Application application{
        {.runtimeDirectory = folder.text(), .runtimeLibrary = {}, .configurationFile = {}}};
    boost::shared_ptr<Environment> environment = Environment::create();
};

TEST_F(EnvironmentTest, SaysThatTheRuntimeIsMissingAndKeepsItsModel)
{
    EXPECT_THAT([&] { environment->discoverResourcesOnce(); },
                testing::ThrowsMessage<std::runtime_error>(HasSubstr(folder.path().filename().string())));
    EXPECT_TRUE(environment->model()->root()->getSourcesEntry("ovra"));
    EXPECT_THAT(paths(), IsEmpty());
}

TEST_F(EnvironmentTest, FollowsFilesThatComeAndGoWhileItMonitors)
{
    folder.write("elsewhere/single.hap", "x");
    environment->forceSingleFileAddition(folder.text() + "/elsewhere/single.hap");
    folder.write("Hardware Applets/model/one.hap", "x");
    folder.write("Hardware Applets/model/readme.txt", "x");
    environment->startMonitor();
    environment->startMonitor();
    EXPECT_TRUE(becomes({"Hardware Applets/model/one.hap", "elsewhere/single.hap"}));
    folder.write("dll/deep/er/two.dll", "x");
    EXPECT_TRUE(becomes({"Hardware Applets/model/one.hap", "dll/deep/er/two.dll", "elsewhere/single.hap"}));
    std::filesystem::remove(folder.path("Hardware Applets/model/one.hap"));
    std::filesystem::remove(folder.path("elsewhere/single.hap"));
    EXPECT_TRUE(becomes({"dll/deep/er/two.dll"}));
    environment->stopMonitor();
    EXPECT_THAT(log.texts(2), testing::Contains(HasSubstr("Applet file removed: ")));
    folder.write("dll/late.dll", "x");
    EXPECT_FALSE(application.pumpUntil([&] { return paths().size() > 1; }, 400ms));
}

TEST_F(EnvironmentTest, TellsOfFilesWhenTheModelHasThem)
{
    using ovra::reference::EnvironmentChange;
    ovra::core::models::Guarded<std::vector<std::string>> told; // by the monitor's thread
    const boost::signals2::scoped_connection connection =
        ovra::reference::EnvironmentObserver::connect(environment, [&](const EnvironmentChange& change) {
            EXPECT_EQ(change.subject, EnvironmentChange::Subject::AppletFile);
            EXPECT_EQ(files()->existsAllFilesEntry(change.name),
                      change.kind != EnvironmentChange::Kind::Went);
            auto lines = told.get();
            lines.push_back("+-~"[static_cast<int>(change.kind)] + change.name.substr(folder.text().size()));
            told.set(lines);
            throw std::runtime_error("the next change is told nevertheless");
        });
    const auto tells = [&](const std::vector<std::string>& expected) {
        return application.pumpUntil([&] { return told.get() == expected; }, 20s);
    };
    folder.write("single.hap", "x");
    environment->forceSingleFileAddition(folder.text() + "/single.hap");
    folder.write("dll/one.dll", "x");
    environment->enableAutoScan(true);
    environment->startMonitor();
    EXPECT_TRUE(tells({"+/single.hap", "+/dll/one.dll"}));
    folder.write("dll/one.dll", "longer");
    EXPECT_TRUE(tells({"+/single.hap", "+/dll/one.dll", "~/dll/one.dll"}));
    std::filesystem::remove(folder.path("dll/one.dll"));
    std::filesystem::remove(folder.path("single.hap"));
    EXPECT_TRUE(tells({"+/single.hap", "+/dll/one.dll", "~/dll/one.dll", "-/dll/one.dll", "-/single.hap"}));
    environment->stopMonitor();
}

TEST_F(EnvironmentTest, StopsItsMonitorWithoutWaitingForTheNextLook)
{
    const auto started = std::chrono::steady_clock::now();
    for (int round = 0; round < 80; ++round) {
        environment->startMonitor();
        environment->stopMonitor();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - started, 10s); // waiting for each would take twice as long
}

TEST_F(EnvironmentTest, ReadsAFileThatIsAddedOnlyWithAutoScan)
{
    const auto reasonOf = [this](const std::string& name) {
        return files()->getAllFilesEntry(folder.text() + "/dll/" + name)->getBrokenReason();
    };
    folder.write("dll/early.dll", "x");
    environment->startMonitor();
    ASSERT_TRUE(becomes({"dll/early.dll"}));
    EXPECT_EQ(reasonOf("early.dll"), "");
    environment->enableAutoScan(true);
    folder.write("dll/later.dll", "x");
    ASSERT_TRUE(becomes({"dll/early.dll", "dll/later.dll"}));
    environment->stopMonitor();
    EXPECT_THAT(reasonOf("later.dll"), Not(""));
}

TEST_F(EnvironmentTest, MarksABrokenFileWithOneWarningAndKeepsItsNode)
{
    const std::string path = folder.text() + "/elsewhere/broken.hap";
    environment->forceSingleFileAddition(path);
    EXPECT_FALSE(files()->getAllFilesEntry(path)); // it is not there yet
    folder.write("elsewhere/broken.hap", "x");
    environment->forceSingleFileAddition(path);
    const auto node = files()->getAllFilesEntry(path);
    ASSERT_TRUE(node);
    EXPECT_EQ(node->getFileName(), "broken.hap");
    EXPECT_EQ(node->getType(), "");
    EXPECT_EQ(node->getNrOfProcesses(), -1);
    EXPECT_THAT(node->getBrokenReason(), HasSubstr("fglib5"));
    EXPECT_THAT(log.texts(), ElementsAre(testing::StartsWith(path + ": ")));
    environment->forceSingleFileAddition(path);
    EXPECT_EQ(files()->getAllFilesEntry(path), node);
}

} // namespace
