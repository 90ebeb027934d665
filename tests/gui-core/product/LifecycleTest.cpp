// SPDX-License-Identifier: MIT
#include "Product.h"

#include "gui-core/EntryPoints.h"
#include "gui-core/Version.h"

#include "ovra_log/OvraLog.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <stdexcept>

namespace ovra::tests {

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char* NOTHING = R"("processes": [])";

/// The journal's lines of the lifecycle, in one form for all cameras.
Lines lifecycle()
{
    Lines lines = journalOf(
        {"OvraLogInit", "OvraLogDeinit", "OvraLogSet", "Environment::", "HlEnvironmentFileNode::scan",
         "HlEnvironmentCameraNode::setGenICamModelEntry", "PluginManager::", "CommandProcessor::", "views"});
    for (auto& line : lines)
        if (line.rfind("HlEnvironmentCameraNode", 0) == 0)
            line.resize(line.find(' '));
    return lines;
}

using Lifecycle = Product;

/// Arms a fault for the call at \p position of \p sequence.
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
/// An event is a command of its own: its failure does not reach the command that posted it.
const std::string FAILED_EVENT = "ovra::gui::commands::ShowSplashscreenMessageEvent executeSync";

/// A start with two applet files, without the splash messages, whose times vary.
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

/// The journal from the first step of the start on.
Lines fromTheStartOn(const Lines& lines)
{
    return {std::find(lines.begin(), lines.end(), START_SYNC[0]), lines.end()};
}

} // namespace

TEST(ModuleBorder, LetsAnExceptionOutByItsTypeAndAFrontEndEndWhereItWasMade)
{
    OvraGuiCoreInit();
    int ended = 0;
    boost::shared_ptr<Gui> plugin(Gui::createInstance(), Gui::destroyInstance);
    const auto end = [&](gui::Views* views) {
        delete views;
        ++ended;
    };
    plugin->injectDependency("views", boost::shared_ptr<gui::Views>(new RecordingViews, end));
    EXPECT_THROW(plugin->injectDependency("views", 7), boost::bad_any_cast);
    EXPECT_EQ(ended, 0);
    plugin.reset();
    EXPECT_EQ(ended, 1);
    OvraGuiCoreDeinit();
}

TEST(ModuleBorder, LetsAnExceptionOfTheHostThroughTheLibrarysStartAndEnd)
{
    reference::Journal::start();
    reference::Journal::throwAt(1, "OvraParametersInit");
    EXPECT_THROW(OvraGuiCoreInit(), reference::ReferenceFault); // counts nevertheless
    OvraGuiCoreInit();
    OvraGuiCoreDeinit();
    reference::Journal::throwAt(1, "OvraCoreDeinit");
    EXPECT_THROW(OvraGuiCoreDeinit(), reference::ReferenceFault);
    reference::Journal::stop();
}

TEST(ApplicationStart, TellsTheUserOfEveryFileInEachLifeOfAProcess)
{
    for (const int count : {0, 1, 12}) {
        SCOPED_TRACE(std::to_string(count) + " files");
        Session session;
        Lines expected = {"onInitializeBegin",
                          "onLoggingInstalled",
                          "onInitializeSync",
                          "splash(Starting...)",
                          "splash(Discovering Resources...)",
                          "splash(Scanning Applets...)"};
        for (int i = 1; i <= count; ++i) {
            const std::string name = std::string(1, static_cast<char>('a' + i)) + ".hap";
            if (i % 3 == 0) // broken files count like others
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

        OvraLogMessage(1, "file", 2, "of this life", 0, nullptr);
        EXPECT_EQ(std::ranges::count(session.views->logMessages(), "of this life"), 1);
        session.load(ALPHA_SERIAL, session.installation.folder() + "/Hardware Applets/ovra-quad-cl/b.hap");
        EXPECT_EQ(session.isLoaded(ALPHA_SERIAL), count > 0);
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

        // The variable is set before the first fault.
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
        session.run(RescanAppletsCommand::create());
        EXPECT_EQ(session.views->lines().back(), "setRescanInProgress(false)");
        session.stop();
        EXPECT_EQ(session.views->lines().back(), "onCleanup");
        EXPECT_EQ(session.failures, Lines{});
    }
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
    const auto cleanUp = [](Session& session) {
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
}

TEST_F(Lifecycle, ABrokenMachineDescriptionIsToldInOneLine)
{
    installation.write("simulation/machine.json",
                       R"({"name": "x", "boards": [{"model": "m", "boardType": 1, "serial": 7}]})");
    start();
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_THAT(failures[0], AllOf(HasSubstr("executeAsync: "), HasSubstr("machine.json"),
                                   HasSubstr("/boards/0/serial"), Not(HasSubstr("\n"))));
    EXPECT_EQ(views->lines().back(), "onInitializationDone");
}

TEST_F(Lifecycle, ARescanIsOneDiscoveryBetweenTwoNoticesEvenIfItFails)
{
    start();
    for (const std::size_t failing : {0U, 1U}) {
        views->clear();
        Journal::start();
        Journal::throwAt(failing, "Environment::discoverResourcesOnce");
        run(RescanAppletsCommand::create());
        EXPECT_EQ(views->lines(), (Lines{"setRescanInProgress(true)", "setRescanInProgress(false)"}));
        EXPECT_EQ(journalOf({"Environment::"}), Lines{"Environment::discoverResourcesOnce"});
        EXPECT_EQ(failures.size(), failing);
    }
}

namespace {

/// Compiles and links only when the class exports what a command exports.
template <class Command, class... Arguments>
void createCopyAndAssign(core::Command::CommandType type, const Arguments&... arguments)
{
    const boost::shared_ptr<core::Command> created = Command::create(arguments...);
    Command first(arguments...);
    const Command second(first);
    first = second;
    EXPECT_EQ(created->type(), type);
    EXPECT_EQ(first.type(), type);
}

} // namespace

TEST(Version, OfTheLoadedLibraryIsThatOfItsHeaders)
{
    EXPECT_STREQ(OvraGuiCoreVersion(), OVRA_GUI_CORE_VERSION);
    EXPECT_EQ(OvraGuiCoreVersionNumber(), OVRA_GUI_CORE_VERSION_NUMBER);
    EXPECT_STREQ(OvraGuiCoreAbi(), OVRA_GUI_CORE_ABI);
}

TEST(CommandClasses, ExportTheirFactoryConstructorsAndAssignment)
{
    using core::Command;
    const boost::shared_ptr<core::models::HlEnvironmentBoardNode> board;
    const boost::shared_ptr<core::models::HlEnvironmentDmaNode> dma;
    const boost::shared_ptr<core::models::HlEnvironmentLogicalPortNode> port;
    const std::string file;
    createCopyAndAssign<InitializeApplicationCommand>(Command::Asynchronous);
    createCopyAndAssign<CleanupApplicationCommand>(Command::Cleanup);
    createCopyAndAssign<RescanAppletsCommand>(Command::Asynchronous);
    createCopyAndAssign<LoadAppletCommand>(Command::Asynchronous, 1, file, file);
    createCopyAndAssign<UnloadAppletCommand>(Command::Synchronous, 1);
    createCopyAndAssign<StartAcquisitionCommand>(Command::Asynchronous, dma, 1);
    createCopyAndAssign<StartAcquisitionCommand>(Command::Asynchronous, port, 1);
    createCopyAndAssign<StopAcquisitionCommand>(Command::Asynchronous, dma);
    createCopyAndAssign<StopAcquisitionCommand>(Command::Asynchronous, port);
    createCopyAndAssign<AcquisitionBufferCountChangeCommand>(Command::Asynchronous, dma, 1);
    createCopyAndAssign<LoadMcfCommand>(Command::Synchronous, board, file);
    createCopyAndAssign<StoreMcfCommand>(Command::Synchronous, board, file);
}

} // namespace ovra::tests
