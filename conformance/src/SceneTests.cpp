// SPDX-License-Identifier: MIT
// Tests of the way of images from a group through a scene to a visualizer.

#include "ChannelBench.h"
#include "Tests.h"

#include <thread>

namespace ovra::conformance {

namespace {

void sceneHandsImagesOn(HostUnderTest& host)
{
    ChannelBench bench(host);
    bench.prepareScene();
    bench.requireNoImages("before startGrabbing");
    bench.scene->startGrabbing(WITHOUT_END);
    bench.awaitImages("after startGrabbing");
}

void sceneIsStartedAnewWhileItGrabs(HostUnderTest& host)
{
    ChannelBench bench(host);
    bench.startImages();
    bench.awaitImages("after startGrabbing");
    bench.scene->startGrabbing(WITHOUT_END);
    bench.awaitImages("after a second startGrabbing");
}

void sceneStartsAgainAfterAStop(HostUnderTest& host)
{
    ChannelBench bench(host);
    bench.startImages();
    bench.awaitImages("after startGrabbing");
    bench.scene->stopGrabbing();
    bench.scene->startGrabbing(WITHOUT_END);
    bench.awaitImages("after a stop and a start");
}

void stopMayBeRepeated(HostUnderTest& host)
{
    ChannelBench bench(host);
    bench.prepareScene();
    bench.scene->stopGrabbing();
    bench.scene->startGrabbing(WITHOUT_END);
    bench.awaitImages("after a stop that stopped nothing");
    bench.scene->stopGrabbing();
    bench.scene->stopGrabbing();
    bench.requireNoImages("after two stops");
}

/// Calls \p end several times while the visualizer is within a call. When \p end returns, that call must have
/// ended, and none may follow.
void requireQuiescenceAfter(ChannelBench& bench, const std::function<void()>& begin,
                            const std::function<void()>& end, const char* operation)
{
    constexpr int ROUNDS = 3;
    constexpr std::chrono::milliseconds SLOW_CALL{60};
    std::atomic<bool> inCall{false};
    bench.inImage = [&] {
        inCall = true;
        std::this_thread::sleep_for(SLOW_CALL);
        inCall = false;
    };
    for (int round = 0; round < ROUNDS; ++round) {
        begin();
        await(
            bench.host, [&] { return inCall.load(); }, "a call of the visualizer");
        end();
        require(!inCall, std::string("the visualizer is not being called when ") + operation + " returns");
        bench.requireNoImages((std::string("after ") + operation).c_str());
    }
    bench.scene->stopGrabbing(); // `inCall` ends here
}

void nothingIsHandedOnAfterAStop(HostUnderTest& host)
{
    ChannelBench bench(host);
    bench.prepareScene();
    requireQuiescenceAfter(
        bench, [&] { bench.scene->startGrabbing(WITHOUT_END); }, [&] { bench.scene->stopGrabbing(); },
        "stopGrabbing");
}

void visualizerIsNotCalledOnceItIsTakenOff(HostUnderTest& host)
{
    ChannelBench bench(host);
    bench.prepareScene();
    const auto again = host.makeVisualizer([&] { bench.inImage(); });
    bench.scene->startGrabbing(WITHOUT_END);
    requireQuiescenceAfter(
        bench, [&] { bench.scene->setVisualizer(again.get()); }, [&] { bench.scene->setVisualizer(nullptr); },
        "setVisualizer(nullptr)");
}

void sceneGivesUpTheGroupThatIsRemoved(HostUnderTest& host)
{
    ChannelBench bench(host);
    bench.startImages();
    bench.awaitImages("after startGrabbing");
    bench.scene->stopGrabbing();
    bench.scene->removeFrameBufferGroup(0);
    requireEqual(bench.group.use_count(), 1, "owners of the group that was removed from its scene");
    bench.scene->startGrabbing(WITHOUT_END);
    bench.requireNoImages("of a scene without a group");
}

void sceneHasTheSizeOfItsGroup(HostUnderTest& host)
{
    ChannelBench bench(host);
    bench.prepareScene();
    require(bench.scene->width() > 1 && bench.scene->height() > 1, "a scene with a group has a size");
}

void sceneMayBeDrivenBySeveralThreads(HostUnderTest& host)
{
    constexpr int USERS = 3, ROUNDS = 10;
    ChannelBench bench(host);
    bench.prepareScene();
    std::vector<std::thread> users;
    for (int user = 0; user < USERS; ++user)
        users.emplace_back([&] {
            for (int round = 0; round < ROUNDS; ++round) {
                bench.scene->startGrabbing(WITHOUT_END);
                bench.scene->stopGrabbing();
            }
        });
    for (auto& user : users)
        user.join();
    bench.requireNoImages("after the last stop");
    bench.scene->startGrabbing(WITHOUT_END);
    bench.awaitImages("after a further start");
}

} // namespace

std::vector<Test> sceneTests()
{
    return {
        {"scene-hands-images-on", "A scene that grabs hands its group's images to its visualizer",
         sceneHandsImagesOn},
        {"scene-is-started-anew-while-it-grabs", "startGrabbing on a scene that grabs starts it anew",
         sceneIsStartedAnewWhileItGrabs},
        {"scene-starts-again-after-a-stop", "A scene that was stopped can be started",
         sceneStartsAgainAfterAStop},
        {"stop-may-be-repeated", "stopGrabbing on a scene that does not grab changes nothing",
         stopMayBeRepeated},
        {"nothing-is-handed-on-after-a-stop",
         "When stopGrabbing returns, no image is and no image will be handed on",
         nothingIsHandedOnAfterAStop},
        {"visualizer-taken-off-is-not-called",
         "When setVisualizer(nullptr) returns, the visualizer is and will not be called",
         visualizerIsNotCalledOnceItIsTakenOff},
        {"scene-gives-up-its-group", "A scene does not keep the group that is removed",
         sceneGivesUpTheGroupThatIsRemoved},
        {"scene-has-the-size-of-its-group", "Width and height of a scene are those of its group",
         sceneHasTheSizeOfItsGroup},
        {"scene-may-be-driven-by-several-threads", "Starts and stops may come from several threads",
         sceneMayBeDrivenBySeveralThreads},
    };
}

} // namespace ovra::conformance
