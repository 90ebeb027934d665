#include "Product.h"

#include "gui-core/LoadAppletCommand.h"
#include "gui-core/UnloadAppletCommand.h"

#include "fglib5/Fglib5Types.h"
#include "simulation/fglib5/SimulationControl.h"

#include "ovra-core/HarloApplication.h"
#include "ovra-lib-display-fglib/FglibFrameBufferGroup.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra-lib-fglib-model/FgLibModel.h"
#include "ovra_log/reference/Journal.h"

#include <algorithm>
#include <stdexcept>

using ovra::gui::Gui;
using ovra::gui::commands::LoadAppletCommand;
using ovra::reference::Journal;
using Lines = std::vector<std::string>;

namespace ovra::tests {

namespace {

constexpr const char* SINGLE = R"("processes": [{"dmas": [0], "ports": [0]}],
    "dmas": [{"index": 0, "width": 64, "height": 48}])";
constexpr const char* DOUBLE = R"("tags": ["interface=cl-medium", "interface=cl-base"],
    "processes": [{"dmas": [3, 1], "ports": [1]}, {"dmas": [2], "ports": [2, 0, 5]}],
    "dmas": [{"index": 1, "width": 64, "height": 48, "generator": {"pattern": "ramp"}},
             {"index": 2, "width": 64, "height": 48}, {"index": 3, "width": 32, "height": 16}])";
constexpr const char* NO_DMA = R"("processes": [{"ports": [0]}])";

std::string description(const char* parts, const char* extra)
{
    return std::string(parts) + ", " + extra;
}

class LoadApplet : public Product
{
protected:
    ~LoadApplet() override { Journal::stop(); }

    /// What the user was told of a load, without what every load begins and ends with.
    Lines toldAbout() const
    {
        Lines told;
        for (const auto& line : views->lines())
            if (line.rfind("status", 0) == 0 || line.rfind("warning", 0) == 0 || line.rfind("error", 0) == 0)
                told.push_back(line);
        return told;
    }

    void expectNothingHeldByTheRuntime() const
    {
        EXPECT_EQ(installation.live(FGSIM_BOARD_HANDLES), 0);
        EXPECT_EQ(installation.live(FGSIM_RINGS), 0);
        EXPECT_EQ(Gui::getUsedDmaMemory(), 0U);
        EXPECT_EQ(views->eventConnections(), 0U);
    }
};

} // namespace

TEST_F(LoadApplet, TellsTheWholeStoryOfAHapWithTwoProcesses)
{
    const auto applet = installation.addAlphaApplet("double.hap", DOUBLE);
    start();
    views->clear();
    load(ALPHA_SERIAL, applet);

    const Lines expected = {
        "onLoadAppletStarted",
        "board(0 - ovra-quad-cl)",
        "applet(double.hap)",
        "applet_unloaded",
        "update_dma_memory",
        "status(Loading applet 'double.hap' on board 0 ...)",
        "status(Loading succeeded.)",
        "status(Reading applet structure ...)",
        "status(Detected applet type: HAP)",
        "status(Detected DMA 1)",
        "status(   ......... Process: 0)",
        "status(   .... Logical Port: 1)",
        "status(Detected DMA 2)",
        "status(   ......... Process: 1)",
        "status(   ... Logical Ports: 0, 2, 5)",
        "status(Detected DMA 3)",
        "status(   ......... Process: 0)",
        "status(   .... Logical Port: 1)",
        "onLoadAppletFinished",
        "ensure_board_selection(10597059)",
        "update_dma_memory",
        "setRescanInProgress(true)",
        "setRescanInProgress(false)",
    };
    // The subscription comes from the worker at a time of its own; all the rest is in the order of the GUI
    // thread's queue.
    Lines lines = views->lines();
    EXPECT_EQ(std::erase(lines, "connectFglibEvents"), 1U);
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(failures, Lines{});
}

TEST_F(LoadApplet, PublishesTheStructureWithItsLinks)
{
    const auto applet = installation.addAlphaApplet("double.hap", DOUBLE);
    start();
    load(ALPHA_SERIAL, applet);

    const auto node = board(ALPHA_SERIAL);
    EXPECT_NE(node->getBoardHandle(), nullptr);
    EXPECT_EQ(node->getLoadedAppletEntry()->getFilePath(), applet);
    EXPECT_TRUE(node->getBoardSelectedForViewEntry());
    EXPECT_TRUE(node->getFglibEventsModel());
    EXPECT_TRUE(node->getNoDmaFrontendRegInfoModel());

    const auto channel = dma(ALPHA_SERIAL, 2);
    ASSERT_TRUE(channel);
    EXPECT_EQ(channel->getProcess(), 1U);
    EXPECT_EQ(channel->getBoard(), 0U);
    EXPECT_EQ(channel->getSortKey(), "board-0000-process-0001-dma-0002");
    EXPECT_EQ(channel->getAcqTimeout(), 10U);
    EXPECT_EQ(channel->getAcqBuffersCurrent(), 16U);
    EXPECT_EQ(channel->getFrontendRegInfoModel(), node->getNoDmaFrontendRegInfoModel());
    EXPECT_EQ(channel->getDisplayScene()->width(), 64);
    EXPECT_EQ(channel->getProcesses()->current()->getIndex(), 1U);

    const auto logical = port(ALPHA_SERIAL, 1);
    ASSERT_TRUE(logical);
    EXPECT_EQ(logical->getPortType(), "CL-MEDIUM");
    EXPECT_EQ(logical->getBoardSerial(), 0xa1b2c3U);
    EXPECT_TRUE(logical->getGeneratorAvailable());
    const auto physical = logical->getMappedPortEntry();
    ASSERT_TRUE(physical);
    EXPECT_EQ(physical->getMappedLogicalPortEntry(), logical);
    EXPECT_TRUE(physical->getConnectedCameraEntry());
    EXPECT_FALSE(port(ALPHA_SERIAL, 5)->getMappedPortEntry());
}

TEST_F(LoadApplet, RegistersTheBoardUnderItsHexadecimalSerialAndItsPartsUnderDecimalNumbers)
{
    const auto applet = installation.addAlphaApplet("double.hap", DOUBLE);
    start();
    load(ALPHA_SERIAL, applet);
    const Lines expected = {
        "0 board-a1b2c3",
        "5 board-a1b2c3-common",
        "6 board-a1b2c3-events",
        "9 board-a1b2c3-group-dmas",
        "12 board-a1b2c3-group-no-dma-hap-applet",
        "10 board-a1b2c3-group-ports",
        "8 board-a1b2c3-nodma-hap-applet",
        "3 board-a1b2c3-process-0",
        "1 board-a1b2c3-process-0-dma-1",
        "1 board-a1b2c3-process-0-dma-3",
        "4 board-a1b2c3-process-0-port-1",
        "3 board-a1b2c3-process-1",
        "1 board-a1b2c3-process-1-dma-2",
        "4 board-a1b2c3-process-1-port-0",
        "4 board-a1b2c3-process-1-port-2",
        "4 board-a1b2c3-process-1-port-5",
    };
    EXPECT_EQ(resources(), expected);
}

TEST_F(LoadApplet, AHapWithoutDmaStillHasItsParameters)
{
    const auto applet = installation.addAlphaApplet("none.hap", NO_DMA);
    start();
    load(ALPHA_SERIAL, applet);
    EXPECT_EQ(toldAbout(),
              (Lines{"status(Loading applet 'none.hap' on board 0 ...)", "status(Loading succeeded.)",
                     "status(Reading applet structure ...)", "status(Detected applet type: HAP)"}));
    EXPECT_TRUE(board(ALPHA_SERIAL)->getNoDmaFrontendRegInfoModel());
    EXPECT_EQ(port(ALPHA_SERIAL, 0)->getPortType(), "");
    unload(ALPHA_SERIAL);
    expectEmptyBoard(ALPHA_SERIAL);
}

TEST_F(LoadApplet, TakesTheConfiguredTimeoutAndWhatTheMemoryLimitLeavesOfTheBuffers)
{
    const auto applet = installation.addAlphaApplet(
        "large.hap", R"("processes": [{"dmas": [0]}], "dmas": [{"index": 0, "width": 1024, "height": 512}])");
    start();
    core::HarloApplication::setConfigEntry("gui.preferences.acq.default.timeout", 3);
    core::HarloApplication::setConfigEntry("gui.preferences.acq.default.buffers", 40);
    core::HarloApplication::setConfigEntry("gui.preferences.max_dma_buffersize", 5);
    load(ALPHA_SERIAL, applet);
    EXPECT_EQ(dma(ALPHA_SERIAL, 0)->getAcqTimeout(), 3U);
    EXPECT_EQ(dma(ALPHA_SERIAL, 0)->getAcqBuffersCurrent(), 10U);
    EXPECT_EQ(Gui::getUsedDmaMemory(), 5U << 20);
    unload(ALPHA_SERIAL);
    EXPECT_EQ(Gui::getUsedDmaMemory(), 0U);
}

TEST_F(LoadApplet, UnknownBoardAndUnknownFileAreToldBeforeAnythingIsUnloaded)
{
    const auto applet = installation.addAlphaApplet("single.hap", SINGLE);
    start();
    load(ALPHA_SERIAL, applet);
    views->clear();
    load(-2, applet);
    load(ALPHA_SERIAL, "nowhere.hap");
    const Lines expected = {
        "onLoadAppletStarted",        "error(Invalid board serial: 4294967294)",
        "onLoadAppletFinished",       "ensure_board_selection(4294967294)",
        "update_dma_memory",          "setRescanInProgress(true)",
        "setRescanInProgress(false)", "onLoadAppletStarted",
        "board(0 - ovra-quad-cl)",    "error(Invalid applet file: nowhere.hap)",
        "onLoadAppletFinished",       "ensure_board_selection(10597059)",
        "update_dma_memory",          "setRescanInProgress(true)",
        "setRescanInProgress(false)",
    };
    EXPECT_EQ(views->lines(), expected);
    EXPECT_TRUE(board(ALPHA_SERIAL)->getLoadedAppletEntry());
}

TEST_F(LoadApplet, ASecondLoadBeforeTheFirstIsDoneDoesNothingAtAll)
{
    const auto single = installation.addAlphaApplet("single.hap", SINGLE);
    const auto beta = installation.addBetaApplet("beta.hap", SINGLE);
    start();
    views->clear();
    submit(LoadAppletCommand::create(ALPHA_SERIAL, single, ""));
    submit(LoadAppletCommand::create(BETA_SERIAL, beta, ""));
    settle();
    const Lines lines = views->lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "onLoadAppletStarted"), 1);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "onLoadAppletFinished"), 1);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "setRescanInProgress(true)"), 1);
    EXPECT_TRUE(board(ALPHA_SERIAL)->getLoadedAppletEntry());
    expectEmptyBoard(BETA_SERIAL);
}

TEST_F(LoadApplet, CopiesOfACommandShareOneRequest)
{
    const auto single = installation.addAlphaApplet("single.hap", SINGLE);
    start();
    LoadAppletCommand original(ALPHA_SERIAL, single, "");
    LoadAppletCommand copy(original);
    original.executeSync();
    copy.executeAsync();
    LoadAppletCommand assigned(BETA_SERIAL, "other", "");
    assigned = copy;
    assigned.executePostAsync();
    settle();
    EXPECT_TRUE(board(ALPHA_SERIAL)->getLoadedAppletEntry());
    load(ALPHA_SERIAL, single);
    EXPECT_EQ(failures, Lines{});
}

TEST_F(LoadApplet, AppliesAnMcfAndLetsDisplaysTakeUpTheGeometry)
{
    const auto applet = installation.addAlphaApplet("single.hap", SINGLE);
    const auto mcf =
        installation.write("mcf/wide.mcf", "[Kamerasektion]\nHapName=single;\n[DMA0]\nFG_WIDTH=96;\n");
    start();
    Journal::start();
    load(ALPHA_SERIAL, applet, mcf);
    EXPECT_EQ(failures, Lines{});
    Lines told = toldAbout();
    ASSERT_GE(told.size(), 2U);
    EXPECT_EQ(told[told.size() - 2], "status(Loading Configuration from MCF.)");
    EXPECT_EQ(told.back(), "status(Loading Configuration from MCF succeeded.)");
    EXPECT_EQ(dma(ALPHA_SERIAL, 0)->getDisplayScene()->width(), 96);
    EXPECT_EQ(journalOf({"FglibFrameBufferGroup::notifyGeometryMayHaveChangedSlot"}).size(), 2U);
}

TEST_F(LoadApplet, AnMcfThatFailsIsAWarningWithTheRuntimesWordsOrWithout)
{
    const auto applet = installation.addAlphaApplet("single.hap", SINGLE);
    start();
    installation.failCall("Fg_loadConfig", 1, FG_TIMEOUT);
    load(ALPHA_SERIAL, applet, "some.mcf");
    const std::string known = toldAbout().back();
    EXPECT_EQ(known.rfind("warning(...Error loading MCF: ", 0), 0U) << known;
    EXPECT_EQ(known.find("Unknown Error Code"), std::string::npos) << known;
    EXPECT_NE(known.find(" (-17))"), std::string::npos) << known;

    installation.failCall("Fg_loadConfig", 1, -987654);
    load(ALPHA_SERIAL, applet, "some.mcf");
    EXPECT_EQ(toldAbout().back(), "warning(...Error loading MCF: Unknown Error Code (-987654))");
    EXPECT_TRUE(board(ALPHA_SERIAL)->getLoadedAppletEntry());
}

TEST_F(LoadApplet, EveryFailureIsToldInItsWordsAndLeavesTheBoardEmptyForTheNextLoad)
{
    struct Row
    {
        int line;
        const char* applet;
        const char* entry; ///< runtime entry to fail, or none
        const char* told;  ///< beginning of the last line
    };
    const Row rows[] = {
        {__LINE__, "asked.hap", "Fg_Init", "error(Error in Fg_Init(...): -1 ("},
        {__LINE__, "no-count.hap", "", "error(Error in Fg_getParameter(FG_NR_OF_PROCESSES): -"},
        {__LINE__, "no-dma-port.hap", "", "error(Error in Fg_getParameter(FG_DMA_PORT): -"},
        {__LINE__, "no-cam-port.hap", "", "error(Error in Fg_getParameter(FG_CAM_PORT): -"},
        {__LINE__, "negative-port.hap", "", "error(Error in Fg_getParameter(FG_CAM_PORT): 0 ("},
        {__LINE__, "odd.hap", "", "error(Detected applet type: Unknown)"},
        {__LINE__, "lower.hap", "", "error(Detected applet type: Unknown)"},
    };
    const auto good = installation.addAlphaApplet("good.hap", DOUBLE);
    installation.addAlphaApplet("asked.hap", description(SINGLE, R"("nrOfProcessesInFile": false)"));
    installation.addAlphaApplet(
        "no-count.hap", description(SINGLE, R"("nrOfProcessesInFile": false, "processCountFails": true)"));
    installation.addAlphaApplet("no-dma-port.hap",
                                R"("processes": [{"dmas": [0]}, {"dmas": [1, 2], "dmaPortFails": 1}],
        "dmas": [{"index": 0, "width": 8, "height": 8}, {"index": 1, "width": 8, "height": 8},
                 {"index": 2, "width": 8, "height": 8}])");
    installation.addAlphaApplet("no-cam-port.hap", R"("processes": [{"ports": [0], "camPortFails": 0}])");
    installation.addAlphaApplet("negative-port.hap", R"("processes": [{"ports": [0, -3]}])");
    installation.addAlphaApplet("odd.hap", description(SINGLE, R"("type": "XYZ")"));
    installation.addAlphaApplet("lower.hap", description(SINGLE, R"("type": "hap")"));
    start();
    const std::string folder = installation.folder() + "/Hardware Applets/ovra-quad-cl/";
    for (const Row& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line) + ": " + row.applet);
        if (*row.entry)
            installation.failCall(row.entry, 1, FG_INIT_ERROR);
        load(ALPHA_SERIAL, folder + row.applet);
        EXPECT_EQ(toldAbout().back().rfind(row.told, 0), 0U) << toldAbout().back();
        expectEmptyBoard(ALPHA_SERIAL);
        expectNothingHeldByTheRuntime();
        load(ALPHA_SERIAL, good);
        EXPECT_TRUE(board(ALPHA_SERIAL)->getLoadedAppletEntry());
        unload(ALPHA_SERIAL);
    }
    EXPECT_EQ(failures, Lines{});
}

TEST_F(LoadApplet, AProcessWhoseCountsCannotBeReadIsPublishedWithoutChannelsAndPorts)
{
    const auto applet = installation.addAlphaApplet(
        "counts.hap",
        R"("nrOfProcessesInFile": false, "processes": [{"dmas": [0], "ports": [0], "dmaCountFails": true, "portCountFails": true}],
           "dmas": [{"index": 0, "width": 8, "height": 8}])");
    start();
    load(ALPHA_SERIAL, applet);
    const auto node = board(ALPHA_SERIAL);
    EXPECT_EQ(node->getProcessesEntryNode()->_children().count(), 1U);
    EXPECT_EQ(node->getDmasEntryNode()->_children().count(), 0U);
    EXPECT_EQ(node->getLogicalPortsEntryNode()->_children().count(), 0U);
}

TEST_F(LoadApplet, WithoutRegisterInformationItWarnsAndGoesOnWithoutTheModel)
{
    const auto applet = installation.addAlphaApplet("single.hap", SINGLE);
    start();
    installation.failCall("Fg_getParameterInfo", 1, FG_INVALID_DMA);
    load(ALPHA_SERIAL, applet);
    EXPECT_EQ(toldAbout().back(), "warning(Error in Fg_getParameterInfo(0): NULL)");
    EXPECT_FALSE(dma(ALPHA_SERIAL, 0)->getFrontendRegInfoModel());
    Journal::start();
    unload(ALPHA_SERIAL);
    EXPECT_EQ(journalOf({"FgLibModel"}), Lines{});
    EXPECT_EQ(journalOf({"DisplayScene::"}).size(), 3U);
    expectEmptyBoard(ALPHA_SERIAL);
}

TEST_F(LoadApplet, ALibraryWithItsOwnInfoIsALegacyDllWithOneProcessForEachChannel)
{
    const std::string legacy =
        installation.folder() + "/dll/ovra-quad-cl/legacy" + boost::dll::shared_library::suffix().string();
    std::filesystem::create_directories(installation.folder() + "/dll/ovra-quad-cl");
    std::filesystem::copy_file(OVRA_LEGACY_APPLET, legacy);
    start();
    load(ALPHA_SERIAL, legacy);
    const std::string name = "legacy" + boost::dll::shared_library::suffix().string();
    const Lines expected = {
        "status(Loading applet '" + name + "' on board 0 ...)",
        "status(Loading succeeded.)",
        "status(Reading applet structure ...)",
        "status(Detected applet type: Legacy DLL)",
        "status(Detected DMA 0)",
        "status(   ......... Process: 0)",
        "status(   .... Logical Port: 0)",
        "status(Detected DMA 1)",
        "status(   ......... Process: 1)",
        "status(   .... Logical Port: 1)",
    };
    EXPECT_EQ(toldAbout(), expected);
    EXPECT_NE(dma(ALPHA_SERIAL, 0)->getFrontendRegInfoModel(),
              dma(ALPHA_SERIAL, 1)->getFrontendRegInfoModel());
    EXPECT_FALSE(board(ALPHA_SERIAL)->getNoDmaFrontendRegInfoModel());
    EXPECT_EQ(resources()[4], "11 board-a1b2c3-group-no-dma-dll-processes");
    unload(ALPHA_SERIAL);
    expectEmptyBoard(ALPHA_SERIAL);
    expectNothingHeldByTheRuntime();
}

TEST_F(LoadApplet, AWrappedDllRegistersItsProcessesWithoutDma)
{
    const auto path = installation.write(
        "dll/ovra-quad-cl/wrapped" + boost::dll::shared_library::suffix().string(),
        R"({"format": "virtual-applet-1", "name": "wrapped", "boardType": 2625, "processes": [{"dmas": [4]}, {}],
            "dmas": [{"index": 4, "width": 8, "height": 8}]})");
    start();
    load(ALPHA_SERIAL, path);
    EXPECT_EQ(toldAbout()[3], "status(Detected applet type: DLL)");
    const Lines expected = {
        "0 board-a1b2c3",
        "5 board-a1b2c3-common",
        "6 board-a1b2c3-events",
        "9 board-a1b2c3-group-dmas",
        "11 board-a1b2c3-group-no-dma-dll-processes",
        "10 board-a1b2c3-group-ports",
        "3 board-a1b2c3-process-0",
        "1 board-a1b2c3-process-0-dma-4",
        "3 board-a1b2c3-process-1",
        "7 board-a1b2c3-process-1-nodma-dll-process",
    };
    EXPECT_EQ(resources(), expected);
    unload(ALPHA_SERIAL);
    expectEmptyBoard(ALPHA_SERIAL);
}

TEST_F(LoadApplet, UnloadingTakesTheBoardApartInItsFixedOrder)
{
    const auto applet = installation.addAlphaApplet(
        "several.hap",
        R"("processes": [{"dmas": [0], "ports": [0, 1, 2, 3]}, {}], "dmas": [{"index": 0, "width": 8, "height": 8}])");
    start();
    load(ALPHA_SERIAL, applet);
    Journal::start();
    views->clear();
    views->onLine = [](const std::string& line) { Journal::note("views " + line); };
    unload(ALPHA_SERIAL);
    views->onLine = nullptr;

    Lines steps;
    for (const auto& line : Journal::lines()) {
        const std::string operation = line.substr(0, line.find(' '));
        if (operation == "views" || operation == "Children::clear" ||
            operation == "HlEnvironmentGlobalResourceRootNode::removeChild")
            steps.push_back(line);
        else if (operation.find("::get") == std::string::npos &&
                 operation.find("::root") == std::string::npos &&
                 operation.find("::model") == std::string::npos &&
                 operation.find("Parent::") == std::string::npos &&
                 operation.find("globalResourceModel") == std::string::npos &&
                 operation.find("CommandProcessor") != 0 && operation.find("HarloApplication") != 0)
            steps.push_back(operation);
    }
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
    EXPECT_EQ(steps, expected);
    expectEmptyBoard(ALPHA_SERIAL);
    expectNothingHeldByTheRuntime();
}

TEST_F(LoadApplet, UnloadingLeavesTheOtherBoardAndForeignResourcesAlone)
{
    const auto alpha = installation.addAlphaApplet("single.hap", SINGLE);
    const auto beta = installation.addBetaApplet("single.hap", SINGLE);
    start();
    load(ALPHA_SERIAL, alpha);
    load(BETA_SERIAL, beta);
    const auto root = Gui::environment()->globalResourceModel()->root();
    const auto foreign = core::models::HlEnvironmentGlobalResourceNode::create();
    foreign->setType(core::Environment::ResourceCamera);
    foreign->setResource(board(ALPHA_SERIAL));
    foreign->setKey("a camera");
    root->addChild("a camera", foreign);
    const auto expired = core::models::HlEnvironmentGlobalResourceNode::create();
    expired->setType(core::Environment::ResourceDma);
    expired->setKey("board-gone");
    root->addChild("board-gone", expired);

    unload(ALPHA_SERIAL);
    expectEmptyBoard(ALPHA_SERIAL);
    EXPECT_TRUE(board(BETA_SERIAL)->getLoadedAppletEntry());
    EXPECT_EQ(resources().size(), 10U + 2U);

    views->clear();
    unload(4711);
    EXPECT_EQ(views->lines(), Lines{});
}

TEST_F(LoadApplet, ABoardWithoutAppletIsUnloadedWithoutTouchingTheRuntime)
{
    start();
    const auto freed = installation.calls("Fg_FreeGrabber");
    Journal::start();
    unload(ALPHA_SERIAL);
    EXPECT_EQ(installation.calls("Fg_FreeGrabber"), freed);
    EXPECT_EQ(
        journalOf({"HlEnvironmentBoardNode::beginHandleChange", "HlEnvironmentBoardNode::setBoardHandle",
                   "HlEnvironmentBoardNode::endHandleChange"}),
        (Lines{"HlEnvironmentBoardNode::beginHandleChange serial=a1b2c3",
               "HlEnvironmentBoardNode::endHandleChange serial=a1b2c3"}));
    EXPECT_EQ(views->lines()[views->lines().size() - 2], "applet_unloaded");
}

// Whichever call of the host throws, at whatever place: the board is empty or whole afterwards, and the next
// load succeeds.
TEST_F(LoadApplet, SurvivesEveryHostCallThatThrowsInTheWorkerPhase)
{
    const auto applet = installation.addAlphaApplet("double.hap", DOUBLE);
    start();
    load(ALPHA_SERIAL, applet);
    unload(ALPHA_SERIAL);

    std::size_t struck = 0;
    for (std::size_t n = 1;; ++n) {
        SCOPED_TRACE("host call " + std::to_string(n) + " throws");
        LoadAppletCommand command(ALPHA_SERIAL, applet, "");
        command.executeSync();
        Journal::start();
        Journal::throwAt(n);
        bool thrown = false;
        try {
            command.executeAsync();
        } catch (const reference::ReferenceFault&) {
            thrown = true;
        }
        const bool done = !Journal::faultStruck();
        Journal::stop();
        command.executePostAsync();
        settle();
        if (done) {
            EXPECT_FALSE(thrown);
            break;
        }
        ++struck;
        EXPECT_TRUE(thrown);
        expectEmptyBoard(ALPHA_SERIAL);
        expectNothingHeldByTheRuntime();
        if (HasFailure())
            return; // one place at a time
    }
    EXPECT_GT(struck, 100U);
    EXPECT_TRUE(board(ALPHA_SERIAL)->getLoadedAppletEntry());
}

TEST_F(LoadApplet, SurvivesEveryHostCallThatThrowsWhileUnloading)
{
    const auto applet = installation.addAlphaApplet("double.hap", DOUBLE);
    start();
    std::size_t struck = 0;
    for (bool done = false; !done;) {
        SCOPED_TRACE("host call " + std::to_string(struck + 1) + " throws");
        load(ALPHA_SERIAL, applet);
        ASSERT_TRUE(board(ALPHA_SERIAL)->getLoadedAppletEntry());
        gui::commands::UnloadAppletCommand command(ALPHA_SERIAL);
        Journal::start();
        Journal::throwAt(struck + 1);
        try {
            command.executeSync();
            done = true;
        } catch (const reference::ReferenceFault&) {
            ++struck;
        }
        Journal::stop();
        // What was not done the first time is done the second.
        unload(ALPHA_SERIAL);
        expectEmptyBoard(ALPHA_SERIAL);
        expectNothingHeldByTheRuntime();
        if (HasFailure())
            return;
    }
    EXPECT_GT(struck, 50U);
    EXPECT_EQ(failures, Lines{});
}

TEST_F(LoadApplet, AFrontEndThatThrowsGetsTheSlotBackForTheNextLoad)
{
    const auto applet = installation.addAlphaApplet("single.hap", SINGLE);
    start();
    for (const std::string where : {"onLoadAppletStarted", "applet(single.hap)", "connectFglibEvents",
                                    "onLoadAppletFinished", "update_dma_memory"}) {
        SCOPED_TRACE("thrown in " + where);
        views->onLine = [&where](const std::string& line) {
            if (line == where)
                throw std::runtime_error("front end");
        };
        load(ALPHA_SERIAL, applet);
        views->onLine = nullptr;
        EXPECT_FALSE(failures.empty());
        failures.clear();
        load(ALPHA_SERIAL, applet);
        EXPECT_TRUE(board(ALPHA_SERIAL)->getLoadedAppletEntry());
        EXPECT_EQ(failures, Lines{});
    }
}

TEST_F(LoadApplet, AnMcfStepThatThrowsLeavesTheApplet)
{
    const auto applet = installation.addAlphaApplet("single.hap", SINGLE);
    const auto mcf =
        installation.write("mcf/x.mcf", "[Kamerasektion]\nHapName=single;\n[DMA0]\nFG_WIDTH=96;\n");
    start();
    Journal::start();
    Journal::throwAt(1, "FglibFrameBufferGroup::notifyGeometryMayHaveChangedSlot");
    load(ALPHA_SERIAL, applet, mcf);
    EXPECT_EQ(failures.size(), 1U);
    EXPECT_TRUE(board(ALPHA_SERIAL)->getLoadedAppletEntry());
    EXPECT_TRUE(dma(ALPHA_SERIAL, 0)->getDisplayScene());
}

TEST_F(LoadApplet, EveryChangeOfTheHandleIsOneUpdateOfTheBoard)
{
    const auto good = installation.addAlphaApplet("single.hap", SINGLE);
    const auto bad = installation.addAlphaApplet("bad.hap", R"("type": "XYZ", "processes": [])");
    start();
    for (const auto& applet : {good, bad}) {
        Journal::start();
        load(ALPHA_SERIAL, applet);
        unload(ALPHA_SERIAL);
        int open = 0;
        int changes = 0;
        for (const auto& line : Journal::lines()) {
            if (line.rfind("HlEnvironmentBoardNode::beginHandleChange", 0) == 0)
                ++open;
            else if (line.rfind("HlEnvironmentBoardNode::endHandleChange", 0) == 0)
                --open;
            else if (line.rfind("HlEnvironmentBoardNode::setBoardHandle", 0) == 0) {
                ++changes;
                EXPECT_EQ(open, 1) << line;
            }
        }
        EXPECT_EQ(open, 0);
        EXPECT_EQ(changes, 2);
    }
}

TEST_F(LoadApplet, SurvivesEveryRuntimeCallThatFails)
{
    const auto applet =
        installation.addAlphaApplet("double.hap", description(DOUBLE, R"("nrOfProcessesInFile": false)"));
    start();
    const auto before = installation.calls("*");
    load(ALPHA_SERIAL, applet);
    const auto calls = static_cast<std::uint64_t>(installation.calls("*") - before);
    unload(ALPHA_SERIAL);
    ASSERT_GT(calls, 20U);

    for (std::uint64_t n = 1; n <= calls; ++n) {
        SCOPED_TRACE("runtime call " + std::to_string(n) + " fails");
        installation.failCall("*", n, FG_NO_MEMORY);
        load(ALPHA_SERIAL, applet);
        installation.forgetFaults();
        if (!board(ALPHA_SERIAL)->getLoadedAppletEntry())
            expectEmptyBoard(ALPHA_SERIAL);
        load(ALPHA_SERIAL, applet);
        EXPECT_TRUE(board(ALPHA_SERIAL)->getLoadedAppletEntry());
        unload(ALPHA_SERIAL);
        expectEmptyBoard(ALPHA_SERIAL);
        expectNothingHeldByTheRuntime();
        if (HasFailure())
            return;
    }
}

} // namespace ovra::tests
