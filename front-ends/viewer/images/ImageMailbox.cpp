// SPDX-License-Identifier: MIT
#include "images/ImageMailbox.h"

#include "ovra-lib-display/PixelConversion.h"

#include <cstring>
#include <utility>

namespace ovra::viewer {

using display::PixelFormat;

namespace {

/// Copies the image's bytes without line padding.
template <class Sample>
void copyLines(const display::Image& image, std::size_t samplesPerLine, std::vector<Sample>& target)
{
    target.resize(samplesPerLine * static_cast<std::size_t>(image.height));
    for (int line = 0; line < image.height; ++line) {
        const auto index = static_cast<std::size_t>(line);
        std::memcpy(target.data() + index * samplesPerLine, image.pixels + index * image.bytesPerLine,
                    samplesPerLine * sizeof(Sample));
    }
}

bool isMosaic(const display::PixelFormatDescription& format)
{
    return format.redAt >= 0;
}

} // namespace

void copyImage(const display::Image& image, Frame& frame)
{
    const auto& format = display::describe(image.format);
    const bool coloured = format.components > 1 || isMosaic(format);
    const bool deep = format.significantBits > 8;
    frame.layout = {format.significantBits, deep ? 2 : 1, coloured ? 3 : 1};
    frame.width = image.width;
    frame.height = image.height;
    frame.number = image.number;
    frame.arrival = image.arrival;

    const auto width = static_cast<std::size_t>(image.width);
    if (image.format == PixelFormat::Mono8)
        return copyLines(image, width, frame.bytes);
    if (image.format == PixelFormat::Rgb8)
        return copyLines(image, 3 * width, frame.bytes);
    if (coloured)
        return deep ? display::unpackRgb(image, frame.words) : display::unpackRgb8(image, frame.bytes);
    constexpr int WORD_BITS = 16;
    if (format.bitsPerPixel == WORD_BITS)
        return copyLines(image, width, frame.words);
    display::unpackGrey(image, frame.words);
}

ImageMailbox::ImageMailbox(std::function<void()> arrived) : m_arrived(std::move(arrived)) {}

void ImageMailbox::showImage(const display::Image& image)
{
    Slot* const slot = unusedSlot();
    if (!slot)
        return;
    Frame& frame = slot->frame;
    copyImage(image, frame);
    frame.sequence = ++m_count;
    {
        const std::lock_guard lock(m_mutex);
        m_newest = slot;
    }
    m_arrived();
}

std::shared_ptr<const Frame> ImageMailbox::newest() const
{
    Slot* slot = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_newest)
            return nullptr;
        slot = m_newest;
        ++slot->readers;
    }
    return {&slot->frame, [slots = m_slots, slot](const Frame*) { --slot->readers; }};
}

// Only the newest frame gets new readers, and only the scene's thread makes another one the newest.
ImageMailbox::Slot* ImageMailbox::unusedSlot()
{
    for (auto& slot : *m_slots)
        if (&slot != m_newest && slot.readers == 0)
            return &slot;
    return nullptr;
}

} // namespace ovra::viewer
