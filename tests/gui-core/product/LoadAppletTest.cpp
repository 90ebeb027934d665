// SPDX-License-Identifier: MIT
#include "ProcessResources.h"
#include "Product.h"

#include "fglib5/Fglib5Types.h"

#include "ovra-lib-fglib-model/FgLibModel.h"
#include "ovra_log/reference/LiveObjects.h"

#include <stdexcept>
#include <tuple>

namespace ovra::tests {

namespace {

using namespace core::models;

class LoadApplet : public Product
{
protected:
    /// One applet of each kind, which makes all calls of that kind.
    Lines oneOfEachKind()
    {
        return {installation.addAlphaApplet("double.hap", DOUBLE + R"(, "nrOfProcessesInFile": false)"),
                installation.addWrappedApplet(), installation.addInstalledLegacyApplet(),
                installation.addAlphaApplet("none.hap", NO_DMA)};
    }

    /// The front end's status lines, warnings and errors.
    Lines toldAbout() const { return told({"status", "warning", "error"}); }
};

std::string nameOf(const boost::weak_ptr<GenericModelNode>& resource)
{
    const auto node = resource.lock();
    if (boost::dynamic_pointer_cast<HlEnvironmentBoardNode>(node))
        return "board";
    if (const auto process = boost::dynamic_pointer_cast<HlEnvironmentProcessNode>(node))
        return "process " + std::to_string(process->getIndex());
    if (const auto dma = boost::dynamic_pointer_cast<HlEnvironmentDmaNode>(node))
        return "dma " + std::to_string(dma->getIndex());
    if (const auto port = boost::dynamic_pointer_cast<HlEnvironmentLogicalPortNode>(node))
        return "port " + std::to_string(port->getIndex());
    return "-";
}

/// A line "type key = resource < parent" for each registration in the journal, in that order. "~" stands for
/// the common prefix of the keys.
std::string registered()
{
    const std::string operation = "HlEnvironmentGlobalResourceRootNode::addChild ";
    const std::string prefix = "board-a1b2c3";
    std::string found;
    for (const auto& line : journalOf({operation})) {
        const std::string key = line.substr(operation.size());
        EXPECT_EQ(key.rfind(prefix, 0), 0U) << key;
        const auto node = Gui::environment()->globalResourceModel()->root()->getChild(key);
        EXPECT_EQ(node->getKey(), key);
        found += std::to_string(node->getType()) + " ~" + key.substr(prefix.size()) + " = " +
                 nameOf(node->getResource()) + " < " + nameOf(node->getParentResource()) + "\n";
    }
    return found;
}

} // namespace

TEST_F(LoadApplet, EachKindTellsItsWholeStoryAndRegistersItsKeysInOrder)
{
    const std::string ofABoard =
        "0 ~ = board < -\n9 ~-group-dmas = board < -\n10 ~-group-ports = board < -\n";
    const std::string commonAndEvents = "5 ~-common = board < -\n6 ~-events = board < -\n";
    const std::string ofADll = ofABoard + "11 ~-group-no-dma-dll-processes = board < -\n" + commonAndEvents;
    const std::string ofAHap = ofABoard + "12 ~-group-no-dma-hap-applet = board < -\n" + commonAndEvents;
    const std::string endOfAHap = "8 ~-nodma-hap-applet = board < -\n";
    const std::string noCounts = R"("nrOfProcessesInFile": false,
        "processes": [{"dmas": [0], "ports": [0], "dmaCountFails": true, "portCountFails": true}],
        "dmas": [{"index": 0, "width": 8, "height": 8}])";
    struct Row
    {
        int line;
        std::string applet;
        std::string type;
        std::vector<std::tuple<int, int, std::string>> channels; ///< index, process, ports
        std::string keys;
    };
    // Where the file says how many processes there are, the runtime is not asked.
    const std::string noProcess = R"("processes": [], "processCountFails": true)";
    std::string manyProcesses = "{}";
    std::string keysOfMany = ofAHap + "3 ~-process-0 = process 0 < -\n";
    for (int i = 1; i < 70; ++i) {
        manyProcesses += ", {}";
        keysOfMany += "3 ~-process-" + std::to_string(i) + " = process " + std::to_string(i) + " < -\n";
    }
    const std::string many = "\"processes\": [" + manyProcesses + "]";
    const Row rows[] = {
        {__LINE__, installation.addAlphaApplet("empty.hap", noProcess), "HAP", {}, ofAHap + endOfAHap},
        {__LINE__, installation.addAlphaApplet("many.hap", many), "HAP", {}, keysOfMany + endOfAHap},
        {__LINE__,
         installation.addAlphaApplet("double.hap", DOUBLE),
         "HAP",
         {{1, 0, "1"}, {2, 1, "0, 2, 10"}, {12, 0, "1"}},
         ofAHap + R"(3 ~-process-0 = process 0 < -
1 ~-process-0-dma-1 = dma 1 < process 0
1 ~-process-0-dma-12 = dma 12 < process 0
4 ~-process-0-port-1 = port 1 < process 0
3 ~-process-1 = process 1 < -
1 ~-process-1-dma-2 = dma 2 < process 1
4 ~-process-1-port-0 = port 0 < process 1
4 ~-process-1-port-2 = port 2 < process 1
4 ~-process-1-port-10 = port 10 < process 1
)" + endOfAHap},
        {__LINE__,
         installation.addAlphaApplet("none.hap", NO_DMA),
         "HAP",
         {},
         ofAHap + "3 ~-process-0 = process 0 < -\n4 ~-process-0-port-0 = port 0 < process 0\n" + endOfAHap},
        // A count whose query fails counts as 0.
        {__LINE__,
         installation.addAlphaApplet("counts.hap", noCounts),
         "HAP",
         {},
         ofAHap + "3 ~-process-0 = process 0 < -\n" + endOfAHap},
        {__LINE__,
         installation.addWrappedApplet(),
         "DLL",
         {{4, 0, "0"}, {5, 0, "0"}},
         ofADll + R"(3 ~-process-0 = process 0 < -
1 ~-process-0-dma-4 = dma 4 < process 0
1 ~-process-0-dma-5 = dma 5 < process 0
4 ~-process-0-port-0 = port 0 < process 0
3 ~-process-1 = process 1 < -
7 ~-process-1-nodma-dll-process = process 1 < process 1
4 ~-process-1-port-1 = port 1 < process 1
)"},
        {__LINE__,
         installation.addLegacyApplet("legacy-base"),
         "Legacy DLL",
         {{0, 0, "0"}},
         ofADll + R"(3 ~-process-0 = process 0 < -
1 ~-process-0-dma-0 = dma 0 < process 0
4 ~-process-0-port-0 = port 0 < process 0
)"},
        {__LINE__, installation.addLegacyApplet("legacy-none"), "Legacy DLL", {}, ofADll},
        {__LINE__, installation.addLegacyApplet("legacy-negative"), "Legacy DLL", {}, ofADll},
    };
    start();
    for (const Row& row : rows) {
        const std::string file = std::filesystem::path(row.applet).filename().string();
        SCOPED_TRACE("row of line " + std::to_string(row.line) + ": " + file);
        views->clear();
        Journal::start();
        load(ALPHA_SERIAL, row.applet);
        Journal::stop();
        // The worker subscribes at a varying time; everything else is in the order of the GUI thread's queue.
        Lines lines = views->lines();
        EXPECT_EQ(std::erase(lines, "connectFglibEvents"), 1U);
        Lines expected = {"onLoadAppletStarted",
                          "board(0 - ovra-quad-cl)",
                          "applet(" + file + ")",
                          "applet_unloaded",
                          "update_dma_memory",
                          "status(Loading applet '" + file + "' on board 0 ...)",
                          "status(Loading succeeded.)",
                          "status(Reading applet structure ...)",
                          "status(Detected applet type: " + row.type + ")"};
        for (const auto& [dma, process, ports] : row.channels) {
            const bool several = ports.find(',') != std::string::npos;
            expected.push_back("status(Detected DMA " + std::to_string(dma) + ")");
            expected.push_back("status(   ......... Process: " + std::to_string(process) + ")");
            expected.push_back((several ? "status(   ... Logical Ports: " : "status(   .... Logical Port: ") +
                               ports + ")");
        }
        for (const char* line :
             {"onLoadAppletFinished", "ensure_board_selection(10597059)", "update_dma_memory",
              "setRescanInProgress(true)", "setRescanInProgress(false)"})
            expected.emplace_back(line);
        EXPECT_EQ(lines, expected);
        EXPECT_EQ(registered(), row.keys);
        EXPECT_FALSE(isOpenLibrary(row.applet));
        unload(ALPHA_SERIAL);
        expectNothingLeftOf(ALPHA_SERIAL);
    }
    EXPECT_EQ(installation.calls("Fg_loadConfig"), 0) << "without an MCF file none is tried";
    EXPECT_EQ(failures, Lines{});
}

TEST_F(LoadApplet, PublishesTheStructureWithItsLinks)
{
    const auto applet = installation.addAlphaApplet("double.hap", DOUBLE);
    const auto wrapped = installation.addWrappedApplet();
    const auto legacy = installation.addInstalledLegacyApplet();
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
    EXPECT_EQ(channel->getFrontendRegInfoPointer(), node->getNoDmaFrontendRegInfoPointer());
    EXPECT_EQ(channel->getDisplayScene()->width(), 64);
    EXPECT_EQ(channel->getProcesses()->current()->getIndex(), 1U);

    const auto logical = port(ALPHA_SERIAL, 1);
    ASSERT_TRUE(logical);
    EXPECT_EQ(logical->getBoardSerial(), 0xa1b2c3U);
    EXPECT_TRUE(logical->getGeneratorAvailable());
    const auto physical = logical->getMappedPortEntry();
    ASSERT_TRUE(physical);
    EXPECT_EQ(physical->getMappedLogicalPortEntry(), logical);
    EXPECT_TRUE(physical->getConnectedCameraEntry());
    EXPECT_FALSE(port(ALPHA_SERIAL, 10)->getMappedPortEntry());

    // A DLL has parameters per channel.
    for (const auto& [dll, first, second] : {std::tuple(wrapped, 4U, 5U), std::tuple(legacy, 0U, 1U)}) {
        load(ALPHA_SERIAL, dll);
        ASSERT_TRUE(dma(ALPHA_SERIAL, first)->getFrontendRegInfoModel()) << dll;
        EXPECT_NE(dma(ALPHA_SERIAL, first)->getFrontendRegInfoModel(),
                  dma(ALPHA_SERIAL, second)->getFrontendRegInfoModel());
        EXPECT_FALSE(node->getNoDmaFrontendRegInfoModel());
        EXPECT_EQ(node->getNoDmaFrontendRegInfoPointer(), nullptr);
    }
    // Channel 1 and port 1 are linked to process 1, but report process 0.
    EXPECT_EQ(dma(ALPHA_SERIAL, 1)->getProcess(), 0U);
    EXPECT_EQ(port(ALPHA_SERIAL, 1)->getProcess(), 0U);
    EXPECT_EQ(dma(ALPHA_SERIAL, 1)->getProcesses()->current()->getIndex(), 1U);
    EXPECT_EQ(dma(ALPHA_SERIAL, 1)->getSortKey(), "board-0000-process-0001-dma-0001");
}

TEST_F(LoadApplet, PortsBearTheWidestInterfaceThatTheAppletNames)
{
    struct Row
    {
        int line;
        std::string applet;
        const char* type;
        bool generator = false;
    };
    const auto tagged = [this](const std::string& name, const std::string& tags) {
        return installation.addAlphaApplet(name, NO_DMA + ", \"tags\": [" + tags + "]");
    };
    const Row rows[] = {
        {__LINE__, tagged("base.hap", R"("interface=cl-base")"), "CL-BASE"},
        {__LINE__, tagged("medium.hap", R"("interface=cl-base", "interface=cl-medium")"), "CL-MEDIUM"},
        {__LINE__, tagged("full.hap", R"("interface=cl-medium", "interface=cl-full")"), "CL-FULL"},
        {__LINE__, tagged("other.hap", R"("interface=CL-FULL", "cl-base", "interface=cl-fuller")"), ""},
        {__LINE__, installation.addAlphaApplet("none.hap", NO_DMA), ""},
        {__LINE__, installation.addWrappedApplet(), ""},
        {__LINE__, installation.addLegacyApplet("legacy-base"), "CL-BASE", true},
        {__LINE__, installation.addInstalledLegacyApplet(), "CL-MEDIUM", true},
        {__LINE__, installation.addLegacyApplet("legacy-both"), "CL-FULL", true},
    };
    start();
    for (const Row& row : rows) {
        load(ALPHA_SERIAL, row.applet);
        ASSERT_TRUE(port(ALPHA_SERIAL, 0)) << "row of line " << row.line;
        EXPECT_EQ(port(ALPHA_SERIAL, 0)->getPortType(), row.type) << "row of line " << row.line;
        EXPECT_EQ(port(ALPHA_SERIAL, 0)->getGeneratorAvailable(), row.generator) << row.line;
    }
}

TEST_F(LoadApplet, UnknownBoardAndUnknownFileAreToldBeforeAnythingIsUnloaded)
{
    const auto applet = installation.addAlphaApplet("single.hap", SINGLE);
    start();
    load(ALPHA_SERIAL, applet);
    views->clear();
    load(static_cast<int>(0x80000000U | ALPHA_SERIAL), applet);
    load(ALPHA_SERIAL, "nowhere.hap");
    const Lines expected = {
        "onLoadAppletStarted",        "error(Invalid board serial: 2158080707)",
        "onLoadAppletFinished",       "ensure_board_selection(2158080707)",
        "update_dma_memory",          "setRescanInProgress(true)",
        "setRescanInProgress(false)", "onLoadAppletStarted",
        "board(0 - ovra-quad-cl)",    "error(Invalid applet file: nowhere.hap)",
        "onLoadAppletFinished",       "ensure_board_selection(10597059)",
        "update_dma_memory",          "setRescanInProgress(true)",
        "setRescanInProgress(false)",
    };
    EXPECT_EQ(views->lines(), expected);
    EXPECT_TRUE(isLoaded(ALPHA_SERIAL));
}

TEST_F(LoadApplet, ASecondLoadBeforeTheFrontEndHasHeardOfTheFirstsEndDoesNothingInAnyPhase)
{
    const auto single = installation.addAlphaApplet("single.hap", SINGLE);
    const auto beta = installation.addBetaApplet("beta.hap", SINGLE);
    start();
    const auto runAtOnce = [](LoadAppletCommand& command) {
        command.executeSync();
        command.executeAsync();
        command.executePostAsync();
    };
    // It has been accepted before; what holds is the last time.
    LoadAppletCommand second(BETA_SERIAL, beta, "");
    runAtOnce(second);
    unload(BETA_SERIAL);
    const auto refused = [&] {
        const Lines before = views->lines();
        Journal::start();
        runAtOnce(second);
        Journal::stop();
        EXPECT_EQ(Journal::lines(), Lines{});
        EXPECT_EQ(views->lines(), before);
    };
    // Copies share one request, so each phase may run on another copy.
    LoadAppletCommand first(ALPHA_SERIAL, single, "");
    LoadAppletCommand copy(first);
    first.executeSync();
    refused();
    copy.executeAsync();
    refused();
    LoadAppletCommand assigned(BETA_SERIAL, "other", "");
    assigned = copy;
    int stillTaken = 0;
    views->onLine = [&](const std::string& line) {
        if (line.starts_with("setRescan"))
            return;
        ++stillTaken;
        refused();
    };
    assigned.executePostAsync();
    views->onLine = nullptr;
    EXPECT_EQ(stillTaken, 3);
    settle();
    EXPECT_TRUE(isLoaded(ALPHA_SERIAL));
    expectEmptyBoard(BETA_SERIAL);
    runAtOnce(second);
    EXPECT_TRUE(isLoaded(BETA_SERIAL));
    const boost::weak_ptr<HlEnvironmentFileNode> file = board(BETA_SERIAL)->getLoadedAppletEntry();
    unload(BETA_SERIAL);

    // What an earlier run found counts no more, and is not kept.
    for (const auto& applet : {single, beta})
        std::filesystem::remove(applet);
    run(RescanAppletsCommand::create());
    EXPECT_TRUE(file.expired());
    runAtOnce(first);
    EXPECT_EQ(told({"error"}), Lines{"error(Invalid applet file: " + single + ")"});
    EXPECT_TRUE(isLoaded(ALPHA_SERIAL));
}

TEST_F(LoadApplet, IsTakenBackIfADisplayCannotTakeUpTheGeometryOfItsMcf)
{
    const auto applet = installation.addAlphaApplet("single.hap", SINGLE);
    const auto mcf = installation.write("same.mcf", "[Kamerasektion]\nHapName=single;\n");
    start();
    Journal::start();
    Journal::throwAt(1, "FglibFrameBufferGroup::notifyGeometryMayHaveChangedSlot ");
    load(ALPHA_SERIAL, applet, mcf);
    EXPECT_EQ(failures.size(), 1U);
    expectEmptyBoard(ALPHA_SERIAL);
}

TEST_F(LoadApplet, EveryFailureIsToldInItsWordsAndLeavesTheBoardEmptyForTheNextLoad)
{
    constexpr const char* THREE_DMAS = R"("processes": [{"dmas": [0]}, {"dmas": [1, 2], "dmaPortFails": 1}],
        "dmas": [{"index": 0, "width": 8, "height": 8}, {"index": 1, "width": 8, "height": 8},
                 {"index": 2, "width": 8, "height": 8}])";
    const auto hap = [this](const std::string& file, const std::string& body) {
        return installation.addAlphaApplet(file, body);
    };
    const std::string asked = hap("asked.hap", SINGLE + R"(, "nrOfProcessesInFile": false)");
    const std::string noCount = SINGLE + R"(, "nrOfProcessesInFile": false, "processCountFails": true)";
    const std::string noCamPort = R"("processes": [{"ports": [0], "camPortFails": 0}])";
    const std::string negativePort = R"("processes": [{"ports": [0, -3]}])";
    const std::string init = "Error in Fg_Init(...): ";
    const std::string parameter = "Error in Fg_getParameter(";
    struct Row
    {
        std::string applet;
        std::string told; ///< the expected error
        Lines entries;    ///< entries of the runtime that fail with the code
        int code = FG_INIT_ERROR;
    };
    const Row rows[] = {
        {asked, init + "-1 (Planned failure of Fg_Init)", {"Fg_Init"}},
        {asked, init + "-1 (Unknown Error Code)", {"Fg_Init", "Fg_getLastErrorDescription"}},
        {asked, parameter + "FG_NR_OF_PROCESSES): -98 (Unknown Error Code)", {"Fg_getParameter"}, -98},
        {hap("no-count.hap", noCount), parameter + "FG_NR_OF_PROCESSES): -8 (Unknown parameter)", {}},
        {hap("no-dma-port.hap", THREE_DMAS), parameter + "FG_DMA_PORT): -8 (Unknown parameter)", {}},
        {hap("no-cam-port.hap", noCamPort), parameter + "FG_CAM_PORT): -8 (Unknown parameter)", {}},
        {hap("negative-port.hap", negativePort), parameter + "FG_CAM_PORT): 0 (No error)", {}},
        {hap("odd.hap", SINGLE + R"(, "type": "XYZ")"), "Detected applet type: Unknown", {}},
        {hap("lower.hap", SINGLE + R"(, "type": "hap")"), "Detected applet type: Unknown", {}},
        {installation.addAlphaLibrary("text", "no library"), "Opening applet DLL failed!", {}},
        {installation.addLegacyApplet("legacy-silent"), "Resolving info function of applet DLL failed!", {}},
    };
    const auto good = hap("good.hap", DOUBLE);
    start();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.applet + ": " + row.told);
        views->clear();
        for (const auto& entry : row.entries)
            installation.failCall(entry, 1, row.code);
        load(ALPHA_SERIAL, row.applet);
        EXPECT_EQ(told({"error"}), Lines{"error(" + row.told + ")"});
        EXPECT_EQ(toldAbout().back(), "error(" + row.told + ")");
        EXPECT_FALSE(isOpenLibrary(row.applet));
        expectNothingLeftOf(ALPHA_SERIAL);
        load(ALPHA_SERIAL, good);
        EXPECT_TRUE(isLoaded(ALPHA_SERIAL));
        unload(ALPHA_SERIAL);
    }
    EXPECT_EQ(failures, Lines{});
}

TEST_F(LoadApplet, WithoutRegisterInformationItWarnsAndGoesOnWithoutTheModel)
{
    const std::pair<std::string, unsigned int> firstChannels[] = {
        {installation.addAlphaApplet("single.hap", SINGLE), 0}, {installation.addWrappedApplet(), 4}};
    start();
    for (const auto& [applet, index] : firstChannels) {
        const std::string number = std::to_string(index);
        installation.failCall("Fg_getParameterInfo", 1, FG_INVALID_DMA);
        load(ALPHA_SERIAL, applet);
        EXPECT_EQ(toldAbout().back(), "warning(Error in Fg_getParameterInfo(" + number + "): NULL)");
        EXPECT_FALSE(dma(ALPHA_SERIAL, index)->getFrontendRegInfoModel());
        Journal::start();
        unload(ALPHA_SERIAL);
        Journal::stop();
        expectNothingLeftOf(ALPHA_SERIAL);
        // The scene of that channel is detached, too.
        EXPECT_EQ(journalOf({"FgLibModel::removeFrameBufferGroup"}).size(), index == 0 ? 0U : 1U);
        EXPECT_EQ(journalOf({"DisplayScene::stopGrabbing dma=" + number}).size(), 1U);
        EXPECT_EQ(journalOf({"FglibFrameBufferGroup::releaseBuffers dma=" + number}).size(), 1U);
    }
}

// For each host call of the worker phase: if it throws, the exception propagates unchanged, the board is
// empty, and the next load succeeds. The same holds for each call of the runtime that fails.
TEST_F(LoadApplet, OfEachKindSurvivesEveryHostCallThatThrowsAndEveryRuntimeCallThatFails)
{
    const auto kinds = oneOfEachKind();
    start();
    for (const auto& applet : kinds) {
        load(ALPHA_SERIAL, applet);
        unload(ALPHA_SERIAL);
        const auto before = reference::allLiveObjects();
        boost::shared_ptr<LoadAppletCommand> command;
        const auto claim = [&] {
            command = LoadAppletCommand::create(ALPHA_SERIAL, applet, "");
            command->executeSync();
        };
        const auto work = [&] { command->executeAsync(); };
        const auto end = [&](bool thrown) {
            command->executePostAsync();
            settle();
            if (thrown)
                expectNothingLeftOf(ALPHA_SERIAL);
            EXPECT_FALSE(isOpenLibrary(applet));
        };
        EXPECT_GT(sweep(claim, work, end), 60U);
        EXPECT_TRUE(isLoaded(ALPHA_SERIAL));
        unload(ALPHA_SERIAL);
        EXPECT_EQ(reference::allLiveObjects(), before);

        std::uint64_t n = 0;
        for (bool struck = true; struck && !HasFailure();) {
            SCOPED_TRACE(applet + ": runtime call " + std::to_string(++n) + " fails");
            const auto calls = installation.calls("*");
            installation.failCall("*", n, FG_NO_MEMORY);
            load(ALPHA_SERIAL, applet);
            struck = installation.calls("*") - calls >= static_cast<std::int64_t>(n);
            installation.forgetFaults();
            if (!isLoaded(ALPHA_SERIAL))
                expectNothingLeftOf(ALPHA_SERIAL);
            load(ALPHA_SERIAL, applet);
            EXPECT_TRUE(isLoaded(ALPHA_SERIAL));
            unload(ALPHA_SERIAL);
            expectNothingLeftOf(ALPHA_SERIAL);
        }
        EXPECT_GT(n, 10U);
        EXPECT_EQ(reference::allLiveObjects(), before);
    }
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
        ASSERT_FALSE(failures.empty());
        EXPECT_NE(failures.front().find(": front end"), std::string::npos) << failures.front();
        failures.clear();
        load(ALPHA_SERIAL, applet);
        EXPECT_TRUE(isLoaded(ALPHA_SERIAL));
        EXPECT_EQ(failures, Lines{});
    }
}

} // namespace ovra::tests
