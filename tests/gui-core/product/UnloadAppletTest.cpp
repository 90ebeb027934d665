#include "Product.h"

#include "fglib5/Fglib5Types.h"

#include <algorithm>
#include <array>

namespace ovra::tests {

namespace {

using UnloadApplet = Product;

/// The journal without reading operations, and without the details of operations that change one node.
Lines changes()
{
    const Lines questions = {
        "::get",           "::root", "::model", "Parent::", "globalResourceModel", "CommandProcessor",
        "HarloApplication"};
    const Lines whole = {"views", "Children::clear", "HlEnvironmentGlobalResourceRootNode::removeChild"};
    Lines steps;
    for (const auto& line : Journal::lines()) {
        const std::string operation = line.substr(0, line.find(' '));
        const auto contains = [&](const auto& part) { return operation.find(part) != std::string::npos; };
        if (std::ranges::count(whole, operation) != 0)
            steps.push_back(line);
        else if (std::ranges::none_of(questions, contains))
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

    Lines expected = {"HlEnvironmentBoardNode::setFglibEventsSignalConnection"};
    for (const char* key :
         {"", "-common", "-events", "-group-dmas", "-group-no-dma-hap-applet", "-group-ports",
          "-nodma-hap-applet", "-process-0", "-process-0-dma-0", "-process-0-port-0", "-process-0-port-1",
          "-process-0-port-2", "-process-0-port-3", "-process-1"})
        expected.push_back(std::string("HlEnvironmentGlobalResourceRootNode::removeChild board-a1b2c3") +
                           key);
    for (const char* step : {"FgLibModel::stop",
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
                             "views update_dma_memory"})
        expected.emplace_back(step);
    EXPECT_EQ(changes(), expected);
    expectNothingLeftOf(ALPHA_SERIAL);

    // The clean-up of a load that a host exception ended takes the same steps. The load's last step throws;
    // the first line of that name belongs to the unload before it.
    expected.resize(expected.size() - 2);
    Journal::start();
    Journal::throwAt(2, "HlEnvironmentBoardNode::setBoardSelectedForViewEntry");
    load(ALPHA_SERIAL, applet);
    EXPECT_EQ(failures.size(), 1U);
    Lines steps = changes();
    steps.erase(steps.begin(), std::find(steps.rbegin(), steps.rend(), expected.front()).base() - 1);
    steps.resize(expected.size()); // the rest is the rescan
    EXPECT_EQ(steps, expected);
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
    // The owner of a resource counts, not its key.
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
        EXPECT_EQ(installation.calls("*") != calls, held); // for an empty board the runtime is not called
        std::string updates;
        for (const auto& line : Journal::lines())
            for (const auto& [operation, sign] : {std::pair("RootNode::setFgInitInProgress true", "+"),
                                                  {"RootNode::setFgInitInProgress false", "-"},
                                                  {"BoardNode::beginHandleChange", "["},
                                                  {"BoardNode::setBoardHandle", "set"},
                                                  {"BoardNode::endHandleChange", "] "}})
                updates += line.find(operation) != std::string::npos ? sign : "";
        EXPECT_EQ(updates, row.updates) << row.applet;
    }
}

TEST_F(UnloadApplet, OfABoardThatAcquiresDeliversNoImageAfterIt)
{
    const std::string generating =
        R"("width": 8, "height": 8, "generator": {"pattern": "ramp", "frameRate": 500, "enabled": true}})";
    const std::string two = R"("processes": [{"dmas": [0, 1]}], "dmas": [{"index": 0, )" + generating +
                            R"(, {"index": 1, )" + generating + "]";
    const auto alpha = installation.addAlphaApplet("two.hap", two);
    const auto beta = installation.addBetaApplet("two.hap", two);
    std::array<ImageCounter, 3> shown;
    start();
    load(ALPHA_SERIAL, alpha);
    load(BETA_SERIAL, beta);
    const std::pair<int, unsigned int> channels[] = {{ALPHA_SERIAL, 0}, {ALPHA_SERIAL, 1}, {BETA_SERIAL, 0}};
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const auto channel = dma(channels[i].first, channels[i].second);
        channel->getDisplayScene()->setVisualizer(&shown[i]);
        run(StartAcquisitionCommand::create(channel, ENDLESS));
    }
    pumpUntil([&] { return shown[0].images > 3 && shown[1].images > 3; });

    UnloadAppletCommand(ALPHA_SERIAL).executeSync();
    const int atReturn[] = {shown[0].images, shown[1].images, shown[2].images};
    EXPECT_EQ(installation.live(FGSIM_ACQUIRING_CHANNELS), 2) << "those of the other board";
    expectEmptyBoard(ALPHA_SERIAL);
    pumpUntil([&] { return shown[2].images > atReturn[2] + 20; }); // time passes
    EXPECT_EQ(shown[0].images, atReturn[0]);
    EXPECT_EQ(shown[1].images, atReturn[1]);
    unload(BETA_SERIAL);
    expectNothingLeftOf(BETA_SERIAL);
}

TEST_F(UnloadApplet, SurvivesEveryHostCallThatThrows)
{
    const Lines kinds = {installation.addAlphaApplet("double.hap", DOUBLE), installation.addWrappedApplet()};
    start();
    for (const auto& applet : kinds) {
        const auto prepare = [&] {
            load(ALPHA_SERIAL, applet);
            EXPECT_TRUE(isLoaded(ALPHA_SERIAL));
        };
        // The second unload does the steps that the first one did not.
        const auto repeat = [&](bool) {
            unload(ALPHA_SERIAL);
            expectNothingLeftOf(ALPHA_SERIAL);
        };
        const auto act = [] { UnloadAppletCommand(ALPHA_SERIAL).executeSync(); };
        EXPECT_GT(sweep(prepare, act, repeat), 50U);
    }
    EXPECT_EQ(failures, Lines{});
}

} // namespace ovra::tests
