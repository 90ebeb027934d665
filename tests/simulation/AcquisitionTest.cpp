// SPDX-License-Identifier: MIT
#include "AcquisitionFixture.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <functional>
#include <future>
#include <set>
#include <thread>
#include <tuple>

namespace simulation::tests {

TEST_F(Acquisition, DeliversOnlyWhileTheCameraAcquires)
{
    auto* buffers = ring(4);
    ASSERT_EQ(start(0, buffers), FG_OK) << lastLine();
    letTimePass();
    EXPECT_EQ(runtime.Fg_getLastPicNumber(m_grabber, 0), 0);
    runtime.FgCam_start(0, 0);
    EXPECT_GE(waitFor(3, 0, buffers), 3);
    runtime.FgCam_stop(0, 0);
    const auto last = runtime.Fg_getLastPicNumber(m_grabber, 0);
    letTimePass();
    EXPECT_LE(runtime.Fg_getLastPicNumber(m_grabber, 0), last + 1); // one image may have been on its way
}

TEST_F(Acquisition, OfARunningCameraBeginsWithItsNextImageAndFollowsItsRate)
{
    runtime.FgCam_start(0, 0);
    letTimePass();
    auto* buffers = ring(4);
    const auto begin = Clock::now();
    ASSERT_EQ(start(0, buffers, 21), FG_OK);
    ASSERT_EQ(waitFor(21, 0, buffers), 21) << lastLine();
    // Twenty times 5 ms after the first image; images from before the start would arrive at once. The upper
    // limit only excludes another order of magnitude.
    EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(100));
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(20));
    EXPECT_EQ(status(FG_STATUS_GRABBED_IMAGES), 21);
    EXPECT_EQ(waitFor(22, 0, buffers), FG_NOT_ACQUIRING);
}

TEST_F(Acquisition, FillsTheRingInOrderWithChangingImages)
{
    auto* buffers = ring(3);
    ASSERT_EQ(start(0, buffers, 3), FG_OK);
    runtime.FgCam_start(0, 0);
    ASSERT_EQ(waitFor(3, 0, buffers), 3) << lastLine();
    const std::set images{image(1, 0, buffers, 1200), image(2, 0, buffers, 1200), image(3, 0, buffers, 1200)};
    EXPECT_EQ(images.size(), 3U);
    EXPECT_EQ(runtime.Fg_getImagePtrEx(m_grabber, 4, 0, buffers),
              runtime.Fg_getImagePtrEx(m_grabber, 1, 0, buffers));
    EXPECT_EQ(status(FG_STATUS_BUFFER_COUNT), 3);
}

TEST_F(Acquisition, KnowsWhenEachImageOfTheRingWasTaken)
{
    auto* buffers = ring(3);
    ASSERT_EQ(start(0, buffers, 5), FG_OK);
    runtime.FgCam_start(0, 0);
    ASSERT_EQ(waitFor(5, 0, buffers), 5) << lastLine();
    std::uint64_t earlier = 0;
    for (const FgFrameIndex frame : {3, 4, 5}) {
        std::uint64_t taken = 0;
        ASSERT_EQ(runtime.Fg_getParameterEx(m_grabber, FG_TIMESTAMP_NS, &taken, 0, buffers, frame), FG_OK);
        EXPECT_GT(taken, earlier);
        earlier = taken;
    }
    EXPECT_GT(earlier, 15'000'000U); // four times 5 ms, but the first image may have been late
    for (const FgFrameIndex frame : {2, 6})
        EXPECT_EQ(runtime.Fg_getParameterEx(m_grabber, FG_TIMESTAMP_NS, &earlier, 0, buffers, frame),
                  FG_INVALID_ARGUMENT);
}

TEST_F(Acquisition, ShowsASizeMismatchAsAStreamCutIntoOtherLines)
{
    auto* whole = ring(1);
    ASSERT_EQ(start(0, whole, 1), FG_OK);
    runtime.FgCam_start(0, 0);
    ASSERT_EQ(waitFor(1, 0, whole), 1);
    const auto reference = image(1, 0, whole, 1200);
    runtime.FgCam_stop(0, 0);
    for (const auto& [width, height] : {std::pair(24, 30), {50, 30}, {40, 20}, {64, 64}}) {
        const auto bytes = static_cast<std::size_t>(width * height);
        auto* other = ring(1, bytes);
        std::memset(runtime.Fg_getImagePtrEx(m_grabber, 1, 0, other), 9, bytes); // an earlier picture
        set(FG_WIDTH, 0, width);
        set(FG_HEIGHT, 0, height);
        ASSERT_EQ(start(0, other, 1), FG_OK) << lastLine();
        runtime.FgCam_start(0, 0);
        ASSERT_EQ(waitFor(1, 0, other), 1);
        auto expected = reference;
        expected.resize(bytes, 0); // black where the camera sends no pixels
        EXPECT_EQ(image(1, 0, other, bytes), expected) << width << " x " << height;
        runtime.FgCam_stop(0, 0);
    }
}

TEST_F(Acquisition, DeliversTheGeneratorsPatternInPlaceOfTheCamera)
{
    const auto ramp = [](int x, int y, int image) { return x + y + 16 * image; };
    const auto checkerboard = [](int x, int y, int image) {
        return ((x + 64 * image / 11) / 32 + y / 32) % 2 == 0 ? 24 : 224;
    };
    using Pattern = std::function<int(int x, int y, int image)>;
    // The second one's images are larger than the caches, and the second of them begins at an odd address.
    const std::vector<std::tuple<unsigned int, int, int, Pattern>> channels = {{0, 40, 30, ramp},
                                                                               {1, 2049, 2051, checkerboard}};
    for (const auto& [dma, width, height, pattern] : channels) {
        const auto bytes = static_cast<std::size_t>(width * height);
        auto* buffers = ring(2, bytes);
        set(FG_GEN_ENABLE, dma, 1);
        set(FG_GEN_FRAMERATE, dma, 0); // at a rate, a slow machine would skip images
        set(FG_WIDTH, dma, width);
        set(FG_HEIGHT, dma, height);
        ASSERT_EQ(start(dma, buffers, 2), FG_OK) << lastLine();
        ASSERT_EQ(waitFor(2, dma, buffers), 2) << lastLine();
        for (int number = 0; number < 2; ++number) {
            std::vector<std::uint8_t> expected;
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x)
                    expected.push_back(static_cast<std::uint8_t>(pattern(x, y, number)));
            const auto received = image(number + 1, dma, buffers, bytes);
            const auto differing = std::mismatch(received.begin(), received.end(), expected.begin()).first;
            EXPECT_EQ(differing - received.begin(), received.end() - received.begin())
                << "channel " << dma << ", image " << number;
        }
    }
}

TEST_F(Acquisition, EndsABlockedWaitWhenItIsStoppedOrTheBoardFreed)
{
    auto* buffers = ring(2);
    ASSERT_EQ(start(0, buffers), FG_OK);
    const auto wait = [&] { return waitFor(1, 0, buffers); };
    auto stopped = std::async(std::launch::async, wait);
    untilBlocked(1);
    EXPECT_EQ(runtime.Fg_stopAcquire(m_grabber, 0), FG_OK);
    EXPECT_EQ(stopped.get(), FG_NOT_ACQUIRING);
    ASSERT_EQ(start(0, buffers), FG_OK);
    auto freed = std::async(std::launch::async, wait);
    untilBlocked(2);
    free(m_grabber);
    EXPECT_THAT(freed.get(), testing::AnyOf(FG_NOT_ACQUIRING,
                                            // If ring or board were freed before it blocked:
                                            FG_INVALID_MEMORY, FG_INVALID_HANDLE));
    EXPECT_EQ(runtime.FgSim_live(FGSIM_RINGS), 0);
}

TEST_F(Acquisition, WritesNothingAfterItWasStopped)
{
    std::vector<std::uint8_t> memory(4 * 1200, 0);
    for (int round = 0; round < 20; ++round) {
        auto* head = runtime.Fg_AllocMemHead(m_grabber, memory.size(), 4);
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(runtime.Fg_AddMem(m_grabber, memory.data() + i * 1200, 1200, i, head), i);
        set(FG_GEN_ENABLE, 0, 1);
        ASSERT_EQ(start(0, head), FG_OK) << lastLine();
        EXPECT_EQ(runtime.Fg_FreeMemHead(m_grabber, head), FG_ACQUISITION_RUNNING);
        ASSERT_GE(waitFor(10, 0, head), 10);
        ASSERT_EQ(runtime.Fg_stopAcquireEx(m_grabber, 0, head, 0), FG_OK);
        // Sanitizers see a late write here; without them the bytes do.
        std::fill(memory.begin(), memory.end(), std::uint8_t{7});
        EXPECT_EQ(runtime.Fg_FreeMemHead(m_grabber, head), FG_OK);
        EXPECT_EQ(std::count(memory.begin(), memory.end(), 7), 4800);
    }
}

TEST_F(Acquisition, RefusesWhatCannotWork)
{
    auto* small = ring(2, 1199);
    auto* buffers = ring(2);
    EXPECT_EQ(start(0, small), FG_INVALID_MEMORY);
    EXPECT_EQ(runtime.Fg_Acquire(m_grabber, 0, 1), FG_INVALID_MEMORY);
    EXPECT_EQ(start(0, buffers, 0), FG_INVALID_ARGUMENT);
    EXPECT_EQ(start(2, buffers), FG_INVALID_DMA);
    ASSERT_EQ(start(0, buffers), FG_OK);
    const double width = 20;
    EXPECT_EQ(runtime.Fg_setParameterWithType(m_grabber, FG_WIDTH, &width, 0, FG_TYPE_DOUBLE),
              FG_ACQUISITION_RUNNING);
    EXPECT_EQ(runtime.Fg_getLastPicNumberBlockingEx(m_grabber, 1, 0, 0, buffers), FG_TIMEOUT);
    EXPECT_EQ(start(0, ring(2)), FG_ACQUISITION_RUNNING);
    EXPECT_EQ(start(1, buffers), FG_ACQUISITION_RUNNING);
    EXPECT_EQ(runtime.Fg_FreeMemEx(m_grabber, buffers), FG_ACQUISITION_RUNNING);
    EXPECT_EQ(runtime.Fg_getLastPicNumberEx(m_grabber, 0, small), FG_INVALID_MEMORY);
    EXPECT_EQ(runtime.Fg_stopAcquire(m_grabber, 0), FG_OK);
    EXPECT_EQ(runtime.Fg_stopAcquire(m_grabber, 0), FG_OK);
    EXPECT_EQ(runtime.Fg_AllocMemEx(m_grabber, 100, 0), nullptr);
}

TEST_F(Acquisition, UsesTheBuffersOfTheChannelWhereNoRingIsNamed)
{
    auto* memory = runtime.Fg_AllocMem(m_grabber, 2400, 2, 0);
    ASSERT_NE(memory, nullptr) << lastLine();
    runtime.FgCam_start(0, 0);
    ASSERT_EQ(runtime.Fg_Acquire(m_grabber, 0, 2), FG_OK) << lastLine();
    EXPECT_EQ(runtime.Fg_getImage(m_grabber, FG_IMAGE_NUMBER, 2, 0, GENEROUS), 2);
    EXPECT_EQ(runtime.Fg_getImagePtr(m_grabber, 1, 0), memory);
    EXPECT_EQ(runtime.Fg_FreeMem(m_grabber, 0), FG_OK) << lastLine();
    EXPECT_EQ(runtime.FgSim_live(FGSIM_RING_BYTES), 0);
    EXPECT_EQ(runtime.Fg_FreeMem(m_grabber, 0), FG_INVALID_MEMORY);
}

TEST_F(Acquisition, CallsTheHandlerForEachImageUntilItEnds)
{
    std::vector<FgFrameIndex> frames;
    const FgApcCallback handler = [](FgFrameIndex frame, void* data) {
        static_cast<std::vector<FgFrameIndex>*>(data)->push_back(frame);
        return frame == 5 ? 1 : 0;
    };
    auto* buffers = ring(2);
    const FgApcControl control{0, handler, &frames, 60000, 0};
    EXPECT_EQ(runtime.Fg_registerApcHandler(m_grabber, 0, &control, buffers), FG_OK);
    runtime.FgCam_start(0, 0);
    ASSERT_EQ(start(0, buffers), FG_OK);
    ASSERT_GE(waitFor(7, 0, buffers), 7);
    runtime.Fg_stopAcquire(m_grabber, 0);
    EXPECT_THAT(frames, testing::ElementsAre(1, 2, 3, 4, 5));
}

TEST_F(Acquisition, RaisesEventsForWaitersAndCallbacks)
{
    const auto frame = event("FG_START_OF_FRAME_DMA0");
    const auto camera = event("FG_CAMERA_STARTED"), stopped = event("FG_CAMERA_STOPPED");
    EXPECT_STREQ(runtime.Fg_getEventName(m_grabber, frame), "FG_START_OF_FRAME_DMA0");
    EXPECT_EQ(runtime.Fg_getEventCount(m_grabber), 8);
    EXPECT_EQ(event("FG_NOTHING"), 0U);

    std::promise<void> called;
    const FgEventCallback callback = [](std::uint64_t, void* data, const FgEventInfo* info) {
        if (info->frame == 2)
            static_cast<std::promise<void>*>(data)->set_value();
        return 0;
    };
    EXPECT_EQ(runtime.Fg_registerEventCallback(m_grabber, frame, callback, &called, 0, nullptr), FG_OK);
    EXPECT_EQ(runtime.Fg_activateEvents(m_grabber, frame | camera | stopped, 1), FG_OK);
    ASSERT_EQ(start(0, ring(2)), FG_OK);
    EXPECT_EQ(runtime.FgCam_stop(0, 0), FG_OK); // one at rest raises nothing
    EXPECT_EQ(runtime.Fg_eventWait(m_grabber, camera | stopped, 0, 0, nullptr), 0U);
    EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_TIMEOUT);
    runtime.FgCam_start(0, 0);
    FgEventInfo info{};
    EXPECT_EQ(runtime.Fg_eventWait(m_grabber, camera, 60000, 0, &info), camera);
    EXPECT_EQ(info.mask, camera);
    called.get_future().wait();
    EXPECT_EQ(runtime.Fg_registerEventCallback(m_grabber, frame, nullptr, nullptr, 0, nullptr), FG_OK);
    EXPECT_EQ(runtime.FgCam_stop(0, 0), FG_OK);
    EXPECT_EQ(runtime.Fg_eventWait(m_grabber, stopped, 60000, 0, nullptr), stopped);
}

TEST_F(Acquisition, AFloodOfOneEventIsDroppedAndCountedAndPushesOutNoOther)
{
    struct Listener
    {
        std::promise<void> release, done;
        std::shared_future<void> released = release.get_future().share();
        std::uint64_t last;
        unsigned int delivered = 0, dropped = 0;
    } listener;
    const FgEventCallback callback = [](std::uint64_t event, void* data, const FgEventInfo* info) {
        auto& target = *static_cast<Listener*>(data);
        target.released.wait();
        ++target.delivered;
        target.dropped += info->droppedEvents;
        if (event == target.last)
            target.done.set_value();
        return 0;
    };
    const auto frame = event("FG_START_OF_FRAME_DMA0");
    listener.last = event("FG_CAMERA_STARTED");
    runtime.Fg_registerEventCallback(m_grabber, frame | listener.last, callback, &listener, 0, nullptr);
    runtime.Fg_activateEvents(m_grabber, frame | listener.last, 1);
    for (int i = 0; i < 1000; ++i)
        runtime.FgSim_raiseEvent(0, "FG_START_OF_FRAME_DMA0");
    runtime.FgSim_raiseEvent(0, "FG_CAMERA_STARTED");
    listener.release.set_value();
    EXPECT_EQ(listener.done.get_future().wait_for(std::chrono::seconds(GENEROUS)), std::future_status::ready);
    runtime.Fg_registerEventCallback(m_grabber, frame | listener.last, nullptr, nullptr, 0, nullptr);
    EXPECT_GT(listener.dropped, 0U);
    EXPECT_EQ(listener.delivered + listener.dropped, 1001U);
}

TEST_F(Acquisition, SurvivesStartsStopsAndReadersFromManyThreads)
{
    auto* first = ring(4);
    auto* second = ring(4);
    set(FG_GEN_ENABLE, 0, 1);
    std::atomic<bool> go{true};
    std::vector<std::thread> threads;
    const auto repeat = [&](auto work) {
        threads.emplace_back([&go, work] {
            for (; go; std::this_thread::yield())
                work();
        });
    };
    for (const unsigned int dma : {0U, 1U}) {
        repeat([=, this] { start(dma, dma == 0 ? first : second); });
        repeat([=, this] { runtime.Fg_stopAcquireEx(m_grabber, dma, nullptr, 0); });
    }
    repeat([&] { runtime.FgCam_start(0, 1); });
    repeat([&] { runtime.FgCam_stop(0, 1); });
    const auto end = Clock::now() + std::chrono::seconds(10);
    for (int round = 0; round < 200 && Clock::now() < end; ++round) {
        runtime.Fg_getLastPicNumberBlockingEx(m_grabber, 1, 0, 1, nullptr);
        runtime.Fg_getLastPicNumberBlockingEx(m_grabber, 1, 1, 0, nullptr);
    }
    go = false;
    for (auto& thread : threads)
        thread.join();
    // The progress of each thread varies; both channels must still work.
    EXPECT_EQ(runtime.FgCam_start(0, 1), FG_OK);
    for (const unsigned int dma : {0U, 1U}) {
        auto* buffers = dma == 0 ? first : second;
        runtime.Fg_stopAcquireEx(m_grabber, dma, nullptr, 0);
        EXPECT_EQ(start(dma, buffers), FG_OK) << lastLine();
        EXPECT_GE(waitFor(20, dma, buffers), 20) << lastLine();
    }
    free(m_grabber);
    EXPECT_EQ(runtime.FgSim_live(FGSIM_ACQUIRING_CHANNELS), 0);
}

} // namespace simulation::tests
