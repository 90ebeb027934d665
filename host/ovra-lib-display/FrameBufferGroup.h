// SPDX-License-Identifier: MIT
/// \file
/// FrameBufferGroup: the image buffers of one source, and the images in them.
#pragma once

#include "ovra-lib-display/Export.h"
#include "ovra-lib-display/PixelFormat.h"

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace ovra::reference {
struct AcquisitionStatus;
}

namespace ovra::display {

/// An image in a buffer. Read its pixels with the functions of PixelConversion.h. They are valid until the
/// buffer is overwritten: copy what you need longer.
struct Image
{
    const std::uint8_t* pixels = nullptr; ///< line after line, bytesPerLine bytes each
    int width = 0;                        ///< pixels
    int height = 0;                       ///< lines
    std::int64_t number = 0;              ///< 1 for the first image since acquisition start
    PixelFormat format = PixelFormat::Mono8;
    int bitsPerPixel = describe(format).bitsPerPixel;
    std::size_t bytesPerLine = display::bytesPerLine(format, width);
    /// The board's time stamp, in nanoseconds since the applet was loaded; 0 if the runtime gives none.
    std::uint64_t timestampNs = 0;
    /// When the host received the image.
    std::chrono::system_clock::time_point arrival{};

    std::size_t bytes() const { return bytesPerLine * static_cast<std::size_t>(height); }
};

/// The buffers of one source. ovra-lib-display-fglib implements it for DMA channels; a DisplayScene reads it.
class OVRA_DISPLAY_API FrameBufferGroup
{
public:
    virtual ~FrameBufferGroup();

    /// Changes the number of buffers; the group may grant fewer. A running acquisition continues afterwards.
    /// \throws std::invalid_argument  if \p buffers is below 1; nothing changes
    virtual void setBufferCount(int buffers) = 0;
    /// The number that was last requested.
    virtual unsigned int requestedBufferCount() const = 0;
    /// The number that exists.
    virtual unsigned int bufferCount() const = 0;
    /// Ends the acquisition and releases the buffers. Safe to repeat.
    virtual void releaseBuffers() = 0;

    // For the display scene:
    virtual int width() const = 0;
    virtual int height() const = 0;
    /// Starts the acquisition of \p images images; negative: without end.
    /// \throws std::runtime_error  if the source cannot start
    virtual void startAcquisition(int images) = 0;
    /// Any thread. Also ends a wait in waitForImage.
    virtual void stopAcquisition() = 0;
    /// Blocks until there is an image with a number above \p after, and describes the newest in \p image.
    /// \return false if the acquisition ended or no image came within the group's timeout
    virtual bool waitForImage(std::int64_t after, Image& image) = 0;
    /// Index of the DMA channel, for messages.
    virtual unsigned int dmaIndex() const = 0;
    /// State of the acquisition; after a waitForImage that returned false, the reason. The default
    /// implementation returns Stopped.
    virtual reference::AcquisitionStatus acquisitionStatus() const;
    /// Number of images since the last start that the source sent and the channel could not take. The default
    /// implementation returns 0.
    virtual std::int64_t lostImages() const;
};

} // namespace ovra::display
