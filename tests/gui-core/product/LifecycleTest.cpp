#include "Product.h"

#include "gui-core/AcquisitionBufferCountChangeCommand.h"
#include "gui-core/CleanupApplicationCommand.h"
#include "gui-core/InitializeApplicationCommand.h"
#include "gui-core/LoadAppletCommand.h"
#include "gui-core/LoadMcfCommand.h"
#include "gui-core/RescanAppletsCommand.h"
#include "gui-core/StartAcquisitionCommand.h"
#include "gui-core/StopAcquisitionCommand.h"
#include "gui-core/StoreMcfCommand.h"
#include "gui-core/UnloadAppletCommand.h"

#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra_log/OvraLog.h"
#include "ovra_log/reference/Journal.h"

#include <cstdlib>

using ovra::gui::Gui;
using ovra::reference::Journal;
using Lines = std::vector<std::string>;

namespace ovra::tests {

namespace {

constexpr const char* NOTHING = R"("processes": [])";

const Lines lifecycleOperations = {"OvraLog",
                                   "Environment::",
                                   "HlEnvironmentFileNode::scan",
                                   "HlEnvironmentCameraNode::setGenICamModelEntry",
                                   "PluginManager::",
                                   "CommandProcessor::terminateAsyncCommands"};

class Lifecycle : public Product
{
protected:
    ~Lifecycle() override { Journal::stop(); }
};

} // namespace

TEST_F(Lifecycle, StartsInItsFixedOrderAndTellsTheUser)
{
    installation.addAlphaApplet("a.hap", NOTHING);
    installation.addAlphaApplet("b.hap", NOTHING);
    installation.write("Hardware Applets/ovra-quad-cl/broken.hap", "{");
    start();

    const Lines expected = {
        "onInitializeBegin",
        "onLoggingInstalled",
        "onInitializeSync",
        "splash(Starting...)",
        "splash(Discovering Resources...)",
        "splash(Scanning Applets...)",
        "splash(Scanning File 1/3 (a.hap))",
        "splash(Scanning File 2/3 (b.hap))",
        "splash(Scanning File 3/3 (broken.hap))",
        "splash(Filling Caches...)",
        "fillCaches",
        "splash(Initialization done.)",
        "onInitializationDone",
    };
    EXPECT_EQ(views->lines(), expected);
    EXPECT_EQ(failures, Lines{});
    EXPECT_STREQ(std::getenv("OVRA_ENABLE_DRA"), "On");
    EXPECT_TRUE(application.isMonitoringPlugins());
}

TEST_F(Lifecycle, ScansEveryFileBeforeAutoScanAndMonitorsGoOn)
{
    installation.addAlphaApplet("a.hap", NOTHING);
    Journal::start();
    start();
    const Lines expected = {
        "OvraLogInit",
        "OvraLogSetMessageCallback set",
        "Environment::model",
        "Environment::enableAutoScan false",
        "Environment::discoverResourcesOnce",
        "Environment::discoverResources",
        "HlEnvironmentFileNode::scan a.hap",
        "Environment::enableAutoScan true",
        "Environment::startMonitor",
        "PluginManager::startMonitor",
    };
    Lines lines = journalOf(lifecycleOperations);
    std::erase(lines, "Environment::create");
    EXPECT_EQ(lines, expected);
}

TEST_F(Lifecycle, EndsInItsFixedOrderAndReleasesTheCameras)
{
    start();
    const auto root = Gui::environment()->model()->root();
    Journal::start();
    stop();
    const Lines expected = {
        "Environment::stopMonitor",
        "Environment::model",
        "HlEnvironmentCameraNode::setGenICamModelEntry",
        "HlEnvironmentCameraNode::setGenICamModelEntry",
        "HlEnvironmentCameraNode::setGenICamModelEntry",
        "OvraLogSetMessageCallback null",
        "PluginManager::stopMonitor",
        "CommandProcessor::terminateAsyncCommands",
        "OvraLogDeinit",
    };
    Lines lines = journalOf(lifecycleOperations);
    for (auto& line : lines)
        if (line.rfind("HlEnvironmentCameraNode", 0) == 0)
            line.resize(line.find(' '));
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(views->lines().back(), "onCleanup");
    for (const auto cameras = root->getCameras(); cameras->hasNext(); cameras->advance())
        EXPECT_FALSE(cameras->current()->getGenICamModelEntry());
}

TEST_F(Lifecycle, LogMessagesReachTheFrontEndOnlyWhileTheApplicationRuns)
{
    const auto write = [](const char* text) { OvraLogMessage(1, "file", 2, text, 0, nullptr); };
    OvraLogInit();
    write("before");
    start();
    write("during");
    stop();
    write("after");
    OvraLogDeinit();
    Lines ours;
    for (const auto& message : views->logMessages())
        if (message == "before" || message == "during" || message == "after")
            ours.push_back(message);
    EXPECT_EQ(ours, Lines{"during"});
}

TEST_F(Lifecycle, ABrokenMachineDescriptionIsToldInOneLineAndTheMonitorsStayOff)
{
    const std::string machine =
        installation.write("simulation/machine.json",
                           R"({"name": "x", "boards": [{"model": "m", "boardType": 1, "serial": 7}]})");
    Journal::start();
    start();
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_NE(failures[0].find("executeAsync"), std::string::npos) << failures[0];
    EXPECT_NE(failures[0].find("machine.json"), std::string::npos) << failures[0];
    EXPECT_NE(failures[0].find("/boards/0/serial"), std::string::npos) << failures[0];
    EXPECT_EQ(failures[0].find('\n'), std::string::npos) << failures[0];
    EXPECT_EQ(journalOf({"Environment::enableAutoScan true", "Environment::startMonitor"}), Lines{});
    EXPECT_FALSE(application.isMonitoringPlugins());
    EXPECT_EQ(views->lines().back(), "onInitializationDone");
}

TEST_F(Lifecycle, ARescanIsOneDiscoveryBetweenTwoNotices)
{
    start();
    installation.addAlphaApplet("late.hap", NOTHING);
    views->clear();
    Journal::start();
    run(gui::commands::RescanAppletsCommand::create());
    EXPECT_EQ(views->lines(), (Lines{"setRescanInProgress(true)", "setRescanInProgress(false)"}));
    EXPECT_EQ(journalOf({"Environment::"}), Lines{"Environment::discoverResourcesOnce"});
}

TEST_F(Lifecycle, ARescanThatFailsStillEndsForTheUser)
{
    start();
    views->clear();
    Journal::start();
    Journal::throwAt(1, "Environment::discoverResourcesOnce");
    run(gui::commands::RescanAppletsCommand::create());
    EXPECT_EQ(views->lines(), (Lines{"setRescanInProgress(true)", "setRescanInProgress(false)"}));
    EXPECT_EQ(failures.size(), 1U);
}

namespace {

/// Compiles and links only when the class exports what a command exports.
template <class Command, class... Arguments>
void createCopyAndAssign(const Arguments&... arguments)
{
    const boost::shared_ptr<core::Command> created = Command::create(arguments...);
    Command first(arguments...);
    const Command second(first);
    first = second;
    EXPECT_EQ(created->type(), first.type());
}

} // namespace

TEST(CommandClasses, ExportTheirFactoryConstructorsAndAssignment)
{
    using namespace gui::commands;
    const boost::shared_ptr<core::models::HlEnvironmentBoardNode> board;
    const boost::shared_ptr<core::models::HlEnvironmentDmaNode> dma;
    const boost::shared_ptr<core::models::HlEnvironmentLogicalPortNode> port;
    createCopyAndAssign<InitializeApplicationCommand>();
    createCopyAndAssign<CleanupApplicationCommand>();
    createCopyAndAssign<RescanAppletsCommand>();
    createCopyAndAssign<LoadAppletCommand>(1, std::string("applet"), std::string("mcf"));
    createCopyAndAssign<UnloadAppletCommand>(1);
    createCopyAndAssign<StartAcquisitionCommand>(dma, 1);
    createCopyAndAssign<StartAcquisitionCommand>(port, 1);
    createCopyAndAssign<StopAcquisitionCommand>(dma);
    createCopyAndAssign<StopAcquisitionCommand>(port);
    createCopyAndAssign<AcquisitionBufferCountChangeCommand>(dma, 1);
    createCopyAndAssign<LoadMcfCommand>(board, std::string("mcf"));
    createCopyAndAssign<StoreMcfCommand>(board, std::string("mcf"));
    EXPECT_EQ(CleanupApplicationCommand().type(), core::Command::Cleanup);
    EXPECT_EQ(UnloadAppletCommand(1).type(), core::Command::Synchronous);
    EXPECT_EQ(LoadMcfCommand(board, "").type(), core::Command::Synchronous);
    EXPECT_EQ(StoreMcfCommand(board, "").type(), core::Command::Synchronous);
    EXPECT_EQ(StopAcquisitionCommand(dma).type(), core::Command::Asynchronous);
    EXPECT_EQ(AcquisitionBufferCountChangeCommand(dma, 1).type(), core::Command::Asynchronous);
}

} // namespace ovra::tests
