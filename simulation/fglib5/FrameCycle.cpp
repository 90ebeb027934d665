#include "FrameCycle.h"

#include "BlockLetters.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <functional>
#include <mutex>
#include <tuple>

namespace simulation {

namespace {

constexpr std::size_t largestCycle = 48UL << 20U; // bytes
constexpr std::size_t mostKept = 256UL << 20U;    // bytes

int cycleLength(int width, int height, int wanted)
{
    const auto bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    return std::clamp(static_cast<int>(largestCycle / bytes), 2, wanted);
}

// The cycles drawn of late. Starting a camera again, or a second channel with the same pattern, draws
// nothing.
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
        const std::lock_guard lock(mutex_); // held while drawing: who wants the same cycle waits for it
        const auto found = std::ranges::find(cycles_, key, &Entry::first);
        if (found != cycles_.end())
            return found->second;
        cycles_.emplace_back(key, draw());
        auto kept = cycles_.back().second;
        dropOldest();
        return kept;
    }

private:
    using Entry = std::pair<Key, std::shared_ptr<const FrameCycle>>;

    void dropOldest()
    {
        std::size_t bytes = 0;
        for (const auto& [key, cycle] : cycles_)
            bytes += cycle->bytes();
        while (cycles_.size() > 1 && bytes > mostKept) {
            bytes -= cycles_.front().second->bytes();
            cycles_.pop_front();
        }
    }

    std::mutex mutex_;
    std::deque<Entry> cycles_;
};

} // namespace

FrameCycle::FrameCycle(int width, int height) : width_(width), height_(height) {}

std::shared_ptr<const FrameCycle> FrameCycle::ofScene(Scene scene, int width, int height)
{
    return Shelf::instance().get({true, static_cast<int>(scene), width, height}, [&] {
        const std::shared_ptr<FrameCycle> cycle(new FrameCycle(width, height));
        cycle->numbered_ = true;
        Canvas still(width, height);
        paintStill(scene, still);
        const int count = cycleLength(width, height, 8);
        for (int i = 0; i < count; ++i) {
            auto image = still;
            paintMoving(scene, image, static_cast<float>(i) / static_cast<float>(count));
            cycle->images_.push_back(image.exposed(i));
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
            cycle->images_.push_back(drawPattern(pattern, width, height, i, count));
        return cycle;
    });
}

std::size_t FrameCycle::bytes() const
{
    return images_.size() * images_.front().size();
}

void FrameCycle::write(std::uint64_t number, std::span<std::uint8_t> target) const
{
    const auto& image = images_[number % images_.size()];
    const auto common = std::min(image.size(), target.size());
    std::memcpy(target.data(), image.data(), common);
    std::memset(target.data() + common, 0, target.size() - common);
    if (numbered_)
        stampNumber(number + 1, target.first(common));
}

void FrameCycle::stampNumber(std::uint64_t number, std::span<std::uint8_t> target) const
{
    constexpr int digits = 6;
    const int dot = std::max(1, width_ / 400); // pixels
    const int left = 2 * dot, top = 2 * dot;
    const int boxWidth = (digits * (blockLetterColumns + 1) + 3) * dot;
    const int boxHeight = (blockLetterRows + 4) * dot;
    if (left + boxWidth > width_ || top + boxHeight > height_)
        return;
    std::array<BlockLetter, digits> letters{};
    for (int i = digits - 1; i >= 0; --i, number /= 10)
        letters[static_cast<std::size_t>(i)] = blockLetter(static_cast<char>('0' + number % 10));
    const auto fill = [&](int x, int y, int count, int grey) {
        const auto from =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
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
