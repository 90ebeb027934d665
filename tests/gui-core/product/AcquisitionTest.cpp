#include "Product.h"

#include "gui-core/StartAcquisitionCommand.h"
#include "gui-core/StopAcquisitionCommand.h"

#include "ovra-core/HarloApplication.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"
#include "ovra-lib-genicam-model/GenICamModel.h"
#include "ovra_log/reference/Journal.h"

#include <atomic>
#include <mutex>

using ovra::core::HarloApplication;
using ovra::gui::Gui;
using ovra::gui::commands::StartAcquisitionCommand;
using ovra::gui::commands::StopAcquisitionCommand;
using ovra::reference::Journal;
using Lines = std::vector<std::string>;

namespace ovra::tests {

namespace {

constexpr int ENDLESS = -1;

/// Counts what a scene shows it and keeps the size and the pixels of the newest image.
class CountingVisualizer : public display::DisplaySceneVisualizer
{
public:
    void showImage(const display::Image& image) override
    {
        const std::lock_guard lock(m_mutex);
        m_newest.assign(image.pixels, image.pixels + static_cast<std::ptrdiff_t>(image.width) * image.height);
        width = image.width;
        height = image.height;
        ++images;
    }

    std::vector<std::uint8_t> newest() const
    {
        const std::lock_guard lock(m_mutex);
        return m_newest;
    }

    std::atomic<int> images{0};
    std::atomic<int> width{0};
    std::atomic<int> height{0};

private:
    mutable std::mutex m_mutex;
    std::vector<std::uint8_t> m_newest;
};

/// Two boards. Board 0: process 0 with channels 0 and 1 and port 0, process 1 with channel 2 and port 1.
/// Board 1: process 0 with channel 7 and port 0.
class Acquisition : public Product
{
protected:
    Acquisition()
    {
        alpha = installation.addAlphaApplet("alpha.hap", R"(
            "processes": [{"dmas": [0, 1], "ports": [0]}, {"dmas": [2], "ports": [1]}],
            "dmas": [{"index": 0, "width": 64, "height": 48, "port": 0},
                     {"index": 1, "width": 64, "height": 48, "generator": {"pattern": "ramp", "frameRate": 200, "enabled": true}},
                     {"index": 2, "width": 64, "height": 48, "port": 1}])");
        beta = installation.addBetaApplet("beta.hap", R"("processes": [{"dmas": [7], "ports": [0]}],
            "dmas": [{"index": 7, "width": 64, "height": 48, "port": 0}])");
    }

    ~Acquisition() override { Journal::stop(); }

    void startBoth()
    {
        start();
        load(ALPHA_SERIAL, alpha);
        load(BETA_SERIAL, beta);
        ASSERT_EQ(failures, Lines{});
    }

    void setUncheckedDimensions()
    {
        HarloApplication::setConfigEntry("gui.preferences.sync_dma_and_camera_dimensions", 0);
    }

    void startDma(int serial, unsigned int index)
    {
        run(StartAcquisitionCommand::create(dma(serial, index), ENDLESS));
    }
    void startPort(int serial, unsigned int index)
    {
        run(StartAcquisitionCommand::create(port(serial, index), ENDLESS));
    }
    void stopDma(int serial, unsigned int index) { run(StopAcquisitionCommand::create(dma(serial, index))); }
    void stopPort(int serial, unsigned int index)
    {
        run(StopAcquisitionCommand::create(port(serial, index)));
    }

    boost::shared_ptr<core::models::GenICamModel> camera(int serial, unsigned int index) const
    {
        return port(serial, index)->getMappedPortEntry()->getConnectedCameraEntry()->getGenICamModelEntry();
    }

    /// Time passes: a generator on the other board delivers some images.
    void waitForImagesElsewhere()
    {
        CountingVisualizer elsewhere;
        const auto scene = dma(ALPHA_SERIAL, 1)->getDisplayScene();
        scene->setVisualizer(&elsewhere);
        scene->startGrabbing(ENDLESS);
        pumpUntil([&] { return elsewhere.images >= 20; });
        scene->stopGrabbing();
        scene->setVisualizer(nullptr);
    }

    static Lines startsAndStops()
    {
        return journalOf({"DisplayScene::startGrabbing", "DisplayScene::stopGrabbing",
                          "GenICamModel::restartAcquisition", "GenICamModel::stopAcquisition"});
    }

    std::string alpha;
    std::string beta;
};

const std::string DMA_0 = "DisplayScene::startGrabbing dma=0 images=-1";
const std::string DMA_1 = "DisplayScene::startGrabbing dma=1 images=-1";
const std::string DMA_2 = "DisplayScene::startGrabbing dma=2 images=-1";
const std::string DMA_7 = "DisplayScene::startGrabbing dma=7 images=-1";
const std::string CAMERA_0_0 = "GenICamModel::restartAcquisition board=0 port=0";
const std::string CAMERA_0_1 = "GenICamModel::restartAcquisition board=0 port=1";
const std::string CAMERA_1_0 = "GenICamModel::restartAcquisition board=1 port=0";

/// What a stop does, in terms of the start of the same thing.
std::string stopOf(const std::string& start)
{
    if (start.rfind("GenICamModel", 0) == 0)
        return "GenICamModel::stopAcquisition" + start.substr(start.find(' '));
    return "DisplayScene::stopGrabbing " + start.substr(start.find("dma="), 5);
}

} // namespace

TEST_F(Acquisition, ReachesAsFarAsTheSyncModeSaysAndStopsInTheOppositeOrder)
{
    struct Row
    {
        int line;
        unsigned int mode;
        bool byPort;
        Lines channels;
        Lines cameras;
    };
    const Row rows[] = {
        {__LINE__, 0, false, {DMA_0}, {}},
        {__LINE__, 0, true, {}, {CAMERA_0_0}},
        {__LINE__, 1, false, {DMA_0, DMA_1}, {CAMERA_0_0}},
        {__LINE__, 1, true, {DMA_0, DMA_1}, {CAMERA_0_0}},
        {__LINE__, 2, false, {DMA_0, DMA_1, DMA_2}, {CAMERA_0_0, CAMERA_0_1}},
        {__LINE__, 2, true, {DMA_0, DMA_1, DMA_2}, {CAMERA_0_0, CAMERA_0_1}},
        // Keys are in byte order: the board a1b2c3 comes before beef.
        {__LINE__, 3, false, {DMA_0, DMA_1, DMA_2, DMA_7}, {CAMERA_0_0, CAMERA_0_1, CAMERA_1_0}},
        {__LINE__, 3, true, {DMA_0, DMA_1, DMA_2, DMA_7}, {CAMERA_0_0, CAMERA_0_1, CAMERA_1_0}},
        {__LINE__, 4, false, {}, {}},
        {__LINE__, 4, true, {}, {}},
    };
    startBoth();
    setUncheckedDimensions();
    for (const Row& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        Gui::setSyncMode(static_cast<Gui::SyncMode>(row.mode));
        views->clear();

        Lines expected = row.channels;
        expected.insert(expected.end(), row.cameras.begin(), row.cameras.end());
        Journal::start();
        row.byPort ? startPort(ALPHA_SERIAL, 0) : startDma(ALPHA_SERIAL, 0);
        EXPECT_EQ(startsAndStops(), expected);

        expected.clear();
        for (const auto& lines : {row.cameras, row.channels})
            for (const auto& line : lines)
                expected.push_back(stopOf(line));
        Journal::start();
        row.byPort ? stopPort(ALPHA_SERIAL, 0) : stopDma(ALPHA_SERIAL, 0);
        EXPECT_EQ(startsAndStops(), expected);
        Journal::stop();
        EXPECT_EQ(views->lines(), (Lines{"update_acquisition_state", "update_acquisition_state"}));
    }
    EXPECT_EQ(failures, Lines{});
}

TEST_F(Acquisition, SkipsWhatIsMissing)
{
    startBoth();
    setUncheckedDimensions();
    Gui::setSyncMode(Gui::SyncNone);
    const auto unmapped = core::models::HlEnvironmentLogicalPortNode::create();
    const auto sceneless = core::models::HlEnvironmentDmaNode::create();
    const auto noDma = boost::shared_ptr<core::models::HlEnvironmentDmaNode>();
    views->clear();
    Journal::start();
    run(StartAcquisitionCommand::create(unmapped, 1));
    run(StartAcquisitionCommand::create(sceneless, 1));
    run(StopAcquisitionCommand::create(unmapped));
    run(StopAcquisitionCommand::create(sceneless));
    Gui::setSyncMode(Gui::SyncAllBoards);
    run(StartAcquisitionCommand::create(noDma, 1));
    run(StopAcquisitionCommand::create(noDma));
    EXPECT_EQ(startsAndStops(), Lines{});
    EXPECT_EQ(views->lines(), Lines(6, "update_acquisition_state"));
    EXPECT_EQ(failures, Lines{});
}

TEST_F(Acquisition, AnExpiredResourceIsPassedOver)
{
    startBoth();
    setUncheckedDimensions();
    for (const auto type : {core::Environment::ResourceDma, core::Environment::ResourceLogicalPort}) {
        const auto expired = core::models::HlEnvironmentGlobalResourceNode::create();
        expired->setType(type);
        Gui::environment()->globalResourceModel()->root()->addChild("a" + std::to_string(type), expired);
    }
    Journal::start();
    startDma(ALPHA_SERIAL, 0);
    EXPECT_EQ(startsAndStops(), (Lines{DMA_0, DMA_1, CAMERA_0_0}));
}

TEST_F(Acquisition, AGeneratorKeepsTheCameraOutOfItAndACameraLinkCameraIsStartedButNotStopped)
{
    startBoth();
    setUncheckedDimensions();
    Gui::setSyncMode(Gui::SyncNone);
    Journal::start();
    port(ALPHA_SERIAL, 0)->setGeneratorActive(true);
    startPort(ALPHA_SERIAL, 0);
    stopPort(ALPHA_SERIAL, 0);
    EXPECT_EQ(startsAndStops(), Lines{});
    port(ALPHA_SERIAL, 1)->setClCameraPresent(true);
    startPort(ALPHA_SERIAL, 1);
    stopPort(ALPHA_SERIAL, 1);
    EXPECT_EQ(startsAndStops(), Lines{CAMERA_0_1});
}

TEST_F(Acquisition, ImagesArriveUntilTheStopAndNoneAfterIt)
{
    startBoth();
    CountingVisualizer visualizer;
    dma(BETA_SERIAL, 7)->getDisplayScene()->setVisualizer(&visualizer);
    startDma(BETA_SERIAL, 7);
    pumpUntil([&] { return visualizer.images >= 3; });
    const auto first = visualizer.newest();
    pumpUntil([&] { return visualizer.newest() != first; });
    EXPECT_EQ(visualizer.width, 64);
    EXPECT_EQ(visualizer.height, 48);
    EXPECT_TRUE(camera(BETA_SERIAL, 0)->isAcquiring());

    stopDma(BETA_SERIAL, 7);
    const int atStop = visualizer.images;
    EXPECT_FALSE(camera(BETA_SERIAL, 0)->isAcquiring());
    waitForImagesElsewhere();
    EXPECT_EQ(visualizer.images, atStop);
    dma(BETA_SERIAL, 7)->getDisplayScene()->setVisualizer(nullptr);
}

TEST_F(Acquisition, AChannelWhoseCameraStandsStillGetsNothing)
{
    startBoth();
    Gui::setSyncMode(Gui::SyncNone);
    CountingVisualizer visualizer;
    dma(BETA_SERIAL, 7)->getDisplayScene()->setVisualizer(&visualizer);
    startDma(BETA_SERIAL, 7);
    waitForImagesElsewhere();
    EXPECT_EQ(visualizer.images, 0);
    startPort(BETA_SERIAL, 0);
    pumpUntil([&] { return visualizer.images >= 1; });
    unload(BETA_SERIAL);
    const int atUnload = visualizer.images;
    load(BETA_SERIAL, beta);
    EXPECT_EQ(visualizer.images, atUnload);
}

TEST_F(Acquisition, AsksWhatToDoWhereCameraAndDisplayDiffer)
{
    struct Row
    {
        int line;
        int choice;
        bool remember;
        int cameraWidth, cameraHeight, displayWidth, displayHeight;
        long long remembered, value;
    };
    const Row rows[] = {
        {__LINE__, 2, false, 32, 16, 64, 48, 0, 0},  {__LINE__, 7, false, 32, 16, 64, 48, 0, 0},
        {__LINE__, -1, false, 32, 16, 64, 48, 0, 0}, {__LINE__, 0, false, 32, 16, 32, 16, 0, 0},
        {__LINE__, 1, false, 64, 48, 64, 48, 0, 0},  {__LINE__, 2, true, 32, 16, 64, 48, 1, 2},
        {__LINE__, 1, true, 64, 48, 64, 48, 1, 1},
    };
    startBoth();
    const std::string question =
        "choice(Dimension Mismatch|Board 0: Camera dimension (32 x 16) on camera port 1 differs "
        "from DMA dimension (64 x 48) on DMA port 2.|Apply camera dimension to DMA|Apply DMA "
        "dimension to camera|Ignore|false)";
    for (const Row& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        HarloApplication::setConfigEntry("gui.mainwindow.acquisition.sync.remembered", 0);
        HarloApplication::setConfigEntry("gui.mainwindow.acquisition.sync.remembered.value", 0);
        load(ALPHA_SERIAL, alpha);
        camera(ALPHA_SERIAL, 1)->setWidth(32);
        camera(ALPHA_SERIAL, 1)->setHeight(16);
        views->choice = row.choice;
        views->remember = row.remember;
        views->clear();
        startDma(ALPHA_SERIAL, 2);
        EXPECT_EQ(views->lines(), (Lines{question, "update_acquisition_state"}));
        EXPECT_EQ(camera(ALPHA_SERIAL, 1)->width(), row.cameraWidth);
        EXPECT_EQ(camera(ALPHA_SERIAL, 1)->height(), row.cameraHeight);
        EXPECT_EQ(dma(ALPHA_SERIAL, 2)->getDisplayScene()->width(), row.displayWidth);
        EXPECT_EQ(dma(ALPHA_SERIAL, 2)->getDisplayScene()->height(), row.displayHeight);
        EXPECT_EQ(HarloApplication::getConfigIntEntry("gui.mainwindow.acquisition.sync.remembered", 0),
                  row.remembered);
        EXPECT_EQ(HarloApplication::getConfigIntEntry("gui.mainwindow.acquisition.sync.remembered.value", 0),
                  row.value);
        stopDma(ALPHA_SERIAL, 2);
    }
    EXPECT_EQ(failures, Lines{});
}

TEST_F(Acquisition, DoesNotAskWhereItNeedNot)
{
    startBoth();
    const auto questions = [&](unsigned int channel, const std::function<void()>& prepare) {
        views->clear();
        prepare();
        startDma(ALPHA_SERIAL, channel);
        stopDma(ALPHA_SERIAL, channel);
        const Lines lines = views->lines();
        return std::count_if(lines.begin(), lines.end(),
                             [](const auto& line) { return line.rfind("choice", 0) == 0; });
    };
    const auto set = [](const std::string& key, int value) { HarloApplication::setConfigEntry(key, value); };
    const auto small = camera(ALPHA_SERIAL, 1);

    EXPECT_EQ(questions(2, [] {}), 1);
    EXPECT_EQ(questions(0, [] {}), 0) << "equal sizes";
    EXPECT_EQ(questions(2, [] { Gui::setSyncMode(Gui::SyncNone); }), 0) << "a single channel";
    Gui::setSyncMode(Gui::SyncProcess);
    EXPECT_EQ(questions(2, [&] { set("gui.preferences.sync_dma_and_camera_dimensions", 0); }), 0);
    set("gui.preferences.sync_dma_and_camera_dimensions", 1);
    EXPECT_EQ(questions(2, [&] { small->setWidth(64), small->setHeight(1); }), 0)
        << "a line-scan camera fits";
    EXPECT_EQ(questions(2, [&] { small->setWidth(32); }), 1) << "but its width must be equal";
    EXPECT_EQ(questions(2, [&] { port(ALPHA_SERIAL, 1)->setGeneratorActive(true); }), 0);
    port(ALPHA_SERIAL, 1)->setGeneratorActive(false);
    set("gui.mainwindow.acquisition.sync.remembered", 1);
    EXPECT_EQ(questions(2, [&] { set("gui.mainwindow.acquisition.sync.remembered.value", 7); }), 0);
    EXPECT_EQ(small->width(), 32);
    EXPECT_EQ(questions(2, [&] { set("gui.mainwindow.acquisition.sync.remembered.value", 1); }), 0);
    EXPECT_EQ(small->width(), 64);
    EXPECT_EQ(small->height(), 48);
}

TEST_F(Acquisition, ComparesEveryChannelWithEveryPortOfItsProcess)
{
    alpha = installation.addAlphaApplet("alpha.hap", R"("processes": [{"dmas": [0, 1], "ports": [0, 1]}],
        "dmas": [{"index": 0, "width": 8, "height": 8}, {"index": 1, "width": 9, "height": 9}])");
    startBoth();
    views->clear();
    startDma(ALPHA_SERIAL, 0);
    Lines pairs;
    for (const auto& line : views->lines())
        if (line.rfind("choice", 0) == 0)
            pairs.push_back(line.substr(line.find("camera port "), 13) +
                            line.substr(line.find("DMA port "), 10));
    EXPECT_EQ(pairs, (Lines{"camera port 0DMA port 0", "camera port 1DMA port 0", "camera port 0DMA port 1",
                            "camera port 1DMA port 1"}));
}

} // namespace ovra::tests
