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

constexpr std::size_t MAX_CYCLE_BYTES = 48UL << 20U;  // bytes
constexpr std::size_t MAX_CACHE_BYTES = 256UL << 20U; // bytes

int cycleLength(int width, int height, int wanted)
{
    const auto bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    return std::clamp(static_cast<int>(MAX_CYCLE_BYTES / bytes), 1, wanted);
}

// The cycles asked for of late. Starting a camera again, or a second channel with the same pattern, draws
// nothing. Who wants a cycle that is being drawn waits for it, and for no other one.
class CycleCache
{
public:
    using Key = std::tuple<bool, int, int, int>; ///< is it a scene, which one, width, height
    using Draw = std::function<std::shared_ptr<const FrameCycle>()>;

    static CycleCache& instance()
    {
        static auto* cache = new CycleCache; // acquisition threads may outlive the process's static objects
        return *cache;
    }

    std::shared_ptr<const FrameCycle> get(const Key& key, const Draw& draw)
    {
        const auto slot = slotOf(key);
        const std::lock_guard drawing(slot->drawing);
        if (!slot->cycle) {
            slot->cycle = draw();
            count(*slot);
        }
        return slot->cycle;
    }

private:
    struct Slot
    {
        explicit Slot(const Key& wanted) : key(wanted) {}

        const Key key;
        std::size_t bytes = 0; ///< 0 until the cycle has been drawn; under the cache's lock
        std::mutex drawing;    ///< taken before the cache's lock
        std::shared_ptr<const FrameCycle> cycle;
    };

    std::shared_ptr<Slot> slotOf(const Key& key)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = std::ranges::find(m_slots, key, [](const auto& slot) { return slot->key; });
        auto slot = found == m_slots.end() ? std::make_shared<Slot>(key) : *found;
        if (found != m_slots.end())
            m_slots.erase(found);
        m_slots.push_back(slot); // the one asked for last is dropped last
        return slot;
    }

    void count(Slot& drawn)
    {
        const std::lock_guard lock(m_mutex);
        drawn.bytes = drawn.cycle->bytes();
        std::size_t bytes = 0;
        for (const auto& slot : m_slots)
            bytes += slot->bytes;
        while (m_slots.size() > 1 && bytes > MAX_CACHE_BYTES) {
            bytes -= m_slots.front()->bytes;
            m_slots.pop_front();
        }
    }

    std::mutex m_mutex;
    std::deque<std::shared_ptr<Slot>> m_slots;
};

// A board writes into memory, not into a core's caches. For an image that these would not hold anyway the
// same is done here: it takes a third less time, and leaves the caches to those who read.
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

} // namespace

FrameCycle::FrameCycle(int width, int height) : m_width(width), m_height(height) {}

std::shared_ptr<const FrameCycle> FrameCycle::ofScene(Scene scene, int width, int height)
{
    return CycleCache::instance().get({true, static_cast<int>(scene), width, height}, [&] {
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
    return CycleCache::instance().get({false, static_cast<int>(pattern), width, height}, [&] {
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
    constexpr int DIGITS = 6;
    const int dot = std::max(1, m_width / 400); // pixels
    const int left = 2 * dot, top = 2 * dot;
    const int boxWidth = (DIGITS * (BLOCK_LETTER_COLUMNS + 1) + 3) * dot;
    const int boxHeight = (BLOCK_LETTER_ROWS + 4) * dot;
    if (left + boxWidth > m_width || top + boxHeight > m_height)
        return;
    std::array<BlockLetter, DIGITS> letters{};
    for (int i = DIGITS - 1; i >= 0; --i, number /= 10)
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
        if (row < 0 || row >= BLOCK_LETTER_ROWS)
            continue;
        for (int i = 0; i < DIGITS; ++i)
            for (int column = 0; column < BLOCK_LETTER_COLUMNS; ++column)
                if (blockLetterDot(letters[static_cast<std::size_t>(i)], column, row))
                    fill(left + (2 + i * (BLOCK_LETTER_COLUMNS + 1) + column) * dot, top + y, dot, 240);
    }
}

} // namespace simulation
