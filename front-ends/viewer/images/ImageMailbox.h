// SPDX-License-Identifier: MIT
/// \file
/// ImageMailbox: the newest image of a DMA channel, for all readers.
#pragma once

#include "ovra-lib-display/DisplayScene.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace ovra::viewer {

/// How the samples of an image lie in memory: rows without padding, components side by side.
struct PixelLayout
{
    int bits = 8;           ///< significant bits of a sample
    int bytesPerSample = 1; ///< 1 or 2, the low byte first
    int components = 1;     ///< 1 grey, 3 red, green, blue

    std::size_t bytesPerPixel() const { return static_cast<std::size_t>(bytesPerSample * components); }
    friend bool operator==(const PixelLayout&, const PixelLayout&) = default;
};

/// A copy of an image. Packed samples are unpacked, and a mosaic of colours is interpolated.
struct Frame
{
    std::vector<std::uint8_t> bytes;  ///< the samples where they have one byte
    std::vector<std::uint16_t> words; ///< and where they have two
    PixelLayout layout;
    int width = 0;
    int height = 0;
    std::int64_t number = 0;    ///< 1 for the first image since acquisition start
    std::uint64_t sequence = 0; ///< 1 for the first image in this mailbox; never starts again
    std::chrono::system_clock::time_point arrival;

    const std::uint8_t* pixels() const
    {
        return layout.bytesPerSample == 1 ? bytes.data()
                                          : reinterpret_cast<const std::uint8_t*>(words.data());
    }
    std::size_t sampleCount() const
    {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
               static_cast<std::size_t>(layout.components);
    }
};

/// Fills \p frame except its sequence. Allocates only if the image is larger than earlier ones.
void copyImage(const display::Image& image, Frame& frame);

/// Holds one image; a new one replaces it. Thread-safe.
///
/// showImage copies into a frame without readers. It never waits, and allocates only while images grow and
/// when more frames are read at once than ever before. If readers hold every spare frame, the image is
/// dropped.
class ImageMailbox final : public display::DisplaySceneVisualizer
{
public:
    /// \p arrived is called on the scene's thread after each image.
    explicit ImageMailbox(std::function<void()> arrived);

    void showImage(const display::Image& image) override;

    /// Null before the first image. Release it as soon as it is sent or copied.
    std::shared_ptr<const Frame> newest() const;

private:
    struct Slot
    {
        Frame frame;
        std::atomic<int> readers{0};
    };
    // One for each of sixteen pages that read slowly, and for the newest, the next, and those who save it.
    static constexpr std::size_t SLOT_COUNT = 20;
    using Slots = std::array<Slot, SLOT_COUNT>;

    Slot* unusedSlot();

    const std::function<void()> m_arrived;
    const std::shared_ptr<Slots> m_slots = std::make_shared<Slots>();
    std::uint64_t m_count = 0; ///< of the scene's thread
    mutable std::mutex m_mutex;
    Slot* m_newest = nullptr;
};

} // namespace ovra::viewer
