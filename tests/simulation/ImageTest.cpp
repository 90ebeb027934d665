// SPDX-License-Identifier: MIT
// Tests of images: formats, effects of applet and camera parameters, scenes.

#include "AcquisitionFixture.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <set>

namespace simulation::tests {

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;

constexpr int WIDTH = 40, HEIGHT = 48; // too narrow for the number in the corner
constexpr std::size_t PIXELS = std::size_t{WIDTH} * HEIGHT;
constexpr int GAIN = 10001, OFFSET = 10002, GAMMA = 10003, FLIP_X = 10004, FLIP_Y = 10005, ORIGIN_X = 10006,
              ORIGIN_Y = 10007, TRIGGER_MODE = 10008, TRIGGER_RATE = 10009;

const char* const IMAGE_MACHINE = R"({
    "name": "Images",
    "boards": [{"model": "quad", "boardType": 7, "serial": "1", "ports": 4}],
    "cameras": [
        {"board": 0, "port": 0, "model": "Area", "serial": "1", "interface": "gige", "exposure": 1000,
         "sensorWidth": 40, "sensorHeight": 48, "frameRate": 100, "scene": "bottles"},
        {"board": 0, "port": 1, "model": "Line", "serial": "2", "interface": "gige", "sensorWidth": 500, "lineRate": 100000}
    ]
})";

const char* const IMAGE_APPLET = R"({
    "format": "virtual-applet-1", "name": "Images", "boardType": 7,
    "processes": [{"dmas": [0, 1], "ports": [0, 1]}],
    "dmas": [
        {"index": 0, "width": 40, "height": 48, "generator": {"pattern": "ramp", "frameRate": 0},
         "formats": ["Mono8", "Mono10", "Mono12", "Mono14", "Mono16", "Mono10Packed", "Mono12Packed", "Rgb8", "Bgr8", "Bgra8",
                     "BayerRg8", "BayerGr8", "BayerGb8", "BayerBg8", "BayerRg12", "BayerGr12", "BayerGb12", "BayerBg12"]},
        {"index": 1, "width": 500, "height": 200}
    ],
    "parameters": [
        {"name": "GAIN", "id": 10001, "type": "double", "min": 0, "max": 16, "default": 1, "scope": "dma", "effect": "gain"},
        {"name": "OFFSET", "id": 10002, "type": "int32", "min": -255, "max": 255, "default": 0, "effect": "offset"},
        {"name": "GAMMA", "id": 10003, "type": "double", "min": 0.1, "max": 4, "default": 1, "effect": "gamma"},
        {"name": "FLIP_X", "id": 10004, "type": "int32", "min": 0, "max": 1, "default": 0, "effect": "flip-horizontal"},
        {"name": "FLIP_Y", "id": 10005, "type": "int32", "min": 0, "max": 1, "default": 0, "effect": "flip-vertical"},
        {"name": "X", "id": 10006, "type": "int32", "min": 0, "max": 63, "default": 0, "scope": "dma", "effect": "origin-x"},
        {"name": "Y", "id": 10007, "type": "int32", "min": 0, "max": 47, "default": 0, "scope": "dma", "effect": "origin-y"},
        {"name": "TRIGGER", "id": 10008, "type": "int32", "min": 0, "max": 2, "default": 0, "effect": "trigger-mode"},
        {"name": "PULSES", "id": 10009, "type": "double", "min": 0, "max": 100000, "default": 0, "effect": "trigger-rate"}
    ]
})";

class Images : public Acquisition
{
protected:
    Images() : Acquisition(IMAGE_MACHINE, IMAGE_APPLET) {}

    void camera(int parameter, double value, unsigned int port = 0)
    {
        EXPECT_EQ(runtime.FgCam_setValue(0, port, parameter, value), FG_OK) << lastLine();
    }

    /// The first images after a start, each as bytes.
    std::vector<Bytes> take(unsigned int dma, FgFrameIndex count, std::size_t bytes)
    {
        auto* buffers = ring(count, bytes);
        EXPECT_EQ(start(dma, buffers, count), FG_OK) << lastLine();
        EXPECT_EQ(runtime.FgCam_start(0, dma), FG_OK);
        EXPECT_EQ(waitFor(count, dma, buffers), count) << lastLine();
        runtime.FgCam_stop(0, dma);
        std::vector<Bytes> images;
        for (FgFrameIndex i = 1; i <= count; ++i)
            images.push_back(image(i, dma, buffers, bytes));
        runtime.Fg_stopAcquire(m_grabber, dma);
        EXPECT_EQ(runtime.Fg_FreeMemEx(m_grabber, buffers), FG_OK) << lastLine();
        return images;
    }

    Bytes taken(int format, std::size_t bytes)
    {
        set(FG_PIXELFORMAT, 0, format);
        return take(0, 1, bytes).front();
    }

    Words takenWords(int format)
    {
        const auto bytes = taken(format, PIXELS * 2);
        Words words(PIXELS);
        for (std::size_t i = 0; i < PIXELS; ++i)
            words[i] = static_cast<std::uint16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
        return words;
    }

    Bytes grey() { return taken(FG_PIXELFORMAT_MONO8, PIXELS); }

    static double mean(const Bytes& bytes)
    {
        return std::accumulate(bytes.begin(), bytes.end(), 0.0) / static_cast<double>(bytes.size());
    }
};

TEST_F(Images, OfAllFormatsAreTheSamePicture)
{
    const auto deep = takenWords(FG_PIXELFORMAT_MONO16);
    EXPECT_GT(std::set(deep.begin(), deep.end()).size(), 1000U); // more than 8 bits could hold
    const auto shifted = [&](int bits) {
        Words words;
        for (const auto sample : deep)
            words.push_back(static_cast<std::uint16_t>(sample >> (16 - bits)));
        return words;
    };
    const auto eight = shifted(8);
    EXPECT_EQ(grey(), Bytes(eight.begin(), eight.end()));
    for (const int bits : {10, 12, 14}) // these are the values of the formats, too
        EXPECT_EQ(takenWords(bits), shifted(bits)) << bits;
    for (const auto& [format, bits] :
         {std::pair(FG_PIXELFORMAT_MONO10_PACKED, 10), {FG_PIXELFORMAT_MONO12_PACKED, 12}}) {
        const auto packed = taken(format, PIXELS * static_cast<std::size_t>(bits) / 8);
        Words words;
        for (std::size_t i = 0; i < PIXELS; ++i) {
            unsigned int sample = 0;
            for (std::size_t bit = 0; bit < static_cast<std::size_t>(bits); ++bit) {
                const auto place = i * static_cast<std::size_t>(bits) + bit;
                sample |= static_cast<unsigned int>(packed[place / 8] >> (place % 8) & 1) << bit;
            }
            words.push_back(static_cast<std::uint16_t>(sample));
        }
        EXPECT_EQ(words, shifted(bits)) << bits;
    }
    const auto rgb = taken(FG_PIXELFORMAT_RGB8, PIXELS * 3);
    const auto bgr = taken(FG_PIXELFORMAT_BGR8, PIXELS * 3);
    const auto bgra = taken(FG_PIXELFORMAT_BGRA8, PIXELS * 4);
    int coloured = 0;
    for (std::size_t i = 0; i < PIXELS; ++i) {
        const Bytes pixel(rgb.begin() + static_cast<int>(3 * i), rgb.begin() + static_cast<int>(3 * i) + 3);
        EXPECT_EQ(pixel, (Bytes{bgr[3 * i + 2], bgr[3 * i + 1], bgr[3 * i]}));
        EXPECT_EQ(pixel, (Bytes{bgra[4 * i + 2], bgra[4 * i + 1], bgra[4 * i]}));
        EXPECT_EQ(bgra[4 * i + 3], 255);
        EXPECT_NEAR(0.3 * pixel[0] + 0.59 * pixel[1] + 0.11 * pixel[2], eight[i], 3);
        coloured += std::abs(pixel[0] - pixel[2]) > 40 ? 1 : 0;
    }
    EXPECT_GT(coloured, 200);
    const std::tuple<int, int, const char*> mosaics[] = {
        {FG_PIXELFORMAT_BAYER_RG8, FG_PIXELFORMAT_BAYER_RG12, "RGGB"},
        {FG_PIXELFORMAT_BAYER_GR8, FG_PIXELFORMAT_BAYER_GR12, "GRBG"},
        {FG_PIXELFORMAT_BAYER_GB8, FG_PIXELFORMAT_BAYER_GB12, "GBRG"},
        {FG_PIXELFORMAT_BAYER_BG8, FG_PIXELFORMAT_BAYER_BG12, "BGGR"}};
    for (const auto& [format, deepFormat, order] : mosaics) {
        Bytes expected, high;
        for (int y = 0; y < HEIGHT; ++y)
            for (int x = 0; x < WIDTH; ++x)
                expected.push_back(rgb[static_cast<std::size_t>(y * WIDTH + x) * 3 +
                                       std::string("RGB").find(order[2 * (y % 2) + x % 2])]);
        EXPECT_EQ(taken(format, PIXELS), expected) << order;
        for (const auto sample : takenWords(deepFormat))
            high.push_back(static_cast<std::uint8_t>(sample >> 4));
        EXPECT_EQ(high, expected) << order;
    }
}

TEST_F(Images, AreOfferedInTheFormatsOfTheirChannelOnly)
{
    char text[64] = "";
    std::size_t bytes = sizeof text;
    EXPECT_EQ(
        runtime.Fg_getParameterPropertyEx(m_grabber, FG_PIXELFORMAT, FG_PROPERTY_CHOICES, 1, text, &bytes),
        FG_OK);
    EXPECT_STREQ(text, "8=Mono8");
    EXPECT_STREQ(runtime.Fg_getParameterInfo(m_grabber, 1)->parameters[2].choices, "8=Mono8");
    const int deep = FG_PIXELFORMAT_MONO12;
    EXPECT_EQ(runtime.Fg_setParameter(m_grabber, FG_PIXELFORMAT, &deep, 0), FG_OK);
    EXPECT_EQ(runtime.Fg_setParameter(m_grabber, FG_PIXELFORMAT, &deep, 1), FG_VALUE_OUT_OF_RANGE);
    EXPECT_EQ(start(0, ring(2, PIXELS)), FG_INVALID_MEMORY); // a buffer is half an image
    ASSERT_EQ(start(0, ring(2, PIXELS * 2)), FG_OK) << lastLine();
    const int flat = FG_PIXELFORMAT_MONO8;
    EXPECT_EQ(runtime.Fg_setParameter(m_grabber, FG_PIXELFORMAT, &flat, 0), FG_ACQUISITION_RUNNING);
}

TEST_F(Images, OfTheGeneratorUseTheWholeDepth)
{
    set(FG_GEN_ENABLE, 0, 1);
    set(FG_PIXELFORMAT, 0, FG_PIXELFORMAT_MONO12);
    const auto images = take(0, 2, PIXELS * 2);
    for (int number = 0; number < 2; ++number)
        for (int x = 0; x < WIDTH; ++x)
            EXPECT_EQ(images[static_cast<std::size_t>(number)][static_cast<std::size_t>(2 * x)] |
                          images[static_cast<std::size_t>(number)][static_cast<std::size_t>(2 * x + 1)] << 8,
                      x + 256 * number);
    set(FG_PIXELFORMAT, 0, FG_PIXELFORMAT_MONO8);
    set(FG_GEN_PATTERN, 0, FG_GEN_PATTERN_CHECKERBOARD);
    EXPECT_EQ(take(0, 1, PIXELS).front()[31], 24);
    EXPECT_EQ(take(0, 1, PIXELS).front()[32], 224);
}

TEST_F(Images, ChangeAsTheAppletsParametersSay)
{
    const auto deep = takenWords(FG_PIXELFORMAT_MONO16);
    const auto at = [](int x, int y) { return static_cast<std::size_t>(y * WIDTH + x); };
    struct Row
    {
        std::map<int, double> parameters;
        std::function<double(int x, int y)> expected; ///< 0 to 1 and beyond
    };
    const auto light = [&](int x, int y) { return deep[at(x, y)] / 65536.0; };
    const Row rows[] = {
        {{{GAIN, 2}}, [&](int x, int y) { return 2 * light(x, y); }},
        {{{GAIN, 0}}, [](int, int) { return 0; }},
        {{{OFFSET, -40}}, [&](int x, int y) { return light(x, y) - 40 / 256.0; }},
        {{{GAIN, 0.5}, {OFFSET, 200}}, [&](int x, int y) { return 0.5 * light(x, y) + 200 / 256.0; }},
        {{{GAMMA, 2}}, [&](int x, int y) { return std::sqrt(light(x, y)); }},
        {{{FLIP_X, 1}}, [&](int x, int y) { return light(WIDTH - 1 - x, y); }},
        {{{FLIP_Y, 1}}, [&](int x, int y) { return light(x, HEIGHT - 1 - y); }},
        {{{ORIGIN_X, 10}, {ORIGIN_Y, 3}},
         [&](int x, int y) { return x < WIDTH - 10 && y < HEIGHT - 3 ? light(x + 10, y + 3) : 0; }},
        {{{ORIGIN_X, 10}, {FLIP_X, 1}},
         [&](int x, int y) { return x < 10 ? 0 : light(10 + WIDTH - 1 - x, y); }},
        {{}, light},
    };
    for (const auto& row : rows) {
        for (const auto& [parameter, value] : row.parameters)
            set(parameter, 0, value);
        const auto image = grey();
        int wrong = 0;
        for (int y = 0; y < HEIGHT; ++y)
            for (int x = 0; x < WIDTH; ++x)
                wrong +=
                    image[at(x, y)] != std::clamp(std::floor(row.expected(x, y) * 256 + 1e-6), 0.0, 255.0);
        EXPECT_EQ(wrong, 0) << "parameter " << (row.parameters.empty() ? 0 : row.parameters.begin()->first);
        for (const auto& [parameter, value] : row.parameters)
            set(parameter, 0, parameter == GAIN || parameter == GAMMA ? 1 : 0);
    }
}

TEST_F(Images, ChangeWhileTheyAreTaken)
{
    auto* buffers = ring(4, PIXELS);
    ASSERT_EQ(start(0, buffers), FG_OK);
    runtime.FgCam_start(0, 0);
    ASSERT_GE(waitFor(2, 0, buffers), 2);
    set(GAIN, 0, 0);
    const auto next = waitFor(runtime.Fg_getLastPicNumber(m_grabber, 0) + 2, 0, buffers);
    EXPECT_EQ(image(next, 0, buffers, PIXELS), Bytes(PIXELS, 0));
    set(GAIN, 0, 1);
    camera(FGCAM_GAIN, 0);
    EXPECT_LT(mean(image(waitFor(next + 4, 0, buffers), 0, buffers, PIXELS)), 12); // noise
}

TEST_F(Images, ChangeAsTheCamerasParametersSay)
{
    const auto whole = grey();
    const auto at = [](int x, int y) { return static_cast<std::size_t>(y * WIDTH + x); };
    struct Row
    {
        std::map<int, double> parameters;
        int width, height;
        std::function<std::size_t(int x, int y)> source; ///< pixel of the whole picture
    };
    const Row rows[] = {
        {{{FGCAM_REVERSE_X, 1}}, WIDTH, HEIGHT, [&](int x, int y) { return at(WIDTH - 1 - x, y); }},
        {{{FGCAM_REVERSE_Y, 1}}, WIDTH, HEIGHT, [&](int x, int y) { return at(x, HEIGHT - 1 - y); }},
        {{{FGCAM_WIDTH, 20}, {FGCAM_HEIGHT, 10}, {FGCAM_OFFSET_X, 15}, {FGCAM_OFFSET_Y, 33}},
         20,
         10,
         [&](int x, int y) { return at(x + 15, y + 33); }},
    };
    for (const auto& row : rows) {
        for (const auto& [parameter, value] : row.parameters)
            camera(parameter, value);
        const auto image = grey();
        for (int y = 0; y < row.height; ++y)
            for (int x = 0; x < row.width; ++x) // a sensor's noise differs from place to place
                ASSERT_NEAR(image[at(x, y)], whole[row.source(x, y)], 20) << x << ' ' << y;
        for (const auto& [parameter, value] : row.parameters)
            camera(parameter, 0 + (parameter == FGCAM_WIDTH || parameter == FGCAM_HEIGHT ? 1 : 0));
        camera(FGCAM_WIDTH, WIDTH);
        camera(FGCAM_HEIGHT, HEIGHT);
    }
    camera(FGCAM_EXPOSURE, 500);
    EXPECT_NEAR(mean(grey()), mean(whole) / 2, 4);
    camera(FGCAM_GAIN, 2);
    EXPECT_NEAR(mean(grey()), mean(whole), 8);
    camera(FGCAM_GAIN, 0.1); // for an exposure of a whole period
    camera(FGCAM_EXPOSURE, 10'000);
    const auto blurred = grey();
    const auto contrast = [&](const Bytes& bytes) {
        double sum = 0;
        for (std::size_t i = 1; i < bytes.size(); ++i)
            sum += std::abs(bytes[i] - bytes[i - 1]);
        return sum;
    };
    EXPECT_LT(contrast(blurred), 0.9 * contrast(whole)); // the bottles move
    EXPECT_NEAR(mean(blurred), mean(whole), 8);
    camera(FGCAM_TEST_PATTERN, 1);
    set(FG_PIXELFORMAT, 0, FG_PIXELFORMAT_RGB8);
    const auto ramp = take(0, 1, PIXELS * 3).front(); // 10 bits: four pixels a digit
    EXPECT_EQ(Bytes(ramp.begin() + 3 * 39, ramp.begin() + 3 * 40), (Bytes{9, 0, 9}));
    for (const auto& [parameter, value, code] : {std::tuple(FGCAM_OFFSET_X, 1.0, FG_VALUE_OUT_OF_RANGE),
                                                 {FGCAM_TEST_PATTERN, 3.0, FG_VALUE_OUT_OF_RANGE},
                                                 {FGCAM_LINE_RATE, 3.0, FG_INVALID_PARAMETER},
                                                 {FGCAM_ACQUIRING, 1.0, FG_INVALID_PARAMETER}})
        EXPECT_EQ(runtime.FgCam_setValue(0, 0, parameter, value), code) << parameter;
    FgRegisterInfo* info = nullptr;
    ASSERT_EQ(runtime.FgCam_getParameterInfo(0, 1, &info), FG_OK);
    std::set<std::string> names;
    for (unsigned int i = 0; i < info->count; ++i)
        names.insert(info->parameters[i].name);
    EXPECT_TRUE(names.contains("LineRate"));
    EXPECT_FALSE(names.contains("FrameRate") || names.contains("ReverseY") || names.contains("TestPattern"));
}

class Triggers : public Images
{
protected:
    FgFrameIndex source(unsigned int dma = 0)
    {
        return runtime.Fg_getStatus(m_grabber, FG_STATUS_SOURCE, 0, dma);
    }

    double millisecondsBetween(FgFrameIndex first, FgFrameIndex last, unsigned int dma, FgBufferRing* ring)
    {
        std::uint64_t from = 0, to = 0;
        EXPECT_EQ(runtime.Fg_getParameterEx(m_grabber, FG_TIMESTAMP_NS, &from, dma, ring, first), FG_OK)
            << lastLine();
        EXPECT_EQ(runtime.Fg_getParameterEx(m_grabber, FG_TIMESTAMP_NS, &to, dma, ring, last), FG_OK)
            << lastLine();
        return static_cast<double>(to - from) / 1e6;
    }
};

TEST_F(Triggers, OfAClientGiveOneImageEach)
{
    auto* buffers = ring(16, PIXELS);
    EXPECT_EQ(runtime.Fg_sendSoftwareTrigger(m_grabber, 0), FG_NOT_WRITABLE);
    set(TRIGGER_MODE, 0, 1);
    EXPECT_EQ(runtime.Fg_sendSoftwareTrigger(m_grabber, 0), FG_NOT_ACQUIRING);
    EXPECT_EQ(runtime.Fg_sendSoftwareTrigger(m_grabber, 3), FG_INVALID_ARGUMENT);
    ASSERT_EQ(start(0, buffers), FG_OK);
    EXPECT_EQ(source(), FG_SOURCE_NONE);
    EXPECT_EQ(runtime.Fg_sendSoftwareTrigger(m_grabber, 0), FG_OK); // lost: no camera
    runtime.FgCam_start(0, 0);
    EXPECT_EQ(source(), FG_SOURCE_WAITS_FOR_TRIGGER);
    EXPECT_EQ(runtime.Fg_getLastPicNumberBlockingEx(m_grabber, 1, 0, 0, buffers), FG_TIMEOUT);
    EXPECT_EQ(runtime.Fg_sendSoftwareTrigger(m_grabber, 0), FG_OK);
    EXPECT_EQ(waitFor(1, 0, buffers), 1);
    EXPECT_EQ(runtime.Fg_sendSoftwareTriggerEx(m_grabber, 0, 5), FG_OK);
    EXPECT_EQ(waitFor(6, 0, buffers), 6);
    EXPECT_GE(millisecondsBetween(2, 6, 0, buffers), 39); // as fast as the camera, and no faster
    EXPECT_EQ(source(), FG_SOURCE_WAITS_FOR_TRIGGER);
    EXPECT_EQ(runtime.Fg_getLastPicNumberBlockingEx(m_grabber, 7, 0, 0, buffers), FG_TIMEOUT);
    set(TRIGGER_MODE, 0, 0);
    EXPECT_GE(waitFor(9, 0, buffers), 9);
    EXPECT_EQ(source(), FG_SOURCE_STREAMS);
}

TEST_F(Triggers, FromOutsideComeAtTheirRateAndPause)
{
    auto* buffers = ring(64, PIXELS);
    set(TRIGGER_MODE, 0, 2);
    ASSERT_EQ(start(0, buffers), FG_OK);
    runtime.FgCam_start(0, 0);
    EXPECT_EQ(source(), FG_SOURCE_WAITS_FOR_TRIGGER); // the rate is 0
    EXPECT_EQ(runtime.Fg_getLastPicNumberBlockingEx(m_grabber, 1, 0, 0, buffers), FG_TIMEOUT);
    set(TRIGGER_RATE, 0, 50);
    ASSERT_GE(waitFor(11, 0, buffers), 11);
    EXPECT_NEAR(millisecondsBetween(1, 11, 0, buffers), 200, 150);
    set(TRIGGER_RATE, 0, 0);
    EXPECT_EQ(source(), FG_SOURCE_WAITS_FOR_TRIGGER);
    const auto last = runtime.Fg_getLastPicNumber(m_grabber, 0);
    set(TRIGGER_RATE, 0, 100'000); // the camera cannot do more than its own 100
    ASSERT_GE(waitFor(last + 12, 0, buffers), last + 12);
    EXPECT_GE(millisecondsBetween(last + 2, last + 12, 0, buffers), 60);
}

TEST_F(Triggers, OfALineCameraTakeALineEach)
{
    auto* buffers = ring(64, 500UL * 200);
    set(TRIGGER_MODE, 0, 2);
    ASSERT_EQ(start(1, buffers), FG_OK) << lastLine();
    runtime.FgCam_start(0, 1);
    EXPECT_EQ(source(1), FG_SOURCE_WAITS_FOR_TRIGGER); // the encoder stands still
    EXPECT_EQ(runtime.Fg_getLastPicNumberBlockingEx(m_grabber, 1, 1, 0, buffers), FG_TIMEOUT);
    set(TRIGGER_RATE, 0, 10'000); // 50 images of 200 lines a second
    ASSERT_GE(waitFor(11, 1, buffers), 11);
    EXPECT_NEAR(millisecondsBetween(1, 11, 1, buffers), 200, 150);
}

TEST_F(Triggers, AFrameRateChangesWhileTheCameraSends)
{
    auto* buffers = ring(64, PIXELS);
    ASSERT_EQ(start(0, buffers), FG_OK);
    runtime.FgCam_start(0, 0);
    ASSERT_GE(waitFor(3, 0, buffers), 3);
    for (const double rate : {20.0, 200.0}) {
        camera(FGCAM_FRAME_RATE, rate);
        const auto first = runtime.Fg_getLastPicNumber(m_grabber, 0) + 2;
        ASSERT_GE(waitFor(first + 5, 0, buffers), first + 5);
        EXPECT_NEAR(millisecondsBetween(first, first + 5, 0, buffers), 5000 / rate, 2500 / rate) << rate;
    }
}

TEST_F(Images, OfALineCameraAreCutFromOneEndlessPicture)
{
    constexpr std::size_t LINE = 500, LINES = 200;
    const auto images = take(1, 8, LINE * LINES);
    Bytes strip;
    for (const auto& image : images)
        strip.insert(strip.end(), image.begin(), image.end());
    // Each line continues the previous one, also across images; 1,600 lines have at least two faults.
    EXPECT_EQ(std::set(images.begin(), images.end()).size(), 8U);
    set(FG_HEIGHT, 1, 1600);
    EXPECT_EQ(take(1, 1, LINE * LINES * 8).front(), strip);
    const auto bright = std::ranges::count_if(strip, [](auto grey) { return grey > 200; });
    EXPECT_GT(bright, 20);
    EXPECT_LT(bright, 5000);
    auto* buffers = ring(4, LINE * 1600);
    camera(FGCAM_LINE_RATE, 16'000, 1);
    ASSERT_EQ(start(1, buffers, 3), FG_OK) << lastLine();
    runtime.FgCam_start(0, 1);
    ASSERT_EQ(waitFor(3, 1, buffers), 3) << lastLine();
    std::uint64_t first = 0, last = 0;
    runtime.Fg_getParameterEx(m_grabber, FG_TIMESTAMP_NS, &first, 1, buffers, 1);
    runtime.Fg_getParameterEx(m_grabber, FG_TIMESTAMP_NS, &last, 1, buffers, 3);
    EXPECT_NEAR(static_cast<double>(last - first) / 1e6, 200, 100); // twice 1,600 lines
}

class Replays : public SimulationTest
{
protected:
    /// A camera that replays the files in the folder "shots".
    static std::string machine(const std::string& replay)
    {
        return R"({"name": "R", "boards": [{"model": "quad", "boardType": 7, "serial": "1", "ports": 1}], "cameras": [
            {"board": 0, "port": 0, "model": "R", "serial": "1", "interface": "gige", "frameRate": 100, "replay": )" +
               replay + "}]}";
    }
    void addPicture(const std::string& name, int which)
    {
        write("shots/" + name,
              read(OVRA_STAGE "/simulation/pictures/part-" + std::to_string(which) + ".png"));
    }
};

TEST_F(Replays, ShowTheFilesOfASeriesInTheOrderOfTheirNumbers)
{
    // As texts they would stand in another order. Picture 1 is grey of 16 bits, picture 2 colour of 8 bits.
    for (const auto& [number, which] : {std::pair{2, 2}, {9, 1}, {10, 1}, {11, 2}, {100, 1}})
        addPicture("s-" + std::to_string(number) + ".png", which);
    addPicture("s-x.png", 3);
    write("shots/s-8.png", "no picture");
    EXPECT_EQ(useMachine(machine(R"({"folder": "shots", "series": "t-"})")), FG_MACHINE_DESCRIPTION);
    EXPECT_THAT(lastLine(), testing::HasSubstr("/cameras/0/replay/series: expected PNG files in "));
    ASSERT_EQ(useMachine(machine(R"({"folder": "shots", "series": "s-", "repeat": false})")), FG_OK)
        << lastLine();
    auto* grabber = open(R"({"format": "virtual-applet-1", "name": "R", "boardType": 7,
        "processes": [{"dmas": [0], "ports": [0]}],
        "dmas": [{"index": 0, "width": 320, "height": 240, "formats": ["Rgb8"]}]})");
    constexpr std::size_t BYTES = 320UL * 240 * 3;
    auto* buffers = runtime.Fg_AllocMemEx(grabber, BYTES * 8, 8);
    // So few that none is lost, however late the channel is.
    ASSERT_EQ(runtime.Fg_AcquireEx(grabber, 0, 7, FG_ACQUIRE_STANDARD, buffers), FG_OK) << lastLine();
    runtime.FgCam_start(0, 0);
    ASSERT_EQ(runtime.Fg_getLastPicNumberBlockingEx(grabber, 5, 0, 60, buffers), 5);
    EXPECT_EQ(runtime.Fg_getLastPicNumberBlockingEx(grabber, 6, 0, 1, buffers), FG_TIMEOUT); // once is enough
    runtime.FgCam_start(0, 0);
    ASSERT_EQ(runtime.Fg_getLastPicNumberBlockingEx(grabber, 7, 0, 60, buffers), 7);
    std::string shown;
    for (FgFrameIndex frame = 1; frame <= 7; ++frame) {
        const auto* pixel = static_cast<std::uint8_t*>(runtime.Fg_getImagePtrEx(grabber, frame, 0, buffers));
        const Bytes corner{pixel[0], pixel[1], pixel[2]};
        shown += corner == Bytes{30, 30, 30} ? '1' : corner == Bytes{27, 30, 33} ? '2' : '?';
    }
    EXPECT_EQ(shown, "2112121");
    runtime.FgCam_stop(0, 0);
}

} // namespace simulation::tests
