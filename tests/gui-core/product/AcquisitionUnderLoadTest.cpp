// SPDX-License-Identifier: MIT
// Sixteen channels of one board deliver as fast as possible, while acquisition starts and stops in all modes,
// buffer counts change and the other board's applet is unloaded and loaded again.
//
// Runs for three seconds, or for as many as the environment variable OVRA_LOAD_SECONDS says:
//
//     OVRA_LOAD_SECONDS=60 build/linux/tests/gui-core-tests --gtest_filter='AcquisitionUnderLoad.*'

#include "Product.h"

#include "ovra-lib-fglib-model/FgLibEventsModel.h"

#include <array>
#include <cstdlib>

namespace ovra::tests {

namespace {

constexpr unsigned int CHANNELS = 16;

std::chrono::seconds wantedDuration()
{
    const char* const wanted = std::getenv("OVRA_LOAD_SECONDS");
    return std::chrono::seconds(wanted ? std::max(std::atoi(wanted), 1) : 3);
}

class AcquisitionUnderLoad : public Product
{
protected:
    AcquisitionUnderLoad()
    {
        std::string channels;
        for (unsigned int i = 0; i < CHANNELS; ++i)
            channels +=
                (i ? "," : "") + (R"({"index": )" + std::to_string(i)) + R"(, "width": 64, "height": 48,
                "generator": {"pattern": "ramp", "frameRate": 0, "enabled": true}})";
        alpha = installation.addAlphaApplet("alpha.hap", R"("processes": [
            {"dmas": [0, 1, 2, 3, 4, 5, 6, 7], "ports": [0]}, {"dmas": [8, 9, 10, 11, 12, 13, 14, 15], "ports": [1]}],
            "dmas": [)" + channels + "]");
        beta = installation.addBetaApplet("beta.hap", R"("processes": [{"dmas": [7], "ports": [0]}],
            "dmas": [{"index": 7, "width": 64, "height": 48}])");
    }

    ~AcquisitionUnderLoad() override { unload(ALPHA_SERIAL); } // before the visualizers are destroyed

    void begin()
    {
        start();
        // One camera has another size than the channels.
        HarloApplication::setConfigEntry("gui.mainwindow.acquisition.sync.remembered", 1);
        HarloApplication::setConfigEntry("gui.mainwindow.acquisition.sync.remembered.value", 2);
        load(ALPHA_SERIAL, alpha);
        views->clear();
        load(BETA_SERIAL, beta);
        linesOfALoad = views->lines().size();
        board(ALPHA_SERIAL)->getFglibEventsModel()->connectEvent([this](const auto& name, auto, auto) {
            cameraStarts += name == "FG_CAMERA_STARTED" ? 1 : 0;
        });
        for (unsigned int i = 0; i < CHANNELS; ++i)
            dma(ALPHA_SERIAL, i)->getDisplayScene()->setVisualizer(&shown[i]);
        Gui::setSyncMode(Gui::SyncAllBoards);
        run(StartAcquisitionCommand::create(dma(ALPHA_SERIAL, 0), ENDLESS));
        expectedCameraStarts = 2;
        awaitImagesOfAll();
    }

    void awaitImagesOfAll()
    {
        std::array<int, CHANNELS> before{};
        std::ranges::transform(shown, before.begin(), [](const auto& each) { return each.images.load(); });
        pumpUntil([&] {
            return std::ranges::equal(shown, before,
                                      [](const auto& each, int images) { return each.images > images; });
        });
    }

    /// Returns while the commands are still running. In all modes the stopped channels start again.
    void submitRound(unsigned int round)
    {
        constexpr std::array BUFFER_COUNTS = {1, 2, 5, 40, 1000};
        const unsigned int mode = round % 4;
        Gui::setSyncMode(static_cast<Gui::SyncMode>(mode));
        const auto channel = dma(ALPHA_SERIAL, round % CHANNELS);
        const auto camera = port(ALPHA_SERIAL, round % 2);
        submit(StopAcquisitionCommand::create(channel));
        submit(AcquisitionBufferCountChangeCommand::create(channel,
                                                           BUFFER_COUNTS[round % BUFFER_COUNTS.size()]));
        submit(StartAcquisitionCommand::create(channel, ENDLESS));
        submit(UnloadAppletCommand::create(BETA_SERIAL));
        submit(LoadAppletCommand::create(BETA_SERIAL, beta, ""));
        submit(AcquisitionBufferCountChangeCommand::create(dma(ALPHA_SERIAL, (round + 5) % CHANNELS),
                                                           static_cast<int>(round % 7 + 1)));
        submit(StopAcquisitionCommand::create(camera));
        submit(StartAcquisitionCommand::create(camera, ENDLESS));
        Gui::setSyncMode(static_cast<Gui::SyncMode>(mode)); // while the worker reads it
        constexpr std::array<int, 4> CAMERA_STARTS = {1, 2, 4, 4};
        expectedCameraStarts += CAMERA_STARTS[mode];
    }

    /// Expects all callbacks of the round.
    void expectRoundIsComplete()
    {
        constexpr std::size_t ACQUISITION_COMMANDS = 6, BUFFER_COMMANDS = 2, LINES_OF_AN_UNLOAD = 2;
        EXPECT_EQ(told({"update_acquisition_state"}).size(), ACQUISITION_COMMANDS);
        EXPECT_EQ(views->lines().size(),
                  ACQUISITION_COMMANDS + BUFFER_COMMANDS + LINES_OF_AN_UNLOAD + linesOfALoad);
        EXPECT_EQ(failures, Lines{});
        EXPECT_EQ(Gui::getUsedDmaMemory(),
                  static_cast<unsigned long long>(installation.live(FGSIM_RING_BYTES)));
        pumpUntil([this] { return cameraStarts >= expectedCameraStarts; });
        EXPECT_EQ(cameraStarts, expectedCameraStarts);
    }

    std::string alpha;
    std::string beta;
    std::array<ImageCounter, CHANNELS> shown;
    std::size_t linesOfALoad = 0;
    std::atomic<int> cameraStarts{0};
    int expectedCameraStarts = 0;
};

} // namespace

TEST_F(AcquisitionUnderLoad, LosesNoEventAndNoPhase)
{
    begin();
    const auto end = std::chrono::steady_clock::now() + wantedDuration();
    constexpr unsigned int ALL_MODES = 4;
    unsigned int round = 0;
    for (; !HasFailure() && (round < ALL_MODES || std::chrono::steady_clock::now() < end); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        views->clear();
        submitRound(round);
        settle();
        expectRoundIsComplete();
        awaitImagesOfAll();
    }
    RecordProperty("rounds", static_cast<int>(round));
    Gui::setSyncMode(Gui::SyncAllBoards);
    run(StopAcquisitionCommand::create(dma(ALPHA_SERIAL, 0)));
    EXPECT_EQ(installation.live(FGSIM_ACQUIRING_CHANNELS), 0);
}

} // namespace ovra::tests
