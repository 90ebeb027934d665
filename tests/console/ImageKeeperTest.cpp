// SPDX-License-Identifier: MIT
#include "front-ends/shared/ImageKeeper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace ovra;
using testing::ElementsAre;

namespace {

struct ImageKeeping : testing::Test
{
    void show(std::vector<std::uint8_t> pixels, int width, int height, std::int64_t number)
    {
        keeper.showImage({pixels.data(), width, height, number});
    }

    boost::shared_ptr<display::DisplayScene> scene = display::DisplayScene::create();
    frontend::ImageKeeper keeper{scene};
};

TEST_F(ImageKeeping, KeepsACopyOfTheNewestImageWhateverItsSizeAndHandsEachToItsListener)
{
    std::vector<std::int64_t> heard;
    keeper.tap().setListener([&](const display::Image& image) { heard.push_back(image.number); });
    show({1, 2, 3, 4, 5, 6}, 3, 2, 7);
    show({9, 8}, 1, 2, 8);
    keeper.tap().setListener({});
    show({7, 6}, 2, 1, 1);
    const auto newest = keeper.newest();
    EXPECT_THAT(newest.bytes, ElementsAre(7, 6));
    EXPECT_EQ(newest.description.width, 2);
    EXPECT_EQ(newest.view().pixels[1], 6);
    EXPECT_EQ(keeper.count(), 3);
    EXPECT_THAT(heard, ElementsAre(7, 8));
}

} // namespace
