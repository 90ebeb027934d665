#include "LoadedApplet.h"

#include "gui-core/StartAcquisitionCommand.h"
#include "gui-core/UnloadAppletCommand.h"

#include "fglib5/Fglib5Types.h"

#include "simulation/fglib5/SimulationControl.h"

#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"
#include "ovra_log/reference/Journal.h"

#include <algorithm>
#include <atomic>

using ovra::gui::Gui;
using ovra::gui::commands::StartAcquisitionCommand;
using ovra::gui::commands::UnloadAppletCommand;
using ovra::reference::Journal;

namespace ovra::tests {

namespace {

class UnloadApplet : public LoadedApplet
{};

struct ImageCounter : display::DisplaySceneVisualizer
{
    void showImage(const display::Image&) override { ++images; }
    std::atomic<int> images{0};
};

/// The journal without what only looks, and without the details of operations that change one node.
Lines changes()
{
    const Lines questions = {
        "::get",           "::root", "::model", "Parent::", "globalResourceModel", "CommandProcessor",
        "HarloApplication"};
    Lines steps;
    for (const auto& line : Journal::lines()) {
        const std::string operation = line.substr(0, line.find(' '));
        if (operation == "views" || operation == "Children::clear" ||
            operation == "HlEnvironmentGlobalResourceRootNode::removeChild")
            steps.push_back(line);
        else if (std::ranges::none_of(questions, [&](const std::string& part) {
                     return operation.find(part) != std::string::npos;
                 }))
            steps.push_back(operation);
    }
    return steps;
}

} // namespace

TEST_F(UnloadApplet, TakesTheBoardApartInItsFixedOrder)
{
    const auto applet = installation.addAlphaApplet(
        "several.hap",
        R"("processes": [{"dmas": [0], "ports": [0, 1, 2, 3]}, {}], "dmas": [{"index": 0, "width": 8, "height": 8}])");
    start();
    load(ALPHA_SERIAL, applet);
    Journal::start();
    views->onLine = [](const std::string& line) { Journal::note("views " + line); };
    unload(ALPHA_SERIAL);
    views->onLine = nullptr;

    const std::string removeChild = "HlEnvironmentGlobalResourceRootNode::removeChild ";
    const Lines expected = {
        "HlEnvironmentBoardNode::setFglibEventsSignalConnection",
        removeChild + "board-a1b2c3",
        removeChild + "board-a1b2c3-common",
        removeChild + "board-a1b2c3-events",
        removeChild + "board-a1b2c3-group-dmas",
        removeChild + "board-a1b2c3-group-no-dma-hap-applet",
        removeChild + "board-a1b2c3-group-ports",
        removeChild + "board-a1b2c3-nodma-hap-applet",
        removeChild + "board-a1b2c3-process-0",
        removeChild + "board-a1b2c3-process-0-dma-0",
        removeChild + "board-a1b2c3-process-0-port-0",
        removeChild + "board-a1b2c3-process-0-port-1",
        removeChild + "board-a1b2c3-process-0-port-2",
        removeChild + "board-a1b2c3-process-0-port-3",
        removeChild + "board-a1b2c3-process-1",
        "FgLibModel::stop",
        "FgLibModel::removeFrameBufferGroup",
        "HlEnvironmentDmaNode::setFrontendRegInfoModel",
        "HlEnvironmentDmaNode::setFrontendRegInfoPointer",
        "DisplayScene::stopGrabbing",
        "DisplayScene::removeFrameBufferGroup",
        "DisplayScene::setVisualizer",
        "HlEnvironmentDmaNode::setFrameBufferGroup",
        "HlEnvironmentDmaNode::setDisplayScene",
        "FglibFrameBufferGroup::releaseBuffers",
        "FgLibModel::stop",
        "HlEnvironmentBoardNode::setNoDmaFrontendRegInfoModel",
        "HlEnvironmentBoardNode::setNoDmaFrontendRegInfoPointer",
        "Children::clear count=1", // DMA channels
        "Children::clear count=2", // processes
        "Children::clear count=4", // logical ports
        "Children::clear count=3", // physical ports
        "HlEnvironmentBoardNode::setFglibEventsModel",
        "HlEnvironmentBoardNode::beginHandleChange",
        "HlEnvironmentBoardNode::setBoardHandle",
        "HlEnvironmentBoardNode::endHandleChange",
        "HlEnvironmentBoardNode::handleChanged", // what an observer sees: one update
        "HlEnvironmentBoardNode::setLoadedAppletEntry",
        "HlEnvironmentBoardNode::setBoardSelectedForViewEntry",
        "views applet_unloaded",
        "views update_dma_memory",
    };
    EXPECT_EQ(changes(), expected);
    expectNothingLeftOf(ALPHA_SERIAL);
}

TEST_F(UnloadApplet, LeavesTheOtherBoardAndForeignResourcesAlone)
{
    const auto alpha = installation.addAlphaApplet("single.hap", SINGLE);
    const auto beta = installation.addBetaApplet("single.hap", SINGLE);
    start();
    load(BETA_SERIAL, beta);
    const Lines ofBeta = resources();
    load(ALPHA_SERIAL, alpha);
    const auto addForeign = [](core::Environment::GlobalResourceType type, const std::string& key,
                               const boost::shared_ptr<core::models::GenericModelNode>& resource) {
        const auto node = core::models::HlEnvironmentGlobalResourceNode::create();
        node->setType(type);
        node->setResource(resource);
        node->setKey(key);
        Gui::environment()->globalResourceModel()->root()->addChild(key, node);
    };
    addForeign(core::Environment::ResourceCamera, "a camera", board(ALPHA_SERIAL));
    addForeign(core::Environment::ResourceDma, "an expired channel", {});
    addForeign(core::Environment::ResourceBoard, "an expired board", {});
    // What counts is whose it is, not what it is called.
    addForeign(core::Environment::ResourceProcess, "of alpha",
               board(ALPHA_SERIAL)->getProcesses()->current());

    unload(ALPHA_SERIAL);
    expectEmptyBoard(ALPHA_SERIAL);
    EXPECT_TRUE(isLoaded(BETA_SERIAL));
    Lines expected = {"2 a camera", "0 an expired board", "1 an expired channel"};
    expected.insert(expected.end(), ofBeta.begin(), ofBeta.end());
    EXPECT_EQ(resources(), expected);

    EXPECT_EQ(dma(BETA_SERIAL, 0)->getSortKey(), "board-0001-process-0000-dma-0000"); // by index, not serial

    views->clear();
    unload(4711);
    EXPECT_EQ(views->lines(), Lines{});
}

TEST_F(UnloadApplet, EveryChangeOfTheHandleIsOneUpdateOfTheBoard)
{
    struct Row
    {
        std::string applet;  ///< to load before, or none
        const char* updates; ///< + - around the board's initialisation, [] around a change
        int initFails = FG_OK;
    };
    const std::string single = installation.addAlphaApplet("single.hap", SINGLE);
    const Row rows[] = {{"", "[] "},
                        {single, "[] +-[set] [set] "},
                        {single, "[] +-[] ", FG_INIT_ERROR},
                        {installation.addAlphaApplet("bad.hap", R"("type": "XYZ")"), "[] +-[set] [set] [] "}};
    start();
    for (const Row& row : rows) {
        if (row.initFails != FG_OK)
            installation.failCall("Fg_Init", 1, row.initFails);
        Journal::start();
        if (!row.applet.empty())
            load(ALPHA_SERIAL, row.applet);
        const auto calls = installation.calls("*");
        const bool held = isLoaded(ALPHA_SERIAL);
        unload(ALPHA_SERIAL);
        EXPECT_EQ(installation.calls("*") != calls, held); // an empty board is no business of the runtime's
        std::string updates;
        for (const auto& line : journalOf({"HlEnvironmentBoardNode::", "HlEnvironmentRootNode::set"})) {
            if (line.find("::setFgInitInProgress") != std::string::npos)
                updates += line.ends_with("true") ? "+" : "-";
            else if (line.find("::beginHandleChange") != std::string::npos)
                updates += "[";
            else if (line.find("::setBoardHandle") != std::string::npos)
                updates += "set";
            else if (line.find("::endHandleChange") != std::string::npos)
                updates += "] ";
        }
        EXPECT_EQ(updates, row.updates) << row.applet;
    }
}

TEST_F(UnloadApplet, OfABoardThatAcquiresDeliversNoImageAfterIt)
{
    const std::string generating =
        R"("width": 8, "height": 8, "generator": {"pattern": "ramp", "frameRate": 500, "enabled": true}})";
    const auto alpha =
        installation.addAlphaApplet("two.hap", R"("processes": [{"dmas": [0, 1]}], "dmas": [{"index": 0, )" +
                                                   generating + R"(, {"index": 1, )" + generating + "]");
    const auto beta = installation.addBetaApplet(
        "one.hap", R"("processes": [{"dmas": [0]}], "dmas": [{"index": 0, )" + generating + "]");
    ImageCounter first;
    ImageCounter second;
    ImageCounter elsewhere;
    start();
    load(ALPHA_SERIAL, alpha);
    load(BETA_SERIAL, beta);
    const auto acquire = [this](int serial, unsigned int index, ImageCounter& counter) {
        dma(serial, index)->getDisplayScene()->setVisualizer(&counter);
        run(StartAcquisitionCommand::create(dma(serial, index), -1));
    };
    acquire(ALPHA_SERIAL, 0, first);
    acquire(ALPHA_SERIAL, 1, second);
    acquire(BETA_SERIAL, 0, elsewhere);
    pumpUntil([&] { return first.images > 3 && second.images > 3; });

    UnloadAppletCommand(ALPHA_SERIAL).executeSync();
    const std::vector<int> atReturn = {first.images, second.images};
    EXPECT_EQ(installation.live(FGSIM_ACQUIRING_CHANNELS), 1);
    expectEmptyBoard(ALPHA_SERIAL);
    const int elsewhereAtReturn = elsewhere.images;
    pumpUntil([&] { return elsewhere.images > elsewhereAtReturn + 20; }); // time passes
    EXPECT_EQ((std::vector<int>{first.images, second.images}), atReturn);
    unload(BETA_SERIAL);
    expectNothingLeftOf(BETA_SERIAL);
}

TEST_F(UnloadApplet, SurvivesEveryHostCallThatThrows)
{
    const Lines kinds = {installation.addAlphaApplet("double.hap", DOUBLE), addWrappedApplet()};
    start();
    for (const auto& applet : kinds) {
        const auto prepare = [&] {
            load(ALPHA_SERIAL, applet);
            EXPECT_TRUE(isLoaded(ALPHA_SERIAL));
        };
        // What was not done the first time is done the second.
        const auto repeat = [&](bool) {
            unload(ALPHA_SERIAL);
            expectNothingLeftOf(ALPHA_SERIAL);
        };
        EXPECT_GT(sweep(
                      prepare, [] { UnloadAppletCommand(ALPHA_SERIAL).executeSync(); }, repeat),
                  50U);
    }
    EXPECT_EQ(failures, Lines{});
}

} // namespace ovra::tests
