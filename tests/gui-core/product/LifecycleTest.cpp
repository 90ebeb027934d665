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
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra_log/OvraLog.h"
#include "ovra_log/reference/Journal.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

using ovra::gui::Gui;
using ovra::reference::Journal;
using Lines = std::vector<std::string>;

namespace ovra::tests {

namespace {

constexpr const char* NOTHING = R"("processes": [])";

const Lines lifecycleOperations = {"OvraLogInit",
                                   "OvraLogDeinit",
                                   "OvraLogSet",
                                   "Environment::",
                                   "HlEnvironmentFileNode::scan",
                                   "HlEnvironmentCameraNode::setGenICamModelEntry",
                                   "PluginManager::",
                                   "CommandProcessor::",
                                   "views"};

/// What of the lifecycle is on the journal, in one form for all cameras.
Lines lifecycle()
{
    Lines lines = journalOf(lifecycleOperations);
    for (auto& line : lines)
        if (line.rfind("HlEnvironmentCameraNode", 0) == 0)
            line.resize(line.find(' '));
    return lines;
}

class Lifecycle : public Product
{
protected:
    ~Lifecycle() override { Journal::stop(); }
};

/// Lets the call at \p position of \p sequence throw when it is repeated.
void throwAtStep(const Lines& sequence, std::size_t position)
{
    const std::string& step = sequence[position];
    const auto last = sequence.begin() + static_cast<std::ptrdiff_t>(position) + 1;
    const auto nth = std::count_if(sequence.begin(), last,
                                   [&step](const std::string& line) { return line.rfind(step, 0) == 0; });
    Journal::throwAt(static_cast<std::size_t>(nth), step);
}

const std::string POST = "CommandProcessor::executeCommand ovra::gui::commands::ShowSplashscreenMessageEvent";
const std::string FAILED_START = "ovra::gui::commands::InitializeApplicationCommand ";
/// An event is a command of its own: whoever posted it does not notice.
const std::string FAILED_EVENT = "ovra::gui::commands::ShowSplashscreenMessageEvent executeSync";

/// A start with two applet files, without the splash messages of events: those are shown at times of their
/// own.
const Lines START_SYNC = {"OvraLogInit",
                          "views onInitializeBegin",
                          "OvraLogSetMessageCallback set",
                          "views onLoggingInstalled",
                          "views onInitializeSync",
                          "views splash(Starting...)"};
const Lines START_ASYNC = {
    "Environment::model",
    POST,
    "Environment::enableAutoScan false",
    "Environment::discoverResourcesOnce",
    "Environment::discoverResources",
    POST,
    POST,
    "HlEnvironmentFileNode::scan a.hap",
    POST,
    "HlEnvironmentFileNode::scan b.hap",
    "Environment::enableAutoScan true",
    "Environment::startMonitor",
    "PluginManager::startMonitor",
};
const Lines START_POST = {POST, "views fillCaches", POST, "views onInitializationDone"};
const Lines START_EVENTS = {
    "views splash(Discovering Resources...)",  "views splash(Scanning Applets...)",
    "views splash(Scanning File 1/2 (a.hap))", "views splash(Scanning File 2/2 (b.hap))",
    "views splash(Filling Caches...)",         "views splash(Initialization done.)"};

Lines joined(std::initializer_list<Lines> parts)
{
    Lines all;
    for (const auto& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

/// What is left of a journal from the first step of the start on.
Lines fromTheStartOn(const Lines& lines)
{
    return {std::find(lines.begin(), lines.end(), START_SYNC[0]), lines.end()};
}

} // namespace

TEST(ApplicationStart, TellsTheUserOfEveryFile)
{
    for (const int count : {0, 1, 12}) {
        SCOPED_TRACE(std::to_string(count) + " files");
        Session session;
        Lines expected = {
            "onInitializeBegin",
            "onLoggingInstalled",
            "onInitializeSync",
            "splash(Starting...)",
            "splash(Discovering Resources...)",
            "splash(Scanning Applets...)",
        };
        for (int i = 1; i <= count; ++i) {
            const std::string name = std::string(1, static_cast<char>('a' + i)) + ".hap";
            if (i % 3 == 0) // a broken file is one like the others
                session.installation.write("Hardware Applets/ovra-quad-cl/" + name, "{");
            else
                session.installation.addAlphaApplet(name, NOTHING);
            expected.push_back("splash(Scanning File " + std::to_string(i) + "/" + std::to_string(count) +
                               " (" + name + "))");
        }
        for (const char* line : {"splash(Filling Caches...)", "fillCaches", "splash(Initialization done.)",
                                 "onInitializationDone"})
            expected.emplace_back(line);
        session.start();
        EXPECT_EQ(session.views->lines(), expected);
        EXPECT_EQ(session.failures, Lines{});
    }
}

TEST(ApplicationStart, AnExceptionEndsItsPhaseAndTheRestGoesOn)
{
    const Lines whole = joined({START_SYNC, START_ASYNC, START_POST});
    const Lines faults = joined({whole, START_EVENTS, {"none"}});
    for (std::size_t step = 0; step < faults.size(); ++step) {
        SCOPED_TRACE("step " + std::to_string(step) + ", " + faults[step]);
        Session session;
        session.installation.addAlphaApplet("a.hap", NOTHING);
        session.installation.addAlphaApplet("b.hap", NOTHING);
        session.views->onLine = [&](const std::string& line) {
            const std::string call = "views " + line;
            if (std::find(START_EVENTS.begin(), START_EVENTS.end(), call) == START_EVENTS.end())
                Journal::note(call);
            if (call == faults[step])
                throw std::runtime_error("Fault asked for at " + call);
        };
        Journal::start();
        if (step < whole.size())
            throwAtStep(whole, step);
        session.start();

        // The first fault comes before all that can read it.
        EXPECT_STREQ(std::getenv("OVRA_ENABLE_DRA"), "On");
        const bool inSync = step < START_SYNC.size();
        const bool inAsync = !inSync && step < START_SYNC.size() + START_ASYNC.size();
        Lines expected(whole.begin(),
                       whole.begin() + static_cast<std::ptrdiff_t>(std::min(step + 1, whole.size())));
        if (inSync || inAsync)
            expected = joined({expected, START_POST});
        EXPECT_EQ(fromTheStartOn(lifecycle()), expected);
        EXPECT_EQ(session.application.isMonitoringPlugins(), !inSync && !inAsync);
        const std::string phase = inSync                ? FAILED_START + "executeSync"
                                  : inAsync             ? FAILED_START + "executeAsync"
                                  : step < whole.size() ? FAILED_START + "executePostAsync"
                                                        : FAILED_EVENT;
        const Lines told = {phase + ": Fault asked for at " + faults[step]};
        EXPECT_EQ(session.failures, step < faults.size() - 1 ? told : Lines{});

        session.failures.clear();
        session.run(gui::commands::RescanAppletsCommand::create());
        EXPECT_EQ(session.views->lines().back(), "setRescanInProgress(false)");
        session.stop();
        EXPECT_EQ(session.views->lines().back(), "onCleanup");
        EXPECT_EQ(session.failures, Lines{});
    }
    Journal::stop();
}

TEST(ApplicationEnd, AnExceptionLeavesTheLaterStepsForAnotherAttempt)
{
    const std::string camera = "HlEnvironmentCameraNode::setGenICamModelEntry";
    const Lines whole = {"Environment::stopMonitor",
                         "Environment::model",
                         camera,
                         camera,
                         camera,
                         "OvraLogSetMessageCallback null",
                         "views onCleanup",
                         "PluginManager::stopMonitor",
                         "CommandProcessor::terminateAsyncCommands",
                         "OvraLogDeinit"};
    const auto cleanUp = [&whole](Session& session) {
        session.application.stopPlugins();
        Lines lines = lifecycle();
        std::erase(lines, "CommandProcessor::executeCommand ovra::gui::commands::CleanupApplicationCommand");
        return lines;
    };
    for (std::size_t step = 0; step <= whole.size(); ++step) {
        SCOPED_TRACE(step < whole.size() ? "step " + std::to_string(step) + ", " + whole[step] : "no fault");
        Session session;
        session.start();
        const auto root = Gui::environment()->model()->root();
        session.views->onLine = [&](const std::string& line) {
            Journal::note("views " + line);
            if (step < whole.size() && "views " + line == whole[step])
                throw std::runtime_error("broken");
        };
        Journal::start();
        if (step < whole.size())
            throwAtStep(whole, step);
        const auto done = static_cast<std::ptrdiff_t>(std::min(step + 1, whole.size()));
        EXPECT_EQ(cleanUp(session), Lines(whole.begin(), whole.begin() + done));
        EXPECT_EQ(session.failures.size(), step < whole.size() ? 1U : 0U);

        const bool ended = step > whole.size() - 2;
        session.views->onLine = [](const std::string& line) { Journal::note("views " + line); };
        Journal::start();
        EXPECT_EQ(cleanUp(session), ended ? Lines{} : whole) << "a processor that was ended takes nothing";
        if (step == whole.size() - 1)
            OvraLogDeinit();
        for (const auto cameras = root->getCameras(); cameras->hasNext(); cameras->advance())
            EXPECT_FALSE(cameras->current()->getGenICamModelEntry());
    }
    Journal::stop();
}

TEST(ApplicationEnd, IsFollowedByAnotherStartInTheSameProcess)
{
    Lines first;
    for (const char* life : {"first", "second", "third"}) {
        Session session;
        const auto applet = session.installation.addAlphaApplet("a.hap", NOTHING);
        session.start();
        session.run(gui::commands::LoadAppletCommand::create(ALPHA_SERIAL, applet, ""));
        OvraLogMessage(1, "file", 2, life, 0, nullptr);
        session.run(gui::commands::UnloadAppletCommand::create(ALPHA_SERIAL));
        session.stop();
        EXPECT_EQ(session.failures, Lines{});
        Lines lines = session.views->lines();
        std::erase(lines, "connectFglibEvents"); // on the worker, at a time of its own
        if (first.empty())
            first = lines;
        EXPECT_EQ(lines, first);
        const Lines messages = session.views->logMessages();
        EXPECT_EQ(std::count(messages.begin(), messages.end(), life), 1);
    }
}

TEST_F(Lifecycle, LogMessagesReachTheFrontEndFromTheInstallationOfTheCallbackToItsRemoval)
{
    const auto write = [](const std::string& text) {
        OvraLogMessage(1, "file", 2, ("ours: " + text).c_str(), 0, nullptr);
    };
    views->onLine = [&](const std::string& line) {
        if (line.rfind("on", 0) == 0)
            write(line);
    };
    OvraLogInit();
    write("before");
    start();
    write("during");
    stop();
    write("after");
    OvraLogDeinit();
    Lines ours = views->logMessages();
    std::erase_if(ours, [](const std::string& message) { return message.rfind("ours: ", 0) != 0; });
    EXPECT_EQ(ours, (Lines{"ours: onLoggingInstalled", "ours: onInitializeSync", "ours: onInitializationDone",
                           "ours: during"}));
}

TEST_F(Lifecycle, AppletFilesComeAndGoWhileTheApplicationRuns)
{
    start();
    const auto files = Gui::environment()->model()->root()->getFilesEntryNode();
    const auto path = installation.addAlphaApplet("plugged.hap", NOTHING);
    pumpUntil([&] { return files->existsAllFilesEntry(path); });
    EXPECT_EQ(files->getAllFilesEntry(path)->getType(), "HAP");
    load(ALPHA_SERIAL, path);
    EXPECT_TRUE(board(ALPHA_SERIAL)->getLoadedAppletEntry());
    std::filesystem::remove(path);
    pumpUntil([&] { return !files->existsAllFilesEntry(path); });
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
