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

TEST_F(ImageKeeping, KeepsACopyOfTheNewestImageWhateverItsSize)
{
    show({1, 2, 3, 4, 5, 6}, 3, 2, 7);
    show({9, 8}, 1, 2, 8);
    const auto newest = keeper.newest();
    EXPECT_THAT(newest.pixels, ElementsAre(9, 8));
    EXPECT_EQ(newest.width, 1);
    EXPECT_EQ(newest.height, 2);
    EXPECT_EQ(newest.number, 8);
    EXPECT_EQ(keeper.count(), 2);
}

TEST_F(ImageKeeping, CountsTheRateAnewWhenNumbersBeginAnew)
{
    EXPECT_EQ(keeper.imagesPerSecond(), 0);
    show({1}, 1, 1, 1);
    show({1}, 1, 1, 1000);
    EXPECT_GT(keeper.imagesPerSecond(), 0);
    show({1}, 1, 1, 1);
    EXPECT_EQ(keeper.imagesPerSecond(), 0);
}

} // namespace
