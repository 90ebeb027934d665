// SPDX-License-Identifier: MIT
#include "Product.h"

#include "ovra-lib-genicam-model/GenICamModel.h"

#include <mutex>

namespace ovra::tests {

namespace {

/// Answers to the question about sizes.
constexpr int CAMERA_TO_DMA = 0;
constexpr int DMA_TO_CAMERA = 1;
constexpr int IGNORE = 2;

/// More images than any test waits for.
constexpr int MANY = 5000;

constexpr const char* REMEMBERED = "gui.mainwindow.acquisition.sync.remembered";
constexpr const char* REMEMBERED_VALUE = "gui.mainwindow.acquisition.sync.remembered.value";

struct Picture
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;

    bool operator==(const Picture&) const = default;
};

/// Counts the images that a scene shows it and keeps the newest.
class PictureTaker : public display::DisplaySceneVisualizer
{
public:
    void showImage(const display::Image& image) override
    {
        const std::lock_guard lock(m_mutex);
        const auto bytes = static_cast<std::ptrdiff_t>(image.width) * image.height;
        m_newest = {image.width, image.height, {image.pixels, image.pixels + bytes}};
        ++images;
    }

    Picture newest() const
    {
        const std::lock_guard lock(m_mutex);
        return m_newest;
    }

    std::atomic<int> images{0};

private:
    mutable std::mutex m_mutex;
    Picture m_newest;
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

    void startDma(int serial, unsigned int i) { run(StartAcquisitionCommand::create(dma(serial, i), MANY)); }
    void startPort(int serial, unsigned int i)
    {
        run(StartAcquisitionCommand::create(port(serial, i), MANY));
    }
    void stopDma(int serial, unsigned int i) { run(StopAcquisitionCommand::create(dma(serial, i))); }
    void stopPort(int serial, unsigned int i) { run(StopAcquisitionCommand::create(port(serial, i))); }

    boost::shared_ptr<core::models::GenICamModel> camera(int serial, unsigned int index) const
    {
        return port(serial, index)->getMappedPortEntry()->getConnectedCameraEntry()->getGenICamModelEntry();
    }

    /// Lets time pass until a generator on the other board has delivered some images.
    void waitForImagesElsewhere()
    {
        ImageCounter elsewhere;
        const auto scene = dma(ALPHA_SERIAL, 1)->getDisplayScene();
        scene->setVisualizer(&elsewhere);
        scene->startGrabbing(ENDLESS);
        pumpUntil([&] { return elsewhere.images >= 20; });
        scene->stopGrabbing();
        scene->setVisualizer(nullptr);
    }

    /// The messages of the questions so far.
    Lines questions() const
    {
        Lines pairs = told({"choice"});
        for (auto& line : pairs)
            line =
                line.substr(line.find("camera port "), 13) + ", " + line.substr(line.find("DMA port "), 10);
        return pairs;
    }

    /// Starts a channel of the first board with an answer for its mismatch, and stops it after one image.
    Picture firstPicture(unsigned int channel, int choice)
    {
        views->choice = choice;
        PictureTaker shown;
        const auto scene = dma(ALPHA_SERIAL, channel)->getDisplayScene();
        scene->setVisualizer(&shown);
        run(StartAcquisitionCommand::create(dma(ALPHA_SERIAL, channel), 1));
        pumpUntil([&] { return shown.images == 1; });
        stopDma(ALPHA_SERIAL, channel);
        scene->setVisualizer(nullptr);
        return shown.newest();
    }

    static Lines startsAndStops()
    {
        return journalOf({"DisplayScene::startGrabbing", "DisplayScene::stopGrabbing",
                          "GenICamModel::restartAcquisition", "GenICamModel::stopAcquisition"});
    }

    std::string alpha;
    std::string beta;
};

const std::string DMA_0 = "DisplayScene::startGrabbing dma=0 images=5000";
const std::string DMA_1 = "DisplayScene::startGrabbing dma=1 images=5000";
const std::string DMA_2 = "DisplayScene::startGrabbing dma=2 images=5000";
const std::string DMA_7 = "DisplayScene::startGrabbing dma=7 images=5000";
const std::string CAMERA_0_0 = "GenICamModel::restartAcquisition board=0 port=0";
const std::string CAMERA_0_1 = "GenICamModel::restartAcquisition board=0 port=1";
const std::string CAMERA_1_0 = "GenICamModel::restartAcquisition board=1 port=0";

/// The journal line of the stop that belongs to a start.
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
        int serial = ALPHA_SERIAL;
        unsigned int channel = 0;
    };
    const Row rows[] = {
        {__LINE__, 0, false, {DMA_0}, {}},
        {__LINE__, 0, true, {}, {CAMERA_0_0}},
        {__LINE__, 1, false, {DMA_0, DMA_1}, {CAMERA_0_0}},
        {__LINE__, 1, true, {DMA_0, DMA_1}, {CAMERA_0_0}},
        {__LINE__, 2, false, {DMA_0, DMA_1, DMA_2}, {CAMERA_0_0, CAMERA_0_1}},
        {__LINE__, 2, true, {DMA_0, DMA_1, DMA_2}, {CAMERA_0_0, CAMERA_0_1}},
        {__LINE__, 1, false, {DMA_2}, {CAMERA_0_1}, ALPHA_SERIAL, 2},
        {__LINE__, 1, true, {DMA_7}, {CAMERA_1_0}, BETA_SERIAL},
        {__LINE__, 2, false, {DMA_7}, {CAMERA_1_0}, BETA_SERIAL, 7},
        // Keys are in byte order: the board a1b2c3 comes before beef.
        {__LINE__, 3, false, {DMA_0, DMA_1, DMA_2, DMA_7}, {CAMERA_0_0, CAMERA_0_1, CAMERA_1_0}},
        {__LINE__, 3, true, {DMA_0, DMA_1, DMA_2, DMA_7}, {CAMERA_0_0, CAMERA_0_1, CAMERA_1_0}},
        {__LINE__, 4, false, {}, {}},
        {__LINE__, 4, true, {}, {}},
        {__LINE__, 0xFFFFFFFF, false, {}, {}},
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
        row.byPort ? startPort(row.serial, 0) : startDma(row.serial, row.channel);
        EXPECT_EQ(startsAndStops(), expected);

        expected.clear();
        for (const auto& lines : {row.cameras, row.channels})
            for (const auto& line : lines)
                expected.push_back(stopOf(line));
        Journal::start();
        row.byPort ? stopPort(row.serial, 0) : stopDma(row.serial, row.channel);
        EXPECT_EQ(startsAndStops(), expected);
        Journal::stop();
        EXPECT_EQ(views->lines(), (Lines{"update_acquisition_state", "update_acquisition_state"}));
    }
    EXPECT_EQ(failures, Lines{});
}

TEST_F(Acquisition, PassesOverWhatIsMissingExpiredOrIncompleteAndGoesOn)
{
    startBoth();
    const auto startAndStop = [this](const auto& target, Gui::SyncMode mode) {
        Gui::setSyncMode(mode);
        run(StartAcquisitionCommand::create(target, 1));
        run(StopAcquisitionCommand::create(target));
    };
    views->clear();
    Journal::start();
    startAndStop(core::models::HlEnvironmentLogicalPortNode::create(), Gui::SyncNone);
    const auto withoutCamera = core::models::HlEnvironmentLogicalPortNode::create();
    withoutCamera->setMappedPortEntry(core::models::HlEnvironmentPortNode::create(2));
    startAndStop(withoutCamera, Gui::SyncNone);
    startAndStop(core::models::HlEnvironmentDmaNode::create(), Gui::SyncNone);
    startAndStop(boost::shared_ptr<core::models::HlEnvironmentDmaNode>(), Gui::SyncAllBoards);
    EXPECT_EQ(startsAndStops(), Lines{});
    EXPECT_EQ(views->lines(), Lines(8, "update_acquisition_state"));

    Gui::setSyncMode(Gui::SyncBoard);
    for (const auto type : {core::Environment::ResourceDma, core::Environment::ResourceLogicalPort}) {
        const auto expired = core::models::HlEnvironmentGlobalResourceNode::create();
        expired->setType(type);
        Gui::environment()->globalResourceModel()->root()->addChild("a" + std::to_string(type), expired);
    }
    dma(ALPHA_SERIAL, 0)->setDisplayScene({});
    port(ALPHA_SERIAL, 0)->setMappedPortEntry({});
    dma(ALPHA_SERIAL, 2)->setFrameBufferGroup({});
    views->choice = CAMERA_TO_DMA; // this answer needs the missing group
    views->clear();
    Journal::start();
    startDma(ALPHA_SERIAL, 0);
    EXPECT_EQ(startsAndStops(), (Lines{DMA_1, DMA_2, CAMERA_0_1}));
    EXPECT_EQ(questions(), (Lines{"camera port 1, DMA port 2"}));
    Journal::start();
    stopDma(ALPHA_SERIAL, 0);
    EXPECT_EQ(startsAndStops(), (Lines{stopOf(CAMERA_0_1), stopOf(DMA_1), stopOf(DMA_2)}));

    dma(ALPHA_SERIAL, 2)->setDisplayScene({});
    views->clear();
    startDma(ALPHA_SERIAL, 0);
    EXPECT_EQ(questions(), Lines{});
    EXPECT_EQ(failures, Lines{});
}

TEST_F(Acquisition, AGeneratorKeepsTheCameraOutOfItAndACameraLinkCameraIsStartedButNotStopped)
{
    struct Row
    {
        Gui::SyncMode mode;
        unsigned int port;
        Lines started;
        Lines stopped;
    };
    const Row rows[] = {
        {Gui::SyncNone, 0, {}, {}},
        {Gui::SyncNone, 1, {CAMERA_0_1}, {}},
        {Gui::SyncAllBoards,
         1,
         {DMA_0, DMA_1, DMA_2, DMA_7, CAMERA_0_1, CAMERA_1_0},
         {stopOf(CAMERA_1_0), stopOf(DMA_0), stopOf(DMA_1), stopOf(DMA_2), stopOf(DMA_7)}},
    };
    startBoth();
    setUncheckedDimensions();
    port(ALPHA_SERIAL, 0)->setGeneratorActive(true);
    port(ALPHA_SERIAL, 1)->setClCameraPresent(true);
    for (const Row& row : rows) {
        SCOPED_TRACE("mode " + std::to_string(row.mode) + ", port " + std::to_string(row.port));
        Gui::setSyncMode(row.mode);
        Journal::start();
        startPort(ALPHA_SERIAL, row.port);
        EXPECT_EQ(startsAndStops(), row.started);
        Journal::start();
        stopPort(ALPHA_SERIAL, row.port);
        EXPECT_EQ(startsAndStops(), row.stopped);
    }
}

TEST_F(Acquisition, AStepThatThrowsEndsAStartOrAStopAndAnotherStopDoesTheRest)
{
    const Lines starts = {DMA_0, DMA_1, DMA_2, CAMERA_0_0, CAMERA_0_1};
    const Lines stops = {stopOf(CAMERA_0_0), stopOf(CAMERA_0_1), stopOf(DMA_0), stopOf(DMA_1), stopOf(DMA_2)};
    startBoth();
    setUncheckedDimensions();
    Gui::setSyncMode(Gui::SyncBoard);
    for (const Lines* steps : {&starts, &stops})
        for (auto step = steps->begin(); step != steps->end(); ++step) {
            SCOPED_TRACE(*step + " throws");
            if (steps == &stops)
                startDma(ALPHA_SERIAL, 0);
            views->clear();
            failures.clear();
            Journal::start();
            Journal::throwAt(1, *step);
            steps == &starts ? startDma(ALPHA_SERIAL, 0) : stopDma(ALPHA_SERIAL, 0);
            EXPECT_EQ(startsAndStops(), Lines(steps->begin(), step + 1));
            EXPECT_EQ(failures.size(), 1U);
            EXPECT_EQ(views->lines(), Lines{"update_acquisition_state"});
            stopDma(ALPHA_SERIAL, 0);
            EXPECT_EQ(installation.live(FGSIM_ACQUIRING_CHANNELS), 0);
            EXPECT_FALSE(camera(ALPHA_SERIAL, 0)->isAcquiring() || camera(ALPHA_SERIAL, 1)->isAcquiring());
        }
}

TEST_F(Acquisition, ImagesArriveWhileTheCameraSendsAndNoneAfterTheStop)
{
    startBoth();
    PictureTaker shown;
    dma(BETA_SERIAL, 7)->getDisplayScene()->setVisualizer(&shown);
    Gui::setSyncMode(Gui::SyncNone);
    startDma(BETA_SERIAL, 7);
    waitForImagesElsewhere();
    EXPECT_EQ(shown.images, 0) << "the camera stands still";
    startPort(BETA_SERIAL, 0);
    pumpUntil([&] { return shown.images >= 3; });
    const auto first = shown.newest();
    pumpUntil([&] { return shown.newest() != first; });
    EXPECT_EQ(first.width, 64);
    EXPECT_EQ(first.height, 48);
    EXPECT_TRUE(camera(BETA_SERIAL, 0)->isAcquiring());

    Gui::setSyncMode(Gui::SyncProcess);
    stopDma(BETA_SERIAL, 7);
    const int atStop = shown.images;
    EXPECT_FALSE(camera(BETA_SERIAL, 0)->isAcquiring());
    waitForImagesElsewhere();
    EXPECT_EQ(shown.images, atStop);
    dma(BETA_SERIAL, 7)->getDisplayScene()->setVisualizer(nullptr);
}

TEST_F(Acquisition, AMismatchShowsInThePictureUntilOneSideTakesTheOthersSize)
{
    startBoth();
    const auto camera = this->camera(ALPHA_SERIAL, 1);
    const auto resizeCamera = [&](int width, int height) {
        camera->setWidth(width);
        camera->setHeight(height);
    };
    // The channel cuts the stream of the camera's lines into lines of its own width.
    const auto cutInto = [](Picture picture, int width, int height) {
        picture.width = width;
        picture.height = height;
        picture.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
        return picture;
    };
    const Picture mismatch = firstPicture(2, IGNORE);
    const Picture small = firstPicture(2, CAMERA_TO_DMA);
    EXPECT_EQ(mismatch, cutInto(small, 64, 48));
    EXPECT_EQ(small, cutInto(small, 32, 16));
    EXPECT_GT(std::count_if(small.pixels.begin(), small.pixels.end(), [](auto grey) { return grey > 0; }),
              100);

    resizeCamera(64, 48);
    const Picture cut = firstPicture(2, IGNORE);
    EXPECT_EQ(firstPicture(2, DMA_TO_CAMERA), small);
    resizeCamera(64, 48);
    const Picture large = firstPicture(2, CAMERA_TO_DMA);
    EXPECT_EQ(large, cutInto(large, 64, 48));
    EXPECT_EQ(cut, cutInto(large, 32, 16));
    EXPECT_EQ(failures, Lines{});
}

TEST_F(Acquisition, AsksWhatToDoWhereCameraAndDisplayDiffer)
{
    const Lines none;
    const Lines toCamera = {"GenICamModel::setWidth board=0 port=1 width=64",
                            "GenICamModel::setHeight board=0 port=1 height=48"};
    const auto toDma = [](int height) {
        return Lines{
            "FglibFrameBufferGroup::setWidth dma=2 width=32",
            "FglibFrameBufferGroup::setHeight dma=2 height=" + std::to_string(height),
            "FglibFrameBufferGroup::notifyGeometryMayHaveChangedSlot dma=2 width=0 height=0 begin=true",
            "FglibFrameBufferGroup::notifyGeometryMayHaveChangedSlot dma=2 width=0 height=0 begin=false"};
    };
    struct Row
    {
        int line;
        int cameraHeight;
        int choice;
        bool remember;
        Lines changes;
        int displayWidth, displayHeight;
        long long remembered, value;
    };
    const Row rows[] = {
        {__LINE__, 16, IGNORE, false, none, 64, 48, 0, 0},
        {__LINE__, 16, 7, false, none, 64, 48, 0, 0},
        {__LINE__, 16, -1, false, none, 64, 48, 0, 0},
        {__LINE__, 16, CAMERA_TO_DMA, false, toDma(16), 32, 16, 0, 0},
        {__LINE__, 1, CAMERA_TO_DMA, false, toDma(1), 32, 1, 0, 0}, // both values, for a line-scan camera too
        {__LINE__, 16, DMA_TO_CAMERA, false, toCamera, 64, 48, 0, 0},
        {__LINE__, 16, IGNORE, true, none, 64, 48, 1, 2},
        {__LINE__, 16, DMA_TO_CAMERA, true, toCamera, 64, 48, 1, 1},
    };
    startBoth();
    for (const Row& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        HarloApplication::setConfigEntry(REMEMBERED, 0);
        HarloApplication::setConfigEntry(REMEMBERED_VALUE, 0);
        load(ALPHA_SERIAL, alpha);
        camera(ALPHA_SERIAL, 1)->setWidth(32);
        camera(ALPHA_SERIAL, 1)->setHeight(row.cameraHeight);
        views->choice = row.choice;
        views->remember = row.remember;
        views->clear();
        Journal::start();
        startDma(ALPHA_SERIAL, 2);
        EXPECT_EQ(
            journalOf({"GenICamModel::setWidth", "GenICamModel::setHeight", "FglibFrameBufferGroup::setWidth",
                       "FglibFrameBufferGroup::setHeight", "FglibFrameBufferGroup::notify"}),
            row.changes);
        EXPECT_EQ(
            views->lines(),
            (Lines{"choice(Dimension Mismatch|Board 0: Camera dimension (32 x " +
                       std::to_string(row.cameraHeight) +
                       ") on camera port 1 differs from DMA dimension (64 x 48) on DMA port 2.|Apply camera "
                       "dimension to DMA|Apply DMA dimension to camera|Ignore|false)",
                   "update_acquisition_state"}));
        EXPECT_EQ(dma(ALPHA_SERIAL, 2)->getDisplayScene()->width(), row.displayWidth);
        EXPECT_EQ(dma(ALPHA_SERIAL, 2)->getDisplayScene()->height(), row.displayHeight);
        EXPECT_EQ(HarloApplication::getConfigIntEntry(REMEMBERED, 0), row.remembered);
        EXPECT_EQ(HarloApplication::getConfigIntEntry(REMEMBERED_VALUE, 0), row.value);
        stopDma(ALPHA_SERIAL, 2);
    }
    EXPECT_EQ(failures, Lines{});
}

TEST_F(Acquisition, DoesNotAskWhereItNeedNot)
{
    startBoth();
    const auto asks = [&](unsigned int channel, const std::function<void()>& prepare) {
        views->clear();
        prepare();
        startDma(ALPHA_SERIAL, channel);
        stopDma(ALPHA_SERIAL, channel);
        return questions().size();
    };
    const auto set = [](const std::string& key, int value) { HarloApplication::setConfigEntry(key, value); };
    const auto small = camera(ALPHA_SERIAL, 1);

    EXPECT_EQ(asks(2, [] {}), 1U);
    EXPECT_EQ(asks(0, [] {}), 0U) << "equal sizes";
    EXPECT_EQ(asks(2, [] { Gui::setSyncMode(Gui::SyncNone); }), 0U) << "a single channel";
    EXPECT_EQ(asks(2, [] { Gui::setSyncMode(static_cast<Gui::SyncMode>(4)); }), 0U) << "no such mode";
    Gui::setSyncMode(Gui::SyncProcess);
    EXPECT_EQ(asks(2, [&] { set("gui.preferences.sync_dma_and_camera_dimensions", 0); }), 0U);
    set("gui.preferences.sync_dma_and_camera_dimensions", 1);
    EXPECT_EQ(asks(2, [&] { small->setWidth(64), small->setHeight(1); }), 0U) << "a line-scan camera fits";
    EXPECT_EQ(asks(2, [&] { small->setWidth(32); }), 1U) << "but its width must be equal";
    EXPECT_EQ(asks(2, [&] { port(ALPHA_SERIAL, 1)->setGeneratorActive(true); }), 0U);
    port(ALPHA_SERIAL, 1)->setGeneratorActive(false);
    set(REMEMBERED, -1); // anything but 0
    for (const int odd : {7, -1, 2}) {
        EXPECT_EQ(asks(2, [&] { set(REMEMBERED_VALUE, odd); }), 0U);
        EXPECT_EQ(small->width(), 32);
        EXPECT_EQ(dma(ALPHA_SERIAL, 2)->getDisplayScene()->width(), 64);
    }
    EXPECT_EQ(asks(2, [&] { set(REMEMBERED_VALUE, DMA_TO_CAMERA); }), 0U);
    EXPECT_EQ(small->width(), 64);
    EXPECT_EQ(small->height(), 48);
}

TEST_F(Acquisition, ComparesEveryChannelWithEveryPortOfItsProcessAndHeedsAnAnswerFromThenOn)
{
    alpha = installation.addAlphaApplet("alpha.hap", R"("processes": [{"dmas": [0, 1], "ports": [0, 1]}],
        "dmas": [{"index": 0, "width": 8, "height": 8}, {"index": 1, "width": 9, "height": 9}])");
    startBoth();
    views->clear();
    startDma(ALPHA_SERIAL, 0);
    EXPECT_EQ(questions(), (Lines{"camera port 0, DMA port 0", "camera port 1, DMA port 0",
                                  "camera port 0, DMA port 1", "camera port 1, DMA port 1"}));
    stopDma(ALPHA_SERIAL, 0);

    views->clear();
    views->choice = DMA_TO_CAMERA;
    views->remember = true;
    startDma(ALPHA_SERIAL, 0);
    EXPECT_EQ(questions(), Lines{"camera port 0, DMA port 0"});
    // Each camera took the size of the one channel, and then that of the other.
    EXPECT_EQ(camera(ALPHA_SERIAL, 0)->width(), 9);
    EXPECT_EQ(camera(ALPHA_SERIAL, 1)->height(), 9);
}

TEST_F(Acquisition, BuffersOfOneChannelAreGrantedWithinTheBudgetOfAllBoardsToTheByte)
{
    constexpr unsigned long long MIB = 1 << 20;
    HarloApplication::setConfigEntry("gui.preferences.max_dma_buffersize", 1);
    HarloApplication::setConfigEntry("gui.preferences.acq.default.buffers", 14);
    HarloApplication::setConfigEntry("gui.preferences.acq.default.timeout", 3);
    alpha = installation.addAlphaApplet("alpha.hap", R"("processes": [{"dmas": [0, 1], "ports": [0]}],
        "dmas": [{"index": 0, "width": 64, "height": 48}, {"index": 1, "width": 320, "height": 256}])");
    Journal::start();
    startBoth();
    const std::string setTimeout = "FglibFrameBufferGroup::setTimeout dma=";
    EXPECT_EQ(journalOf({setTimeout}),
              (Lines{setTimeout + "0 seconds=3", setTimeout + "1 seconds=3", setTimeout + "7 seconds=3"}));
    EXPECT_EQ(dma(BETA_SERIAL, 7)->getAcqTimeout(), 3U);
    EXPECT_EQ(dma(BETA_SERIAL, 7)->getAcqBuffersRequested(), 14U);
    EXPECT_EQ(dma(BETA_SERIAL, 7)->getAcqBuffersCurrent(), 7U) << "what the others leave";
    constexpr unsigned long long SMALL = 64 * 48, LARGE = 320 * 256;
    const auto expectUsed = [&](unsigned long long bytes) {
        EXPECT_EQ(Gui::getUsedDmaMemory(), bytes);
        EXPECT_EQ(static_cast<unsigned long long>(installation.live(FGSIM_RING_BYTES)), bytes);
        EXPECT_EQ(Gui::getTotalDmaMemory(), MIB);
    };
    expectUsed(14 * SMALL + 12 * LARGE + 7 * SMALL);

    struct Row
    {
        int line;
        int serial;
        unsigned int channel;
        int asked;
        unsigned int requested, current; // of that channel, afterwards
        unsigned long long used;
    };
    const Row rows[] = {
        {__LINE__, ALPHA_SERIAL, 1, 12, 12, 12,
         21 * SMALL + 12 * LARGE}, // unchanged: also counts as a change
        {__LINE__, ALPHA_SERIAL, 1, 13, 13, 12, 21 * SMALL + 12 * LARGE}, // the 13th would not fit
        {__LINE__, ALPHA_SERIAL, 0, 9, 9, 9, 16 * SMALL + 12 * LARGE},
        {__LINE__, BETA_SERIAL, 7, 100, 100, 12, 21 * SMALL + 12 * LARGE},
        {__LINE__, ALPHA_SERIAL, 0, 14, 14, 9, 21 * SMALL + 12 * LARGE},
        // The group refuses it: the model and the front end are updated nevertheless.
        {__LINE__, ALPHA_SERIAL, 1, 0, 13, 12, 21 * SMALL + 12 * LARGE},
        {__LINE__, ALPHA_SERIAL, 1, -3, 13, 12, 21 * SMALL + 12 * LARGE},
        {__LINE__, ALPHA_SERIAL, 1, 1, 1, 1, 21 * SMALL + 1 * LARGE},
        {__LINE__, BETA_SERIAL, 7, 100, 100, 100, 109 * SMALL + 1 * LARGE},
    };
    Gui::setSyncMode(Gui::SyncAllBoards); // affects starts and stops only
    views->onLine = [](const std::string& line) { Journal::note("views " + line); };
    const Lines told = {"views update_dma_memory", "views update_acquisition_state"};
    for (const Row& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        failures.clear();
        Journal::start();
        run(AcquisitionBufferCountChangeCommand::create(dma(row.serial, row.channel), row.asked));
        const std::string channel = " dma=" + std::to_string(row.channel) + ' ';
        EXPECT_EQ(
            journalOf({"FglibFrameBufferGroup::set", "HlEnvironmentDmaNode::set", "views"}),
            (Lines{"FglibFrameBufferGroup::setBufferCount" + channel + "buffers=" + std::to_string(row.asked),
                   "HlEnvironmentDmaNode::setAcqBuffersRequested" + channel + std::to_string(row.requested),
                   "HlEnvironmentDmaNode::setAcqBuffersCurrent" + channel + std::to_string(row.current),
                   told[0], told[1]}));
        EXPECT_EQ(failures.size(), row.asked < 1 ? 1U : 0U);
        expectUsed(row.used);
    }
    installation.failCall("Fg_AllocMemEx", 1, -13);
    run(AcquisitionBufferCountChangeCommand::create(dma(BETA_SERIAL, 7), 50));
    EXPECT_EQ(failures.size(), 1U);
    EXPECT_EQ(dma(BETA_SERIAL, 7)->getAcqBuffersCurrent(), 100U) << "what there was before";
    expectUsed(109 * SMALL + 1 * LARGE);
    HarloApplication::setConfigEntry("gui.preferences.max_dma_buffersize", 0); // less than is in use
    run(AcquisitionBufferCountChangeCommand::create(dma(ALPHA_SERIAL, 0), 5));
    EXPECT_EQ(dma(ALPHA_SERIAL, 0)->getAcqBuffersCurrent(), 1U);
    HarloApplication::setConfigEntry("gui.preferences.max_dma_buffersize", 1);
    run(AcquisitionBufferCountChangeCommand::create(dma(ALPHA_SERIAL, 0), 9));
    expectUsed(109 * SMALL + 1 * LARGE);
    const auto late = dma(BETA_SERIAL, 7);
    unload(BETA_SERIAL);
    Journal::start();
    failures.clear();
    run(AcquisitionBufferCountChangeCommand::create(late, 8));
    EXPECT_EQ(journalOf({"HlEnvironmentDmaNode::set", "views"}), told);
    EXPECT_EQ(failures, Lines{});
    expectUsed(9 * SMALL + 1 * LARGE);
    unload(ALPHA_SERIAL);
    expectUsed(0);

    for (const int configured : {-4, 0}) {
        HarloApplication::setConfigEntry("gui.preferences.acq.default.buffers", configured);
        load(ALPHA_SERIAL, alpha);
        EXPECT_EQ(dma(ALPHA_SERIAL, 1)->getAcqBuffersRequested(), 1U) << configured;
        EXPECT_EQ(dma(ALPHA_SERIAL, 1)->getAcqBuffersCurrent(), 1U) << configured;
        expectUsed(SMALL + LARGE);
    }
}

} // namespace ovra::tests
