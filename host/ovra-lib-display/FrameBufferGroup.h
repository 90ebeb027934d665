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

/// An image in a buffer, read with the functions of PixelConversion.h. Valid while the buffer is not
/// overwritten: copy what is needed longer.
struct Image
{
    const std::uint8_t* pixels = nullptr; ///< line after line, bytesPerLine bytes each
    int width = 0;                        ///< pixels
    int height = 0;                       ///< lines
    std::int64_t number = 0;              ///< 1 for the first image since acquisition start
    PixelFormat format = PixelFormat::Mono8;
    int bitsPerPixel = describe(format).bitsPerPixel;
    std::size_t bytesPerLine = display::bytesPerLine(format, width);
    /// When the board took the image: nanoseconds since the applet was loaded. 0 where the runtime does not
    /// tell.
    std::uint64_t timestampNs = 0;
    /// When the host noticed it.
    std::chrono::system_clock::time_point arrival{};

    std::size_t bytes() const { return bytesPerLine * static_cast<std::size_t>(height); }
};

class OVRA_DISPLAY_API FrameBufferGroup
{
public:
    virtual ~FrameBufferGroup();

    /// Changes the number of buffers; fewer may be granted than asked for. Acquisition goes on afterwards if
    /// it was running. Throws std::invalid_argument on a count below 1, with nothing changed.
    virtual void setBufferCount(int buffers) = 0;
    /// What was last asked for.
    virtual unsigned int requestedBufferCount() const = 0;
    /// What there is.
    virtual unsigned int bufferCount() const = 0;
    /// Ends acquisition and gives the buffers back. Safe to repeat.
    virtual void releaseBuffers() = 0;

    // What a display scene needs of its group.
    virtual int width() const = 0;
    virtual int height() const = 0;
    /// Starts acquisition of \p images images, without end when negative. Throws std::runtime_error.
    virtual void startAcquisition(int images) = 0;
    /// From any thread; ends a wait in waitForImage.
    virtual void stopAcquisition() = 0;
    /// Blocks until there is an image newer than number \p after, and describes the newest. False when the
    /// acquisition ended or no image came within the group's timeout.
    virtual bool waitForImage(std::int64_t after, Image& image) = 0;
    /// The DMA channel, for messages.
    virtual unsigned int dmaIndex() const = 0;
    /// How the acquisition stands; after a waitForImage that gave none, why. A group that cannot tell has
    /// stopped.
    virtual reference::AcquisitionStatus acquisitionStatus() const;
    /// Images since the last start that the source sent and the channel could not take; 0 where nobody
    /// counts.
    virtual std::int64_t lostImages() const;
};

} // namespace ovra::display
