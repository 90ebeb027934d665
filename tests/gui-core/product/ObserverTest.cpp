// SPDX-License-Identifier: MIT
// Signals of the reference host: ends of acquisitions, events with their board, changes of the hardware.

#include "Product.h"

#include "ovra-lib-display-fglib/FglibFrameBufferGroup.h"
#include "ovra-lib-display/reference/AcquisitionObserver.h"
#include "ovra-lib-environment/reference/EnvironmentObserver.h"
#include "ovra-lib-fglib-model/FgLibEventsModel.h"
#include "ovra-lib-fglib-model/reference/BoardEvents.h"

namespace ovra::tests {

namespace {

using core::models::Guarded;
using reference::AcquisitionObserver;
using reference::AcquisitionStatus;
using reference::EnvironmentChange;

class Observer : public Product
{
protected:
    std::string statusOf(int serial, unsigned int i) const
    {
        return textOf(AcquisitionObserver::status(*dma(serial, i)->getDisplayScene()).state);
    }
    static void add(Guarded<Lines>& lines, const std::string& line)
    {
        auto all = lines.get();
        all.push_back(line);
        lines.set(std::move(all));
    }
};

TEST_F(Observer, TellsTheEndsOfAcquisitionsAndWhatTheOthersWaitFor)
{
    const std::string alpha = installation.addAlphaApplet("alpha.hap", SINGLE);
    start();
    load(ALPHA_SERIAL, alpha);
    const auto scene = dma(ALPHA_SERIAL, 0)->getDisplayScene();
    Guarded<Lines> ends;
    const boost::signals2::scoped_connection connection =
        AcquisitionObserver::connect(scene, [&](const AcquisitionStatus& end) {
            add(ends, std::to_string(end.board) + " " + std::to_string(end.dma) + " " + textOf(end.state) +
                          ": " + end.reason);
        });
    EXPECT_EQ(statusOf(ALPHA_SERIAL, 0), "stopped");
    run(StartAcquisitionCommand::create(dma(ALPHA_SERIAL, 0), 3));
    pumpUntil([&] { return ends.get().size() == 1; });
    EXPECT_EQ(statusOf(ALPHA_SERIAL, 0), "count reached");
    run(StartAcquisitionCommand::create(dma(ALPHA_SERIAL, 0), ENDLESS));
    EXPECT_EQ(statusOf(ALPHA_SERIAL, 0), "running");
    pumpUntil([&] { return AcquisitionObserver::figures(*scene).sinceBoardStart.received >= 10; });
    EXPECT_GT(AcquisitionObserver::figures(*scene).imagesPerSecond, 0);
    EXPECT_EQ(ends.get().size(), 1U);
    const auto group = boost::dynamic_pointer_cast<display::FglibFrameBufferGroup>(
        dma(ALPHA_SERIAL, 0)->getFrameBufferGroup());
    Gui::setSyncMode(Gui::SyncNone);
    run(StopAcquisitionCommand::create(port(ALPHA_SERIAL, 0)));
    EXPECT_EQ(statusOf(ALPHA_SERIAL, 0), "no signal");
    pumpUntil([&] { return AcquisitionObserver::figures(*scene).imagesPerSecond == 0; });
    scene->stopGrabbing();
    group->setTimeout(1);
    scene->startGrabbing(ENDLESS);
    pumpUntil([&] { return ends.get().size() == 2; });
    EXPECT_EQ(ends.get(), (Lines{"0 0 count reached: board 0 DMA 0: all 3 images arrived",
                                 "0 0 timed out: board 0 DMA 0: no image within 1 s"}));
}

TEST_F(Observer, TellsTheBoardOfAnEvent)
{
    const std::string beta = installation.addBetaApplet("beta.hap", SINGLE);
    start();
    load(BETA_SERIAL, beta);
    Guarded<Lines> events;
    const boost::signals2::scoped_connection connection = reference::BoardEvents::connect(
        board(BETA_SERIAL)->getFglibEventsModel(), [&](const reference::BoardEvent& event) {
            add(events, std::to_string(event.board) + " " + std::to_string(event.serial) + " " + event.name);
        });
    installation.entry<FgSim_raiseEvent_t>("FgSim_raiseEvent")(1, "FG_IMAGES_LOST_DMA0");
    pumpUntil([&] { return !events.get().empty(); });
    EXPECT_EQ(events.get(), Lines{"1 48879 FG_IMAGES_LOST_DMA0"});
}

TEST_F(Observer, TellsOfBoardsAndCamerasThatComeAndGo)
{
    start();
    Lines changes;
    const boost::signals2::scoped_connection connection =
        reference::EnvironmentObserver::connect(Gui::environment(), [&](const EnvironmentChange& change) {
            const bool camera = change.subject == EnvironmentChange::Subject::Camera;
            changes.push_back("+-~"[static_cast<int>(change.kind)] + std::to_string(change.board) +
                              (camera ? "/" + std::to_string(change.port) : std::string()) + " " +
                              change.name);
        });
    const auto machine = [&](const std::string& boards, const std::string& cameras) {
        installation.write("simulation/machine.json",
                           R"({"name": "m", "boards": [)" + boards + R"(], "cameras": [)" + cameras + "]}");
        Gui::environment()->discoverResources();
    };
    const std::string alpha =
        R"({"model": "ovra-quad-cl", "boardType": 2625, "serial": "a1b2c3", "ports": 3})";
    const std::string gamma = R"({"model": "new", "boardType": 9, "serial": "7", "ports": 1})";
    const std::string camera =
        R"({"board": 0, "port": 2, "model": "area", "serial": "c9", "interface": "gige",
        "sensorWidth": 8, "sensorHeight": 8, "width": 8, "height": 8, "frameRate": 1, "scene": "landscape"})";
    machine(alpha, camera);
    EXPECT_EQ(changes,
              (Lines{"-1 ovra-dual-cxp", "-0/0 area c0", "-0/1 small c1", "-1/0 area c2", "+0/2 area c9"}));
    changes.clear();
    machine(alpha + "," + gamma, "");
    EXPECT_EQ(changes, (Lines{"-0/2 area c9", "+1 new"}));
}

} // namespace

} // namespace ovra::tests
