// SPDX-License-Identifier: MIT
// Fuzzer for a browser's messages to the viewer, and for the view of an image that they request.
#include "Require.h"

#include "server/Message.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

namespace {

using namespace ovra::viewer;

constexpr int WIDTH = 37;
constexpr int HEIGHT = 29;

Frame makeFrame()
{
    Frame frame;
    frame.layout = {12, 2, 3};
    frame.width = WIDTH;
    frame.height = HEIGHT;
    frame.words.resize(frame.sampleCount(), 4095);
    return frame;
}

void cutOut(const ShowView& wanted)
{
    static const Frame FRAME = makeFrame();
    const ImageView view = fitView(wanted.region, wanted.screenWidth, wanted.screenHeight, WIDTH, HEIGHT);
    require(view.region.x >= 0 && view.region.x + view.region.width <= WIDTH, "the view lies in the image");
    require(view.region.y >= 0 && view.region.y + view.region.height <= HEIGHT, "the view lies in the image");
    std::vector<std::uint8_t> pixels(sizeInBytes(view, FRAME.layout));
    copyView(FRAME, view, pixels.data());
    for (const auto byte : pixels)
        require(byte == 0xff || byte == 0x0f, "the mean of equal samples is the sample");
    if (wanted.pixel)
        pixelAt(FRAME, (*wanted.pixel)[0], (*wanted.pixel)[1]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        const auto message = readMessage(std::string_view(reinterpret_cast<const char*>(data), size));
        if (const auto* view = std::get_if<ShowView>(&message))
            cutOut(*view);
    } catch (const MessageError&) {
    }
    return 0;
}
