// SPDX-License-Identifier: MIT
// Images that a front end receives: formats, triggers, timeouts, effects of camera and channel.

#include "Product.h"

#include "fglib5/Fglib5.h"
#include "ovra-lib-display/PixelConversion.h"
#include "ovra-lib-display/reference/AcquisitionObserver.h"
#include "ovra-lib-environment/reference/SoftwareTrigger.h"
#include "ovra-lib-fglib-model/FgLibModel.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

#include <gmock/gmock.h>

#include <mutex>

namespace ovra::tests {

namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

/// Keeps the newest image.
class Keeper : public display::DisplaySceneVisualizer
{
public:
    void showImage(const display::Image& image) override
    {
        const std::lock_guard lock(m_mutex);
        m_bytes.assign(image.pixels, image.pixels + image.bytes());
        m_image = image;
    }
    display::Image newest(std::vector<std::uint8_t>& bytes) const
    {
        const std::lock_guard lock(m_mutex);
        bytes = m_bytes;
        auto image = m_image;
        image.pixels = bytes.data();
        return image;
    }
    std::int64_t number() const
    {
        const std::lock_guard lock(m_mutex);
        return m_image.number;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::uint8_t> m_bytes;
    display::Image m_image;
};

class Images : public Product
{
protected:
    Images()
    {
        const std::string alpha = installation.addAlphaApplet("alpha.hap", R"(
            "processes": [{"dmas": [0, 1], "ports": [0, 1]}],
            "dmas": [{"index": 0, "width": 64, "height": 48, "formats": ["Mono8", "Mono12Packed", "Rgb8", "BayerGb12"]},
                     {"index": 1, "width": 32, "height": 16}],
            "parameters": [{"name": "TRIGGER", "id": 10000, "type": "int32", "min": 0, "max": 2, "default": 0,
                            "effect": "trigger-mode"}])");
        start();
        HarloApplication::setConfigEntry("gui.preferences.sync_dma_and_camera_dimensions", 0);
        Gui::setSyncMode(Gui::SyncNone);
        HarloApplication::setConfigEntry("gui.preferences.acq.default.timeout", 20);
        load(ALPHA_SERIAL, alpha);
        dma(ALPHA_SERIAL, 0)->getDisplayScene()->setVisualizer(&keeper);
    }
    ~Images() override
    {
        if (const auto scene = dma(ALPHA_SERIAL, 0)->getDisplayScene())
            scene->setVisualizer(nullptr);
    }

    void set(const std::string& name, const std::string& value)
    {
        dma(ALPHA_SERIAL, 0)->getFrontendRegInfoModel()->setParameter(name, 0, value);
    }
    void grab(unsigned int i = 0) { run(StartAcquisitionCommand::create(dma(ALPHA_SERIAL, i), ENDLESS)); }
    reference::AcquisitionStatus status(unsigned int i = 0) const
    {
        return reference::AcquisitionObserver::status(*dma(ALPHA_SERIAL, i)->getDisplayScene());
    }
    boost::shared_ptr<core::models::GenICamModel> camera() const
    {
        return port(ALPHA_SERIAL, 0)->getMappedPortEntry()->getConnectedCameraEntry()->getGenICamModelEntry();
    }

    Keeper keeper;
};

TEST_F(Images, SayTheirFormatAndTimeAndTheBuffersFollow)
{
    struct Row
    {
        const char* format;
        int bitsPerPixel;
        std::size_t bytesPerLine;
    };
    const auto others = Gui::getUsedDmaMemory() - 16ULL * 64 * 48;
    camera()->restartAcquisition();
    std::uint64_t earlier = 0;
    for (const auto& [format, bits, line] :
         {Row{"Rgb8", 24, 192}, {"Mono12Packed", 12, 96}, {"BayerGb12", 16, 128}, {"8", 8, 64}}) {
        set("FG_PIXELFORMAT", format); // while the channel acquires, too
        EXPECT_EQ(Gui::getUsedDmaMemory() - others, 16 * line * 48) << format;
        if (earlier == 0)
            grab();
        std::vector<std::uint8_t> bytes;
        display::Image image;
        pumpUntil([&] {
            image = keeper.newest(bytes);
            return image.bitsPerPixel == bits && image.number > 0;
        });
        EXPECT_EQ(image.bytesPerLine, line);
        EXPECT_GT(image.timestampNs, earlier);
        EXPECT_LT(std::chrono::abs(std::chrono::system_clock::now() - image.arrival),
                  std::chrono::minutes(1));
        earlier = image.timestampNs;
        std::vector<std::uint8_t> rgb;
        unpackRgb8(image, rgb);
        std::size_t blue = 0; // there is a sky
        for (std::size_t i = 0; i < rgb.size(); i += 3)
            blue += rgb[i + 2] > rgb[i] + 30 ? 1 : 0;
        EXPECT_EQ(blue > 200, std::string(format) == "Rgb8" || std::string(format) == "BayerGb12") << blue;
    }
    EXPECT_THAT([&] { set("FG_PIXELFORMAT", "Mono16"); },
                ThrowsMessage<std::invalid_argument>(
                    "Parameter FG_PIXELFORMAT: expected one of 8 (Mono8), 112 (Mono12Packed), 24 (Rgb8), 232 "
                    "(BayerGb12), found \"Mono16\""));
}

TEST_F(Images, WaitForTheirTriggerAsLongAsItTakes)
{
    set("TRIGGER", "software");
    set("FG_TIMEOUT", "1");
    camera()->restartAcquisition();
    grab();
    EXPECT_EQ(status().state, reference::AcquisitionState::WaitingForTrigger);
    pumpUntil([&] { return installation.calls("Fg_getLastPicNumberBlockingEx") >= 2; }); // a second passes
    reference::sendSoftwareTrigger(*board(ALPHA_SERIAL), 0, 2);
    pumpUntil([&] { return keeper.number() == 2; });
    EXPECT_EQ(status().state, reference::AcquisitionState::WaitingForTrigger);
    run(AcquisitionBufferCountChangeCommand::create(dma(ALPHA_SERIAL, 0), 4));
    reference::sendSoftwareTrigger(*board(ALPHA_SERIAL), 0, 1);
    pumpUntil([&] { return keeper.number() == 3; }); // the runtime counts anew
    EXPECT_THAT([&] { reference::sendSoftwareTrigger(*board(ALPHA_SERIAL), 5); },
                ThrowsMessage<std::runtime_error>(HasSubstr("Board 0, port 5: the trigger was not taken: ")));
    EXPECT_THAT([&] { reference::sendSoftwareTrigger(*board(BETA_SERIAL), 0); },
                ThrowsMessage<std::runtime_error>("Board 1, port 0: the board holds no applet"));
}

TEST_F(Images, AreWaitedForAsTheirChannelSays)
{
    const std::int32_t second = 1; // as a configuration file changes it: the group is not told
    ASSERT_EQ(installation.entry<decltype(Fg_setParameter)>("Fg_setParameter")(
                  board(ALPHA_SERIAL)->getBoardHandle(), FG_TIMEOUT_PARAMETER, &second, 0),
              FG_OK);
    grab();
    grab(1);
    pumpUntil([&] { return status().state != reference::AcquisitionState::NoSignal; });
    EXPECT_EQ(status().reason, "board 0 DMA 0: no image within 1 s");
    EXPECT_EQ(status(1).state, reference::AcquisitionState::NoSignal); // it has twenty seconds
    const auto parameters = dma(ALPHA_SERIAL, 1)->getFrontendRegInfoModel()->parameters(1);
    const auto timeout = std::ranges::find(parameters, "FG_TIMEOUT", &parameters::Parameter::name);
    ASSERT_NE(timeout, parameters.end());
    EXPECT_EQ(timeout->value, parameters::Value(std::int64_t{20}));
}

TEST_F(Images, FollowTheCamerasParameters)
{
    camera()->restartAcquisition();
    grab();
    const auto brightest = [&] {
        std::vector<std::uint8_t> bytes;
        keeper.newest(bytes);
        return bytes.empty() ? 0
                             : *std::max_element(bytes.begin() + 64 * 16, bytes.end()); // below the number
    };
    pumpUntil([&] { return brightest() > 150; });
    camera()->setParameter("Gain", "0");
    pumpUntil([&] { return brightest() < 20; });
    camera()->setParameter("TestPattern", "checkerboard");
    pumpUntil([&] { return brightest() == 224; });
    EXPECT_THAT([&] { camera()->setParameter("Zoom", "2"); },
                ThrowsMessage<std::invalid_argument>("Camera on board 0, port 0 has no parameter Zoom"));
    // Within the parameter's range, but beyond the sensor together with the width.
    const auto all = camera()->parameters();
    const auto offset = std::ranges::find(all, "OffsetX", &parameters::Parameter::name);
    ASSERT_NE(offset, all.end());
    EXPECT_THAT([&] { camera()->setParameter("OffsetX", std::to_string(static_cast<int>(offset->maximum))); },
                ThrowsMessage<std::runtime_error>(HasSubstr(" was refused: ")));
    EXPECT_THAT([&] { camera()->setParameter("ExposureTime", "short"); },
                testing::Throws<std::invalid_argument>());
}

} // namespace

} // namespace ovra::tests
