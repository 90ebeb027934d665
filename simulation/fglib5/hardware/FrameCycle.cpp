// SPDX-License-Identifier: MIT
#include "hardware/FrameCycle.h"

#include "pictures/BlockLetters.h"
#include "pictures/RecentCache.h"

#include <algorithm>
#include <array>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace simulation {

namespace {

constexpr std::size_t MAX_CACHED_CYCLES = 256UL << 20U; // bytes
constexpr std::size_t MAX_KEPT_CYCLE = 128UL << 20U;    // bytes

// A board writes into memory, not into a core's caches. For images larger than the caches this does the same,
// which takes a third less time and leaves the caches to the readers.
void copyPastTheCaches(std::uint8_t* target, const std::uint8_t* source, std::size_t bytes)
{
#if defined(__SSE2__)
    constexpr std::size_t CPU_CACHE_BYTES = 4U << 20U, BLOCK_BYTES = sizeof(__m128i);
    if (bytes > CPU_CACHE_BYTES) {
        const std::size_t head = -reinterpret_cast<std::uintptr_t>(target) % BLOCK_BYTES;
        const std::size_t end = head + (bytes - head) / BLOCK_BYTES * BLOCK_BYTES;
        std::memcpy(target, source, head);
        for (std::size_t at = head; at != end; at += BLOCK_BYTES)
            _mm_stream_si128(reinterpret_cast<__m128i*>(target + at),
                             _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + at)));
        _mm_sfence();
        std::memcpy(target + end, source + end, bytes - end);
        return;
    }
#endif
    std::memcpy(target, source, bytes);
}

// A scrolling film is rendered as a whole; images are cut from it.
Processing adapted(const Film& film, Processing processing)
{
    if (!film.scrolls())
        return processing;
    processing.height = film.height();
    processing.flipY = false; // lines keep their order
    processing.origin = PixelPosition{processing.origin ? processing.origin->x : 0, 0};
    return processing;
}

// The same grey value of 255 in every component.
std::array<std::uint16_t, 4> greySamples(const PixelFormat& format, int grey)
{
    const auto code = static_cast<std::uint16_t>(grey * ((1 << format.depth) - 1) / 255);
    return {code, code, code, 255};
}

} // namespace

std::shared_ptr<const FrameCycle> FrameCycle::of(const std::shared_ptr<const Film>& film,
                                                 const Processing& processing)
{
    static auto* cache = new RecentCache<FrameCycle>(MAX_CACHED_CYCLES); // threads may outlive static objects
    return cache->get(film->key() + '|' + processing.key(),
                      [&] { return std::make_shared<const FrameCycle>(film, processing); });
}

FrameCycle::FrameCycle(std::shared_ptr<const Film> film, const Processing& processing)
    : m_film(std::move(film)),
      m_processing(adapted(*m_film, processing)),
      m_height(processing.height),
      m_curve(m_processing),
      m_bytes(m_processing.bytes() * m_film->pictures()),
      m_kept(m_bytes <= MAX_KEPT_CYCLE || m_film->pictures() == 1),
      m_images(std::make_unique<Image[]>(m_kept ? m_film->pictures() : 0))
{}

const std::vector<std::uint8_t>& FrameCycle::image(std::size_t position) const
{
    auto& image = m_images[position];
    std::call_once(image.rendered, [&] {
        image.bytes.resize(m_processing.bytes());
        render(*m_film, position, m_processing, m_curve, image.bytes);
    });
    return image.bytes;
}

void FrameCycle::write(std::uint64_t number, std::span<std::uint8_t> target) const
{
    if (m_film->scrolls())
        writeScrolling(number, target);
    else if (m_kept)
        copyPastTheCaches(target.data(), image(number % m_film->pictures()).data(), target.size());
    else
        render(*m_film, number % m_film->pictures(), m_processing, m_curve, target);
    if (m_film->numbered())
        stampNumber(number + 1, target);
}

void FrameCycle::writeScrolling(std::uint64_t number, std::span<std::uint8_t> target) const
{
    const auto& strip = image(0);
    const auto lineBytes = m_processing.format->bytesPerLine(m_processing.width);
    const auto lines = static_cast<std::uint64_t>(m_film->height());
    const auto first = number * static_cast<std::uint64_t>(m_height);
    for (std::uint64_t line = first; line < first + static_cast<std::uint64_t>(m_height);) {
        const auto count =
            std::min(lines - line % lines, first + static_cast<std::uint64_t>(m_height) - line);
        copyPastTheCaches(target.data() + (line - first) * lineBytes, strip.data() + line % lines * lineBytes,
                          count * lineBytes);
        line += count;
    }
    for (const auto& mark : m_film->marks(first, m_height)) {
        std::array<std::uint16_t, 4> samples{};
        samplesOf(*m_processing.format, m_curve, mark.rgb.data(), 0, samples.data());
        const int left = mark.x - m_processing.origin.value_or(PixelPosition{}).x;
        fill(target, m_processing.flipX ? m_processing.width - left - mark.count : left, mark.y, mark.count,
             samples);
    }
}

// In the source's coordinates; the channel may cut the lines elsewhere.
void FrameCycle::fill(std::span<std::uint8_t> target, int x, int y, int count,
                      std::span<const std::uint16_t> samples) const
{
    const int lineWidth = m_processing.origin ? m_processing.width : m_film->width();
    const int from = std::clamp(x, 0, lineWidth), end = std::clamp(x + count, 0, lineWidth);
    const auto first =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(lineWidth) + static_cast<std::size_t>(from);
    PixelStream::fill(*m_processing.format, m_processing.width, target, first,
                      static_cast<std::size_t>(end - from), samples.first(m_processing.format->samples()));
}

void FrameCycle::stampNumber(std::uint64_t number, std::span<std::uint8_t> target) const
{
    constexpr int DIGITS = 6;
    const int width = m_processing.origin ? m_processing.width : m_film->width();
    const int height = m_processing.origin || m_film->scrolls() ? m_height : m_film->height();
    const int dot = std::max(1, width / 400); // pixels
    const int left = 2 * dot, top = 2 * dot;
    const int boxWidth = (DIGITS * (BLOCK_LETTER_COLUMNS + 1) + 3) * dot;
    const int boxHeight = (BLOCK_LETTER_ROWS + 4) * dot;
    if (left + boxWidth > width || top + boxHeight > height)
        return;
    std::array<BlockLetter, DIGITS> letters{};
    for (int i = DIGITS - 1; i >= 0; --i, number /= 10)
        letters[static_cast<std::size_t>(i)] = blockLetter(static_cast<char>('0' + number % 10));
    const auto dark = greySamples(*m_processing.format, 16), bright = greySamples(*m_processing.format, 240);
    for (int y = 0; y < boxHeight; ++y) {
        fill(target, left, top + y, boxWidth, dark);
        const int row = y / dot - 2;
        if (row < 0 || row >= BLOCK_LETTER_ROWS)
            continue;
        for (int i = 0; i < DIGITS; ++i)
            for (int column = 0; column < BLOCK_LETTER_COLUMNS; ++column)
                if (blockLetterDot(letters[static_cast<std::size_t>(i)], column, row))
                    fill(target, left + (2 + i * (BLOCK_LETTER_COLUMNS + 1) + column) * dot, top + y, dot,
                         bright);
    }
}

} // namespace simulation
