#include "hardware/FrameCycle.h"

#include "pictures/BlockLetters.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <deque>
#include <functional>
#include <mutex>
#include <tuple>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace simulation {

namespace {

constexpr std::size_t largestCycle = 48UL << 20U; // bytes
constexpr std::size_t mostKept = 256UL << 20U;    // bytes

int cycleLength(int width, int height, int wanted)
{
    const auto bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    return std::clamp(static_cast<int>(largestCycle / bytes), 1, wanted);
}

// The cycles asked for of late. Starting a camera again, or a second channel with the same pattern, draws
// nothing. Who wants a cycle that is being drawn waits for it, and for no other one.
class Shelf
{
public:
    using Key = std::tuple<bool, int, int, int>; ///< is it a scene, which one, width, height
    using Draw = std::function<std::shared_ptr<const FrameCycle>()>;

    static Shelf& instance()
    {
        static auto* shelf = new Shelf; // acquisition threads may outlive the process's static objects
        return *shelf;
    }

    std::shared_ptr<const FrameCycle> get(const Key& key, const Draw& draw)
    {
        const auto place = placeOf(key);
        const std::lock_guard drawing(place->drawing);
        if (!place->cycle) {
            place->cycle = draw();
            count(*place);
        }
        return place->cycle;
    }

private:
    struct Place
    {
        explicit Place(const Key& wanted) : key(wanted) {}

        const Key key;
        std::size_t bytes = 0; ///< 0 until the cycle has been drawn; under the shelf's lock
        std::mutex drawing;    ///< taken before the shelf's lock
        std::shared_ptr<const FrameCycle> cycle;
    };

    std::shared_ptr<Place> placeOf(const Key& key)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = std::ranges::find(m_places, key, [](const auto& place) { return place->key; });
        auto place = found == m_places.end() ? std::make_shared<Place>(key) : *found;
        if (found != m_places.end())
            m_places.erase(found);
        m_places.push_back(place); // the one asked for last is dropped last
        return place;
    }

    void count(Place& drawn)
    {
        const std::lock_guard lock(m_mutex);
        drawn.bytes = drawn.cycle->bytes();
        std::size_t bytes = 0;
        for (const auto& place : m_places)
            bytes += place->bytes;
        while (m_places.size() > 1 && bytes > mostKept) {
            bytes -= m_places.front()->bytes;
            m_places.pop_front();
        }
    }

    std::mutex m_mutex;
    std::deque<std::shared_ptr<Place>> m_places;
};

// A board writes into memory, not into a core's caches. For an image that these would not hold anyway the
// same is done here: it takes a third less time, and leaves the caches to those who read.
void copyPastTheCaches(std::uint8_t* target, const std::uint8_t* source, std::size_t bytes)
{
#if defined(__SSE2__)
    constexpr std::size_t cacheBytes = 4U << 20U, blockBytes = sizeof(__m128i);
    if (bytes > cacheBytes) {
        const std::size_t head = -reinterpret_cast<std::uintptr_t>(target) % blockBytes;
        const std::size_t end = head + (bytes - head) / blockBytes * blockBytes;
        std::memcpy(target, source, head);
        for (std::size_t at = head; at != end; at += blockBytes)
            _mm_stream_si128(reinterpret_cast<__m128i*>(target + at),
                             _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + at)));
        _mm_sfence();
        std::memcpy(target + end, source + end, bytes - end);
        return;
    }
#endif
    std::memcpy(target, source, bytes);
}

} // namespace

FrameCycle::FrameCycle(int width, int height) : m_width(width), m_height(height) {}

std::shared_ptr<const FrameCycle> FrameCycle::ofScene(Scene scene, int width, int height)
{
    return Shelf::instance().get({true, static_cast<int>(scene), width, height}, [&] {
        const std::shared_ptr<FrameCycle> cycle(new FrameCycle(width, height));
        cycle->m_numbered = true;
        Canvas still(width, height);
        paintStill(scene, still);
        const int count = cycleLength(width, height, 8);
        for (int i = 0; i < count; ++i) {
            auto image = still;
            paintMoving(scene, image, static_cast<float>(i) / static_cast<float>(count));
            cycle->m_images.push_back(image.exposed(i));
        }
        return cycle;
    });
}

std::shared_ptr<const FrameCycle> FrameCycle::ofPattern(Pattern pattern, int width, int height)
{
    return Shelf::instance().get({false, static_cast<int>(pattern), width, height}, [&] {
        const std::shared_ptr<FrameCycle> cycle(new FrameCycle(width, height));
        const int count = cycleLength(width, height, 16);
        for (int i = 0; i < count; ++i)
            cycle->m_images.push_back(drawPattern(pattern, width, height, i, count));
        return cycle;
    });
}

bool FrameCycle::quickToDraw(int width, int height)
{
    return static_cast<std::int64_t>(width) * height <= std::int64_t{4} << 20U;
}

std::size_t FrameCycle::bytes() const
{
    return m_images.size() * m_images.front().size();
}

void FrameCycle::write(std::uint64_t number, std::span<std::uint8_t> target) const
{
    const auto& image = m_images[number % m_images.size()];
    const auto common = std::min(image.size(), target.size());
    copyPastTheCaches(target.data(), image.data(), common);
    std::memset(target.data() + common, 0, target.size() - common);
    if (m_numbered)
        stampNumber(number + 1, target.first(common));
}

void FrameCycle::stampNumber(std::uint64_t number, std::span<std::uint8_t> target) const
{
    constexpr int digits = 6;
    const int dot = std::max(1, m_width / 400); // pixels
    const int left = 2 * dot, top = 2 * dot;
    const int boxWidth = (digits * (blockLetterColumns + 1) + 3) * dot;
    const int boxHeight = (blockLetterRows + 4) * dot;
    if (left + boxWidth > m_width || top + boxHeight > m_height)
        return;
    std::array<BlockLetter, digits> letters{};
    for (int i = digits - 1; i >= 0; --i, number /= 10)
        letters[static_cast<std::size_t>(i)] = blockLetter(static_cast<char>('0' + number % 10));
    const auto fill = [&](int x, int y, int count, int grey) {
        const auto from =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x);
        if (from + static_cast<std::size_t>(count) <= target.size())
            std::memset(target.data() + from, grey, static_cast<std::size_t>(count));
    };
    for (int y = 0; y < boxHeight; ++y) {
        fill(left, top + y, boxWidth, 16);
        const int row = y / dot - 2;
        if (row < 0 || row >= blockLetterRows)
            continue;
        for (int i = 0; i < digits; ++i)
            for (int column = 0; column < blockLetterColumns; ++column)
                if (blockLetterDot(letters[static_cast<std::size_t>(i)], column, row))
                    fill(left + (2 + i * (blockLetterColumns + 1) + column) * dot, top + y, dot, 240);
    }
}

} // namespace simulation
