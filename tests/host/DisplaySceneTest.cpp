// SPDX-License-Identifier: MIT
// Tests of a scene with a fake group, which decides when an image arrives.

#include "LogCollector.h"

#include "host/ovra-lib-display/src/ArrivalRate.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-display/reference/AcquisitionObserver.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <atomic>
#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>

namespace {

using namespace ovra::display;
using namespace std::chrono_literals;
using ovra::reference::AcquisitionFigures;
using ovra::reference::AcquisitionObserver;
using ovra::reference::AcquisitionState;
using ovra::reference::AcquisitionStatus;
using testing::ElementsAre;
using testing::HasSubstr;

/// A group that delivers the images of the test.
class FakeGroup : public FrameBufferGroup
{
public:
    void deliver(std::int64_t number)
    {
        const std::lock_guard lock(m_mutex);
        m_newest = number;
        m_changed.notify_all();
    }
    std::vector<std::string> calls() const
    {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }
    bool acquiring() const { return m_acquiring; }
    std::atomic<bool> refusesToStart{false};
    std::atomic<std::int64_t> lateImage{0}; // delivered after the acquisition has stopped; 0: none
    std::atomic<bool> throwsWhileWaiting{false};
    std::atomic<std::int64_t> lost{0};

    /// Makes the current acquisition fail.
    void fail(const AcquisitionStatus& failure)
    {
        const std::lock_guard lock(m_mutex);
        m_failure = failure;
        m_changed.notify_all();
    }
    AcquisitionStatus acquisitionStatus() const override
    {
        const std::lock_guard lock(m_mutex);
        return m_failure;
    }
    std::int64_t lostImages() const override
    {
        const std::int64_t counted = lost;
        if (const auto call = std::exchange(whileCounting, {}))
            call();
        return counted;
    }
    mutable std::function<void()> whileCounting; // called once

    void setBufferCount(int) override {}
    unsigned int requestedBufferCount() const override { return 1; }
    unsigned int bufferCount() const override { return 1; }
    void releaseBuffers() override {}
    int width() const override { return 640; }
    int height() const override { return 480; }
    unsigned int dmaIndex() const override { return 3; }

    void startAcquisition(int images) override
    {
        if (refusesToStart)
            throw std::runtime_error("no cable");
        const std::lock_guard lock(m_mutex);
        m_calls.push_back("start " + std::to_string(images));
        m_acquiring = true;
        m_newest = 0;
        m_failure = {.state = AcquisitionState::Running, .board = 7, .dma = 3, .reason = {}};
        lost = 0;
    }
    void stopAcquisition() override
    {
        const std::lock_guard lock(m_mutex);
        if (m_acquiring)
            m_calls.emplace_back("stop");
        m_acquiring = false;
        m_changed.notify_all();
    }
    bool waitForImage(std::int64_t after, Image& image) override
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return !m_acquiring || m_newest > after || !m_failure.reason.empty(); });
        if (throwsWhileWaiting)
            throw 42;
        if (!m_failure.reason.empty())
            return false;
        const std::int64_t number = m_acquiring ? m_newest : lateImage.exchange(0);
        image = {&m_pixel, 10, 2, number};
        return number != 0;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::string> m_calls;
    std::atomic<bool> m_acquiring{false};
    std::int64_t m_newest = 0;
    AcquisitionStatus m_failure;
    std::uint8_t m_pixel = 0;
};

/// Notes the numbers of images, and can be held inside a call.
class Screen : public DisplaySceneVisualizer
{
public:
    void showImage(const Image& image) override
    {
        std::unique_lock lock(m_mutex);
        m_numbers.push_back(image.number);
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return !m_held; });
        if (inCall)
            inCall();
    }
    void hold(bool held)
    {
        const std::lock_guard lock(m_mutex);
        m_held = held;
        m_changed.notify_all();
    }
    std::vector<std::int64_t> waitFor(std::size_t images)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, 5min, [&] { return m_numbers.size() >= images; });
        return m_numbers;
    }
    std::function<void()> inCall;

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::int64_t> m_numbers;
    bool m_held = false;
};

class DisplaySceneTest : public testing::Test
{
protected:
    DisplaySceneTest()
    {
        scene->addFrameBufferGroup(0, group);
        scene->setVisualizer(&screen);
    }
    ~DisplaySceneTest() override
    {
        screen.hold(false);
        scene->stopGrabbing();
    }

    /// Grabs without an end, and waits until the first image is shown.
    void begin()
    {
        scene->startGrabbing(-1);
        group->deliver(1);
        EXPECT_THAT(screen.waitFor(1), ElementsAre(1));
    }

    boost::shared_ptr<FakeGroup> group = boost::make_shared<FakeGroup>();
    Screen screen;
    boost::shared_ptr<DisplayScene> scene = DisplayScene::create();
};

TEST_F(DisplaySceneTest, ShowsTheNewestImageAndCountsThoseItOvertook)
{
    screen.hold(true);
    begin();
    group->deliver(2);
    group->deliver(3);
    group->deliver(7);
    screen.hold(false);
    EXPECT_THAT(screen.waitFor(2), ElementsAre(1, 7));
    const auto statistics = scene->statistics();
    EXPECT_EQ(statistics.received, 7);
    EXPECT_EQ(statistics.shown, 2);
    EXPECT_EQ(statistics.skipped, 5);
}

TEST_F(DisplaySceneTest, HandsNothingOnOnceItHasStopped)
{
    begin();
    group->lateImage = 2;
    scene->stopGrabbing();
    EXPECT_FALSE(scene->isGrabbing());
    EXPECT_THAT(screen.waitFor(1), ElementsAre(1));
    EXPECT_THAT(group->calls(), ElementsAre("start -1", "stop"));
}

TEST_F(DisplaySceneTest, StartsAnewWhileItGrabsAndEndsByItselfAfterTheImagesAskedFor)
{
    scene->startGrabbing(-1);
    group->deliver(5);
    screen.waitFor(1);
    scene->startGrabbing(2);
    EXPECT_EQ(scene->statistics().received, 0);
    group->deliver(1);
    screen.waitFor(2);
    EXPECT_TRUE(scene->isGrabbing());
    group->deliver(2);
    EXPECT_THAT(screen.waitFor(3), ElementsAre(5, 1, 2));
    while (scene->isGrabbing())
        std::this_thread::yield();
    EXPECT_THAT(group->calls(), ElementsAre("start -1", "stop", "start 2", "stop"));
}

TEST_F(DisplaySceneTest, StandsStillWhereItsGroupCannotStartOrIsRemoved)
{
    group->refusesToStart = true;
    EXPECT_THROW(scene->startGrabbing(-1), std::runtime_error);
    EXPECT_FALSE(scene->isGrabbing());
    group->refusesToStart = false;
    scene->startGrabbing(-1);
    scene->removeFrameBufferGroup(0);
    EXPECT_FALSE(group->acquiring());
    scene->startGrabbing(-1);
    EXPECT_FALSE(scene->isGrabbing());
    EXPECT_EQ(scene->width(), 0);
}

TEST_F(DisplaySceneTest, GoesOnAfterAVisualizerThatThrows)
{
    const LogCollector log;
    screen.inCall = [] { throw std::runtime_error("no window"); };
    begin();
    group->deliver(2);
    EXPECT_THAT(screen.waitFor(2), ElementsAre(1, 2));
    scene->stopGrabbing();
    EXPECT_THAT(log.texts(), testing::Each(testing::AllOf(HasSubstr("DMA 3"), HasSubstr("no window"))));
    EXPECT_EQ(log.texts().size(), 2U);
}

TEST_F(DisplaySceneTest, StopsAGroupThatThrows)
{
    const LogCollector log;
    scene->startGrabbing(-1);
    group->throwsWhileWaiting = true;
    group->deliver(1);
    while (scene->isGrabbing())
        std::this_thread::yield();
    EXPECT_FALSE(group->acquiring());
    EXPECT_THAT(log.texts(), ElementsAre(testing::AllOf(HasSubstr("DMA 3"), HasSubstr("unknown type"))));
    scene->stopGrabbing();
}

TEST_F(DisplaySceneTest, RefusesToBeStoppedByItsVisualizer)
{
    std::promise<void> refused;
    screen.inCall = [&] {
        EXPECT_THROW(scene->stopGrabbing(), std::logic_error);
        refused.set_value();
    };
    begin();
    refused.get_future().wait();
}

TEST_F(DisplaySceneTest, TellsWhyAnAcquisitionEndedByItselfAndOnlyThen)
{
    std::mutex mutex;
    std::vector<std::string> ends;
    const auto end = [](const AcquisitionStatus& status) {
        return std::string(textOf(status.state)) + " (" + status.reason + ")";
    };
    const boost::signals2::scoped_connection connection =
        AcquisitionObserver::connect(scene, [&](const AcquisitionStatus& status) {
            EXPECT_FALSE(scene->isGrabbing());
            EXPECT_EQ(end(AcquisitionObserver::status(*scene)), end(status));
            EXPECT_THROW(scene->startGrabbing(-1), std::logic_error);
            const std::lock_guard lock(mutex);
            ends.push_back(end(status));
        });
    const auto status = [&] { return end(AcquisitionObserver::status(*scene)); };
    const auto told = [&](std::size_t count) {
        for (;; std::this_thread::yield()) {
            const std::lock_guard lock(mutex);
            if (ends.size() == count)
                return ends.back();
        }
    };
    EXPECT_EQ(status(), "stopped ()");
    begin();
    EXPECT_EQ(status(), "running ()");
    scene->stopGrabbing();
    EXPECT_EQ(status(), "stopped ()");
    scene->startGrabbing(2);
    group->deliver(2);
    EXPECT_EQ(told(1), "count reached (board 7 DMA 3: all 2 images arrived)");
    scene->startGrabbing(-1);
    group->fail({.state = AcquisitionState::DeviceLost, .board = 7, .dma = 3, .reason = "gone"});
    EXPECT_EQ(told(2), "device lost (gone)");
    scene->startGrabbing(-1);
    EXPECT_EQ(status(), "running ()");
    group->throwsWhileWaiting = true;
    group->deliver(1);
    EXPECT_EQ(told(3), "failed (DMA 3: grabbing ended: an exception of unknown type)");
    scene->stopGrabbing();
}

TEST_F(DisplaySceneTest, CountsFromTheLastStartAndFromTheBoardsStart)
{
    const auto text = [this] {
        const auto figures = AcquisitionObserver::figures(*scene);
        std::ostringstream line;
        for (const auto& each : {figures.sinceStart, figures.sinceBoardStart})
            line << each.received << ' ' << each.shown << ' ' << each.skipped << ' ' << each.lost << "; ";
        return line.str();
    };
    EXPECT_LT(AcquisitionObserver::figures(*scene).newestAgeSeconds, 0);
    screen.hold(true);
    begin();
    group->deliver(5'000'000'000); // more than 32 bits
    screen.hold(false);
    screen.waitFor(2);
    group->lost = 4;
    EXPECT_EQ(text(), "5000000000 2 4999999998 4; 5000000000 2 4999999998 4; ");
    EXPECT_GE(AcquisitionObserver::figures(*scene).newestAgeSeconds, 0);
    scene->stopGrabbing();
    scene->startGrabbing(-1);
    EXPECT_EQ(text(), "0 0 0 0; 5000000000 2 4999999998 4; ");
    EXPECT_EQ(AcquisitionObserver::figures(*scene).imagesPerSecond, 0);
    group->deliver(2);
    screen.waitFor(3);
    EXPECT_EQ(text(), "2 1 1 0; 5000000002 3 4999999999 4; ");
    const auto figures = AcquisitionObserver::figures(*scene);
    EXPECT_DOUBLE_EQ(figures.bytesPerSecond, 20 * figures.imagesPerSecond);
}

TEST_F(DisplaySceneTest, CountsNoLossOfTheAcquisitionBefore)
{
    begin();
    group->lost = 4;
    group->whileCounting = [this] { scene->startGrabbing(-1); };
    EXPECT_EQ(AcquisitionObserver::figures(*scene).sinceStart.lost, 0);
    EXPECT_EQ(AcquisitionObserver::figures(*scene).sinceBoardStart.lost, 4);
}

TEST(ArrivalRate, IsThatOfTheLastSecondAndFallsToNothing)
{
    ArrivalRate rate;
    const auto start = ArrivalRate::Clock::now();
    rate.restart(start);
    for (int image = 0; image < 500; ++image) // 5 s of 100 images a second
        rate.add(1, 20, start + image * 10ms);
    struct Row
    {
        std::chrono::milliseconds at;
        double images;
        double tolerance;
    };
    for (const auto& row : {Row{5000ms, 100, 3}, Row{5500ms, 50, 3}, Row{5900ms, 10, 3}, Row{6020ms, 0, 0}}) {
        EXPECT_NEAR(rate.perSecond(start + row.at).images, row.images, row.tolerance) << row.at.count();
        EXPECT_NEAR(rate.perSecond(start + row.at).bytes, 20 * row.images, 20 * row.tolerance);
    }
    rate.restart(start + 6s);
    for (int image = 0; image < 20; ++image) // younger than a second
        rate.add(1, 20, start + 6s + image * 10ms);
    EXPECT_NEAR(rate.perSecond(start + 6200ms).images, 100, 1);
    rate.restart(start + 7s);
    EXPECT_EQ(rate.perSecond(start + 7s).images, 0);
}

} // namespace
