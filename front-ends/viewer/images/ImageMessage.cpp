// SPDX-License-Identifier: MIT
#include "images/ImageMessage.h"

#include <algorithm>
#include <bit>
#include <string_view>

namespace ovra::viewer {

namespace {

class ByteWriter
{
public:
    explicit ByteWriter(std::uint8_t* target) : m_target(target) {}

    void text(std::string_view text) { m_target = std::copy(text.begin(), text.end(), m_target); }

    void number(std::uint64_t value, int bytes)
    {
        constexpr unsigned BITS_OF_A_BYTE = 8;
        for (int i = 0; i < bytes; ++i, value >>= BITS_OF_A_BYTE)
            *m_target++ = static_cast<std::uint8_t>(value);
    }

    void word(int value) { number(static_cast<std::uint32_t>(value), 4); }

private:
    std::uint8_t* m_target;
};

} // namespace

void ImageMessage::write(std::uint32_t channel, std::uint32_t viewName,
                         const std::shared_ptr<const Frame>& frame, const ImageView& view)
{
    writeHeader(channel, viewName, *frame, view);
    const std::size_t size = sizeInBytes(view, frame->layout);
    if (view.binning == 1 && view.region.width == frame->width) {
        const std::size_t lineSize = size / static_cast<std::size_t>(std::max(view.height, 1));
        m_pixels = {frame->pixels() + static_cast<std::size_t>(view.region.y) * lineSize, size};
        m_frame = frame;
        return;
    }
    m_copy.resize(size);
    copyView(*frame, view, m_copy.data());
    m_pixels = m_copy;
}

void ImageMessage::writeHeader(std::uint32_t channel, std::uint32_t viewName, const Frame& frame,
                               const ImageView& view)
{
    constexpr unsigned VERSION = 1;
    ByteWriter header(m_header.data());
    header.text("OVIM");
    header.number(VERSION, 2);
    header.number(IMAGE_HEADER_SIZE, 2);
    header.number(channel, 4);
    header.number(static_cast<unsigned>(frame.layout.bits), 2);
    header.number(static_cast<unsigned>(frame.layout.bytesPerSample), 1);
    header.number(static_cast<unsigned>(frame.layout.components), 1);
    header.number(std::bit_cast<std::uint64_t>(static_cast<double>(frame.number)), 8);
    for (const int value : {frame.width, frame.height, view.region.x, view.region.y, view.region.width,
                            view.region.height, view.width, view.height, view.binning})
        header.word(value);
    header.number(viewName, 4);
}

} // namespace ovra::viewer
