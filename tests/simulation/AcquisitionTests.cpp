#include "Fixture.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <future>
#include <span>
#include <thread>

namespace simulation::tests {

using Clock = std::chrono::steady_clock;

class Acquisition : public SimulationTest
{
protected:
    static constexpr int generous = 60; ///< seconds; a limit, not a wait

    Acquisition()
    {
        useMachine(smallMachine);
        grabber_ = open();
    }

    ~Acquisition() override
    {
        runtime.FgCam_stop(0, 0);
        runtime.FgCam_stop(0, 1);
    }

    FgBufferRing* ring(FgFrameIndex buffers, std::size_t each = 40 * 30)
    {
        return runtime.Fg_AllocMemEx(grabber_, each * static_cast<std::size_t>(buffers), buffers);
    }

    int start(unsigned int dma, FgBufferRing* ring, FgFrameIndex frames = FG_GRAB_INFINITE)
    {
        return runtime.Fg_AcquireEx(grabber_, dma, frames, FG_ACQUIRE_STANDARD, ring);
    }

    FgFrameIndex waitFor(FgFrameIndex frame, unsigned int dma, FgBufferRing* ring)
    {
        return runtime.Fg_getLastPicNumberBlockingEx(grabber_, frame, dma, generous, ring);
    }

    std::vector<std::uint8_t> image(FgFrameIndex frame, unsigned int dma, FgBufferRing* ring,
                                    std::size_t bytes)
    {
        const auto* pixels = static_cast<std::uint8_t*>(runtime.Fg_getImagePtrEx(grabber_, frame, dma, ring));
        return {pixels, pixels + bytes};
    }

    void set(int parameter, unsigned int dma, double value)
    {
        EXPECT_EQ(runtime.Fg_setParameterWithType(grabber_, parameter, &value, dma, FG_TYPE_DOUBLE), FG_OK)
            << lastLine();
    }

    /// Lets the other channel's generator deliver for 100 ms; a camera would send twenty images meanwhile.
    void letTimePass()
    {
        auto* other = ring(2);
        set(FG_GEN_ENABLE, 1, 1);
        ASSERT_EQ(start(1, other, 11), FG_OK) << lastLine();
        ASSERT_EQ(waitFor(11, 1, other), 11) << lastLine();
        runtime.Fg_FreeMemEx(grabber_, other);
    }

    FgFrameIndex status(int selector, unsigned int dma)
    {
        return runtime.Fg_getStatus(grabber_, selector, 0, dma);
    }

    Fg_Struct* grabber_;
};

TEST_F(Acquisition, DeliversOnlyWhileTheCameraAcquires)
{
    auto* buffers = ring(4);
    ASSERT_EQ(start(0, buffers), FG_OK) << lastLine();
    letTimePass();
    EXPECT_EQ(runtime.Fg_getLastPicNumber(grabber_, 0), 0);
    EXPECT_EQ(status(FG_STATUS_ACQUIRING, 0), 1);
    ASSERT_EQ(runtime.FgCam_start(0, 0), FG_OK);
    EXPECT_GE(waitFor(3, 0, buffers), 3);
    ASSERT_EQ(runtime.FgCam_stop(0, 0), FG_OK);
    const auto last = runtime.Fg_getLastPicNumber(grabber_, 0);
    letTimePass();
    EXPECT_LE(runtime.Fg_getLastPicNumber(grabber_, 0), last + 1); // one image may have been under way
    EXPECT_EQ(runtime.Fg_stopAcquireEx(grabber_, 0, buffers, 0), FG_OK);
    EXPECT_EQ(status(FG_STATUS_ACQUIRING, 0), 0);
}

TEST_F(Acquisition, FollowsTheSourcesRate)
{
    auto* buffers = ring(4);
    ASSERT_EQ(start(0, buffers, 21), FG_OK);
    const auto begin = Clock::now();
    runtime.FgCam_start(0, 0);
    ASSERT_EQ(waitFor(21, 0, buffers), 21) << lastLine();
    // Twenty times 5 ms after the first image. The upper limit only says that it is not another order of
    // magnitude.
    EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(100));
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(20));
    EXPECT_EQ(status(FG_STATUS_GRABBED_IMAGES, 0), 21);
    EXPECT_EQ(waitFor(22, 0, buffers), FG_NOT_ACQUIRING);
}

TEST_F(Acquisition, OfARunningCameraBeginsWithItsNextImage)
{
    runtime.FgCam_start(0, 0);
    letTimePass();
    auto* buffers = ring(4);
    const auto begin = Clock::now();
    ASSERT_EQ(start(0, buffers, 11), FG_OK);
    ASSERT_EQ(waitFor(11, 0, buffers), 11) << lastLine();
    // The images of the time before would be there at once.
    EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(50));
}

TEST_F(Acquisition, FillsTheRingInOrderWithChangingImages)
{
    auto* buffers = ring(3);
    ASSERT_EQ(start(0, buffers, 3), FG_OK);
    runtime.FgCam_start(0, 0);
    ASSERT_EQ(waitFor(3, 0, buffers), 3) << lastLine();
    const auto first = image(1, 0, buffers, 1200), second = image(2, 0, buffers, 1200),
               third = image(3, 0, buffers, 1200);
    EXPECT_NE(first, second);
    EXPECT_NE(second, third);
    EXPECT_NE(first, third);
    EXPECT_EQ(runtime.Fg_getImagePtrEx(grabber_, 4, 0, buffers),
              runtime.Fg_getImagePtrEx(grabber_, 1, 0, buffers));
    EXPECT_EQ(status(FG_STATUS_BUFFER_COUNT, 0), 3);
}

TEST_F(Acquisition, ShowsASizeMismatchAsAStreamCutIntoOtherLines)
{
    auto* whole = ring(1);
    ASSERT_EQ(start(0, whole, 1), FG_OK);
    runtime.FgCam_start(0, 0);
    ASSERT_EQ(waitFor(1, 0, whole), 1);
    const auto reference = image(1, 0, whole, 1200);
    runtime.FgCam_stop(0, 0);
    struct Row
    {
        int width;
        int height;
    };
    for (const auto& row : {Row{24, 30}, Row{50, 30}, Row{40, 20}, Row{64, 64}}) {
        const auto bytes = static_cast<std::size_t>(row.width * row.height);
        auto* other = ring(1, bytes);
        std::memset(runtime.Fg_getImagePtrEx(grabber_, 1, 0, other), 9, bytes); // an earlier picture
        set(FG_WIDTH, 0, row.width);
        set(FG_HEIGHT, 0, row.height);
        ASSERT_EQ(start(0, other, 1), FG_OK) << lastLine();
        runtime.FgCam_start(0, 0);
        ASSERT_EQ(waitFor(1, 0, other), 1);
        auto expected = reference;
        expected.resize(bytes, 0); // black where the camera sends nothing any more
        EXPECT_EQ(image(1, 0, other, bytes), expected) << row.width << " x " << row.height;
        runtime.FgCam_stop(0, 0);
    }
}

TEST_F(Acquisition, DeliversTheGeneratorsPatternInPlaceOfTheCamera)
{
    auto* buffers = ring(2);
    set(FG_GEN_ENABLE, 0, 1);
    ASSERT_EQ(start(0, buffers, 2), FG_OK);
    ASSERT_EQ(waitFor(2, 0, buffers), 2) << lastLine();
    const auto first = image(1, 0, buffers, 1200), second = image(2, 0, buffers, 1200);
    for (std::size_t i = 0; i < 1200; ++i) {
        ASSERT_EQ(first[i], (i % 40 + i / 40) % 256) << "pixel " << i;
        ASSERT_EQ(second[i], (i % 40 + i / 40 + 16) % 256) << "pixel " << i;
    }
}

TEST_F(Acquisition, TakesUpTheGeneratorWhileRunning)
{
    auto* buffers = ring(2);
    ASSERT_EQ(start(0, buffers), FG_OK);
    EXPECT_EQ(runtime.Fg_getLastPicNumberBlockingEx(grabber_, 1, 0, 0, buffers), FG_TIMEOUT);
    set(FG_GEN_ENABLE, 0, 1);
    EXPECT_GE(waitFor(5, 0, buffers), 5);
    const double width = 20;
    EXPECT_EQ(runtime.Fg_setParameterWithType(grabber_, FG_WIDTH, &width, 0, FG_TYPE_DOUBLE),
              FG_ACQUISITION_RUNNING);
}

TEST_F(Acquisition, EndsABlockedWaitWhenItIsStopped)
{
    auto* buffers = ring(2);
    ASSERT_EQ(start(0, buffers), FG_OK);
    auto waiting = std::async(std::launch::async, [&] { return waitFor(1, 0, buffers); });
    while (waiting.wait_for(std::chrono::milliseconds(1)) == std::future_status::timeout &&
           runtime.FgSim_callCount("Fg_getLastPicNumberBlockingEx") == 0) {
    }
    EXPECT_EQ(runtime.Fg_stopAcquire(grabber_, 0), FG_OK);
    EXPECT_EQ(waiting.get(), FG_NOT_ACQUIRING);
}

TEST_F(Acquisition, WritesNothingAfterItWasStopped)
{
    std::vector<std::uint8_t> memory(4 * 1200, 0);
    for (int round = 0; round < 20; ++round) {
        auto* head = runtime.Fg_AllocMemHead(grabber_, memory.size(), 4);
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(runtime.Fg_AddMem(grabber_, memory.data() + i * 1200, 1200, i, head), i);
        set(FG_GEN_ENABLE, 0, 1);
        ASSERT_EQ(start(0, head), FG_OK) << lastLine();
        EXPECT_EQ(runtime.Fg_FreeMemHead(grabber_, head), FG_ACQUISITION_RUNNING);
        ASSERT_GE(waitFor(10, 0, head), 10);
        ASSERT_EQ(runtime.Fg_stopAcquireEx(grabber_, 0, head, 0), FG_OK);
        // Sanitizers see a late write here; without them the bytes do.
        std::fill(memory.begin(), memory.end(), std::uint8_t{7});
        EXPECT_EQ(runtime.Fg_FreeMemHead(grabber_, head), FG_OK);
        EXPECT_EQ(std::count(memory.begin(), memory.end(), 7), 4800);
    }
}

TEST_F(Acquisition, RefusesWhatCannotWork)
{
    auto* small = ring(2, 1199);
    auto* buffers = ring(2);
    EXPECT_EQ(start(0, small), FG_INVALID_MEMORY);
    EXPECT_EQ(runtime.Fg_Acquire(grabber_, 0, 1), FG_INVALID_MEMORY);
    EXPECT_EQ(start(0, buffers, 0), FG_INVALID_ARGUMENT);
    EXPECT_EQ(start(2, buffers), FG_INVALID_DMA);
    ASSERT_EQ(start(0, buffers), FG_OK);
    EXPECT_EQ(start(0, ring(2)), FG_ACQUISITION_RUNNING);
    EXPECT_EQ(start(1, buffers), FG_ACQUISITION_RUNNING);
    EXPECT_EQ(runtime.Fg_FreeMemEx(grabber_, buffers), FG_ACQUISITION_RUNNING);
    EXPECT_EQ(runtime.Fg_getLastPicNumberEx(grabber_, 0, small), FG_INVALID_MEMORY);
    EXPECT_EQ(runtime.Fg_stopAcquire(grabber_, 0), FG_OK);
    EXPECT_EQ(runtime.Fg_stopAcquire(grabber_, 0), FG_OK);
    EXPECT_EQ(runtime.Fg_AllocMemEx(grabber_, 100, 0), nullptr);
}

TEST_F(Acquisition, UsesTheBuffersOfTheChannelWhereNoRingIsNamed)
{
    auto* memory = runtime.Fg_AllocMem(grabber_, 2400, 2, 0);
    ASSERT_NE(memory, nullptr) << lastLine();
    runtime.FgCam_start(0, 0);
    ASSERT_EQ(runtime.Fg_Acquire(grabber_, 0, 2), FG_OK) << lastLine();
    EXPECT_EQ(runtime.Fg_getImage(grabber_, FG_IMAGE_NUMBER, 2, 0, generous), 2);
    EXPECT_EQ(runtime.Fg_getImagePtr(grabber_, 1, 0), memory);
    EXPECT_EQ(runtime.Fg_FreeMem(grabber_, 0), FG_OK) << lastLine();
    EXPECT_EQ(runtime.FgSim_live(FGSIM_RING_BYTES), 0);
    EXPECT_EQ(runtime.Fg_FreeMem(grabber_, 0), FG_INVALID_MEMORY);
}

TEST_F(Acquisition, CallsTheHandlerForEachImageUntilItEnds)
{
    struct Seen
    {
        std::vector<FgFrameIndex> frames;
        std::promise<void> done;
    } seen;
    const FgApcCallback handler = [](FgFrameIndex frame, void* data) {
        auto& target = *static_cast<Seen*>(data);
        target.frames.push_back(frame);
        if (frame == 5)
            target.done.set_value();
        return frame == 5 ? 1 : 0;
    };
    auto* buffers = ring(2);
    const FgApcControl control{0, handler, &seen, 60000, 0};
    EXPECT_EQ(runtime.Fg_registerApcHandler(grabber_, 0, &control, buffers), FG_OK);
    runtime.FgCam_start(0, 0);
    ASSERT_EQ(start(0, buffers), FG_OK);
    seen.done.get_future().wait();
    ASSERT_GE(waitFor(7, 0, buffers), 7);
    runtime.Fg_stopAcquire(grabber_, 0);
    EXPECT_EQ(seen.frames, (std::vector<FgFrameIndex>{1, 2, 3, 4, 5}));
}

TEST_F(Acquisition, EndsWithTheBoard)
{
    auto* buffers = ring(4);
    set(FG_GEN_ENABLE, 0, 1);
    set(FG_GEN_FRAMERATE, 0, 1000);
    ASSERT_EQ(start(0, buffers), FG_OK);
    ASSERT_GE(waitFor(3, 0, buffers), 3);
    auto waiting = std::async(std::launch::async, [&] { return waitFor(1'000'000, 0, buffers); });
    while (waiting.wait_for(std::chrono::milliseconds(1)) == std::future_status::timeout &&
           runtime.FgSim_callCount("Fg_getLastPicNumberBlockingEx") < 2) {
    }
    free(grabber_);
    EXPECT_EQ(waiting.get(), FG_NOT_ACQUIRING);
    EXPECT_EQ(runtime.FgSim_live(FGSIM_RINGS), 0);
}

TEST_F(Acquisition, CatchesUpWithLessThanTheRingAndCountsWhatIsLost)
{
    // The handler holds the channel up for many more images than the ring has buffers.
    constexpr std::chrono::milliseconds heldUp{700};
    constexpr FgFrameIndex sent = 140; // 5 ms each
    std::promise<void> release;
    auto released = release.get_future().share();
    const FgApcCallback handler = [](FgFrameIndex, void* data) {
        static_cast<std::shared_future<void>*>(data)->wait();
        return 1;
    };
    auto* buffers = ring(6);
    const FgApcControl control{0, handler, &released, 60000, 0};
    runtime.Fg_registerApcHandler(grabber_, 0, &control, buffers);
    ASSERT_EQ(start(0, buffers), FG_OK);
    runtime.FgCam_start(0, 0);
    const auto begin = Clock::now();
    while (Clock::now() - begin < heldUp)
        runtime.Fg_getLastPicNumberBlockingEx(grabber_, 2, 0, 1, buffers);
    release.set_value();
    ASSERT_GE(waitFor(2, 0, buffers), 2);
    EXPECT_GE(status(FG_STATUS_LOST_IMAGES, 0), sent - 6); // all but the first one and those caught up with
}

TEST_F(Acquisition, RaisesEventsForWaitersAndCallbacks)
{
    const auto frame = runtime.Fg_getEventMask(grabber_, "FG_START_OF_FRAME_DMA0");
    const auto camera = runtime.Fg_getEventMask(grabber_, "FG_CAMERA_STARTED");
    ASSERT_NE(frame, 0U);
    EXPECT_STREQ(runtime.Fg_getEventName(grabber_, frame), "FG_START_OF_FRAME_DMA0");
    EXPECT_EQ(runtime.Fg_getEventCount(grabber_), 8);
    EXPECT_EQ(runtime.Fg_getEventMask(grabber_, "FG_NOTHING"), 0U);

    std::promise<FgFrameIndex> called;
    const FgEventCallback callback = [](std::uint64_t, void* data, const FgEventInfo* info) {
        if (info->frame == 2)
            static_cast<std::promise<FgFrameIndex>*>(data)->set_value(info->frame);
        return 0;
    };
    EXPECT_EQ(runtime.Fg_registerEventCallback(grabber_, frame, callback, &called, 0, nullptr), FG_OK);
    EXPECT_EQ(runtime.Fg_activateEvents(grabber_, frame | camera, 1), FG_OK);
    auto* buffers = ring(2);
    ASSERT_EQ(start(0, buffers), FG_OK);
    EXPECT_EQ(runtime.Fg_eventWait(grabber_, camera, 0, 0, nullptr), 0U);
    EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_TIMEOUT);
    runtime.FgCam_start(0, 0);
    FgEventInfo info{};
    EXPECT_EQ(runtime.Fg_eventWait(grabber_, camera, 60000, 0, &info), camera);
    EXPECT_EQ(info.mask, camera);
    EXPECT_EQ(called.get_future().get(), 2);
    EXPECT_EQ(runtime.Fg_registerEventCallback(grabber_, frame, nullptr, nullptr, 0, nullptr), FG_OK);
    EXPECT_EQ(runtime.FgSim_raiseEvent(0, "FG_CAMERA_STARTED"), FG_OK);
    EXPECT_EQ(runtime.Fg_eventWait(grabber_, camera, 60000, 0, nullptr), camera);
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
    const auto frame = runtime.Fg_getEventMask(grabber_, "FG_START_OF_FRAME_DMA0");
    listener.last = runtime.Fg_getEventMask(grabber_, "FG_CAMERA_STARTED");
    runtime.Fg_registerEventCallback(grabber_, frame | listener.last, callback, &listener, 0, nullptr);
    runtime.Fg_activateEvents(grabber_, frame | listener.last, 1);
    for (int i = 0; i < 1000; ++i)
        runtime.FgSim_raiseEvent(0, "FG_START_OF_FRAME_DMA0");
    runtime.FgSim_raiseEvent(0, "FG_CAMERA_STARTED");
    listener.release.set_value();
    EXPECT_EQ(listener.done.get_future().wait_for(std::chrono::seconds(generous)), std::future_status::ready);
    runtime.Fg_registerEventCallback(grabber_, frame | listener.last, nullptr, nullptr, 0, nullptr);
    EXPECT_GT(listener.dropped, 0U);
    EXPECT_EQ(listener.delivered + listener.dropped, 1001U);
}

TEST_F(Acquisition, RaisesAnEventForACameraThatStopsButNotForOneAtRest)
{
    const auto stopped = runtime.Fg_getEventMask(grabber_, "FG_CAMERA_STOPPED");
    EXPECT_EQ(runtime.Fg_activateEvents(grabber_, stopped, 1), FG_OK);
    EXPECT_EQ(runtime.FgCam_stop(0, 0), FG_OK);
    EXPECT_EQ(runtime.Fg_eventWait(grabber_, stopped, 0, 0, nullptr), 0U);
    EXPECT_EQ(runtime.FgCam_start(0, 0), FG_OK);
    EXPECT_EQ(runtime.FgCam_stop(0, 0), FG_OK);
    EXPECT_EQ(runtime.Fg_eventWait(grabber_, stopped, 60000, 0, nullptr), stopped);
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
    repeat([&] { start(0, first); });
    repeat([&] { runtime.Fg_stopAcquireEx(grabber_, 0, nullptr, 0); });
    repeat([&] { start(1, second); });
    repeat([&] { runtime.Fg_stopAcquireEx(grabber_, 1, nullptr, 0); });
    repeat([&] { runtime.FgCam_start(0, 1); });
    repeat([&] { runtime.FgCam_stop(0, 1); });
    const auto end = Clock::now() + std::chrono::seconds(10);
    for (int round = 0; round < 200 && Clock::now() < end; ++round) {
        runtime.Fg_getLastPicNumberBlockingEx(grabber_, 1, 0, 1, nullptr);
        runtime.Fg_getLastPicNumberBlockingEx(grabber_, 1, 1, 0, nullptr);
    }
    go = false;
    for (auto& thread : threads)
        thread.join();
    // Which of the threads got how far is the system's affair; both channels work as before.
    runtime.Fg_stopAcquireEx(grabber_, 0, nullptr, 0);
    runtime.Fg_stopAcquireEx(grabber_, 1, nullptr, 0);
    EXPECT_EQ(start(0, first), FG_OK) << lastLine();
    EXPECT_GE(waitFor(20, 0, first), 20) << lastLine();
    EXPECT_EQ(runtime.FgCam_start(0, 1), FG_OK);
    EXPECT_EQ(start(1, second), FG_OK) << lastLine();
    EXPECT_GE(waitFor(20, 1, second), 20) << lastLine();
    free(grabber_);
    EXPECT_EQ(runtime.FgSim_live(FGSIM_ACQUIRING_CHANNELS), 0);
}

} // namespace simulation::tests
