// SPDX-License-Identifier: MIT
// Boards and cameras that are unplugged while the library uses them.

#include "Product.h"

#include "fglib5/Fglib5.h"

#include "ovra-lib-display-fglib/FglibFrameBufferGroup.h"
#include "ovra-lib-display/reference/AcquisitionObserver.h"

#include <thread>

namespace ovra::tests {

namespace {

using reference::AcquisitionObserver;

class Unplug : public Product
{
protected:
    Unplug()
        : alpha(installation.addAlphaApplet("alpha.hap", SINGLE)),
          beta(installation.addBetaApplet("beta.hap", SINGLE))
    {}
    ~Unplug() override
    {
        for (const char* const step : {"plug board 0", "plug board 1", "plug camera 0 0", "forget"})
            perform(step);
    }

    void perform(const std::string& step) const
    {
        EXPECT_EQ(installation.entry<FgSim_perform_t>("FgSim_perform")(step.c_str(), nullptr, 0), 0) << step;
    }

    void startBoth()
    {
        start();
        load(ALPHA_SERIAL, alpha);
        load(BETA_SERIAL, beta);
        for (const int serial : {ALPHA_SERIAL, BETA_SERIAL})
            run(StartAcquisitionCommand::create(dma(serial, 0), ENDLESS));
        expectImagesOf(ALPHA_SERIAL);
        expectImagesOf(BETA_SERIAL);
    }

    std::int64_t images(int serial) const
    {
        return AcquisitionObserver::figures(*dma(serial, 0)->getDisplayScene()).sinceBoardStart.received;
    }
    void expectImagesOf(int serial)
    {
        const auto before = images(serial);
        pumpUntil([&] { return images(serial) > before + 2; });
    }
    std::string stateOf(int serial) const
    {
        return textOf(AcquisitionObserver::status(*dma(serial, 0)->getDisplayScene()).state);
    }
    bool knows(int serial) const { return board(serial) != nullptr; }

    const std::string alpha, beta;
};

TEST_F(Unplug, ABoardThatIsUnpluggedLeavesTheOtherOneAloneAndComesBackEmpty)
{
    startBoth();
    perform("unplug board 0");
    pumpUntil([&] { return stateOf(ALPHA_SERIAL) == "device lost"; });
    expectImagesOf(BETA_SERIAL);
    unload(ALPHA_SERIAL);
    pumpUntil([&] { return !knows(ALPHA_SERIAL); });
    EXPECT_EQ(installation.live(FGSIM_BOARD_HANDLES), 1);
    EXPECT_EQ(installation.live(FGSIM_RINGS), 1);
    perform("plug board 0");
    pumpUntil([&] { return knows(ALPHA_SERIAL); });
    expectEmptyBoard(ALPHA_SERIAL);
    load(ALPHA_SERIAL, alpha);
    run(StartAcquisitionCommand::create(dma(ALPHA_SERIAL, 0), ENDLESS));
    expectImagesOf(ALPHA_SERIAL);
    expectImagesOf(BETA_SERIAL);
    EXPECT_EQ(failures, Lines{});
}

TEST_F(Unplug, ABoardThatWasPluggedInAgainIsLoadedOverItsLostApplet)
{
    startBoth();
    perform("unplug board 0");
    perform("plug board 0");
    pumpUntil([&] { return stateOf(ALPHA_SERIAL) == "device lost"; });
    load(ALPHA_SERIAL, alpha);
    ASSERT_TRUE(isLoaded(ALPHA_SERIAL));
    run(StartAcquisitionCommand::create(dma(ALPHA_SERIAL, 0), ENDLESS));
    expectImagesOf(ALPHA_SERIAL);
    expectImagesOf(BETA_SERIAL);
    EXPECT_EQ(installation.live(FGSIM_BOARD_HANDLES), 2);
}

/// Each command reports a lost board and does not affect the other board.
TEST_F(Unplug, EveryCommandComesBackFromALostBoard)
{
    struct Row
    {
        const char* name;
        std::function<boost::shared_ptr<core::Command>()> command;
        bool told; ///< the lost board is reported, to the front end or as the failure of a phase
    };
    const std::string lost = "The board is not there any more";
    const Row rows[] = {
        {"start", [&] { return StartAcquisitionCommand::create(dma(ALPHA_SERIAL, 0), ENDLESS); }, true},
        {"stop", [&] { return StopAcquisitionCommand::create(dma(ALPHA_SERIAL, 0)); }, false},
        {"buffers", [&] { return AcquisitionBufferCountChangeCommand::create(dma(ALPHA_SERIAL, 0), 4); },
         true},
        {"store",
         [&] { return StoreMcfCommand::create(board(ALPHA_SERIAL), installation.folder() + "/a.mcf"); },
         true},
        {"load", [&] { return LoadAppletCommand::create(ALPHA_SERIAL, alpha, ""); }, true},
        {"unload", [&] { return UnloadAppletCommand::create(ALPHA_SERIAL); }, false},
    };
    start();
    load(BETA_SERIAL, beta);
    run(StartAcquisitionCommand::create(dma(BETA_SERIAL, 0), ENDLESS));
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        pumpUntil([&] { return knows(ALPHA_SERIAL); });
        load(ALPHA_SERIAL, alpha);
        run(StartAcquisitionCommand::create(dma(ALPHA_SERIAL, 0), ENDLESS));
        Gui::setSyncMode(Gui::SyncNone);
        perform("unplug board 0");
        pumpUntil([&] { return stateOf(ALPHA_SERIAL) == "device lost"; });
        failures.clear();
        const auto before = views->lines().size();
        run(row.command());
        std::string told;
        for (auto i = before; i < views->lines().size(); ++i)
            told += views->lines()[i] + '\n';
        for (const auto& failure : failures)
            told += failure + '\n';
        EXPECT_EQ(told.find(lost) != std::string::npos, row.told) << told;
        expectImagesOf(BETA_SERIAL);
        if (knows(ALPHA_SERIAL))
            unload(ALPHA_SERIAL);
        pumpUntil([&] { return !knows(ALPHA_SERIAL); });
        EXPECT_EQ(installation.live(FGSIM_BOARD_HANDLES), 1);
        perform("plug board 0");
    }
}

TEST_F(Unplug, ALoadSurvivesABoardThatGoesAtAnyCall)
{
    start();
    const auto calls = [&](const std::function<void()>& act) {
        const auto before = installation.calls("*");
        act();
        return installation.calls("*") - before;
    };
    const auto ofLoad = calls([&] { load(ALPHA_SERIAL, alpha); });
    unload(ALPHA_SERIAL);
    ASSERT_GT(ofLoad, 20);
    for (std::int64_t n = 0; n < ofLoad; n += 3) {
        SCOPED_TRACE("unplugged " + std::to_string(n) + " calls into a load");
        const auto goal = installation.calls("*") + n;
        std::thread hand([&] {
            while (installation.calls("*") < goal)
                std::this_thread::yield();
            perform("unplug board 0");
        });
        load(ALPHA_SERIAL, alpha);
        hand.join();
        if (knows(ALPHA_SERIAL))
            unload(ALPHA_SERIAL);
        pumpUntil([&] { return !knows(ALPHA_SERIAL); });
        EXPECT_EQ(installation.live(FGSIM_BOARD_HANDLES), 0);
        EXPECT_EQ(installation.live(FGSIM_RINGS), 0);
        EXPECT_EQ(Gui::getUsedDmaMemory(), 0U);
        perform("plug board 0");
        pumpUntil([&] { return knows(ALPHA_SERIAL); });
    }
    load(ALPHA_SERIAL, alpha);
    EXPECT_TRUE(isLoaded(ALPHA_SERIAL));
}

/// As a load gives it that looked the board up before.
TEST_F(Unplug, ABoardThatGetsItsHandleAfterItWasReplacedComesBack)
{
    start();
    const auto first = board(ALPHA_SERIAL);
    perform("unplug board 0");
    pumpUntil([&] { return !knows(ALPHA_SERIAL); });
    perform("plug board 0");
    pumpUntil([&] { return knows(ALPHA_SERIAL); });
    ASSERT_NE(board(ALPHA_SERIAL), first);
    first->setBoardHandle(installation.entry<decltype(Fg_Init)>("Fg_Init")(alpha.c_str(), 0));
    EXPECT_EQ(board(ALPHA_SERIAL), first);
    unload(ALPHA_SERIAL);
    EXPECT_EQ(installation.live(FGSIM_BOARD_HANDLES), 0);
}

TEST_F(Unplug, ACameraThatIsUnpluggedIsMissingUntilItIsPluggedInAndStarted)
{
    startBoth();
    const auto camera = [&] {
        return port(ALPHA_SERIAL, 0)->getMappedPortEntry()->getConnectedCameraEntry();
    };
    perform("unplug camera 0 0");
    pumpUntil([&] { return !camera(); });
    EXPECT_EQ(stateOf(ALPHA_SERIAL), "no signal");
    run(StopAcquisitionCommand::create(dma(ALPHA_SERIAL, 0)));
    run(StartAcquisitionCommand::create(dma(ALPHA_SERIAL, 0), ENDLESS));
    EXPECT_EQ(stateOf(ALPHA_SERIAL), "no signal");
    EXPECT_EQ(failures, Lines{});
    perform("plug camera 0 0");
    pumpUntil([&] { return camera() != nullptr; });
    run(StartAcquisitionCommand::create(dma(ALPHA_SERIAL, 0), ENDLESS));
    expectImagesOf(ALPHA_SERIAL);
    expectImagesOf(BETA_SERIAL);
}

TEST_F(Unplug, WhatALooseCableLosesIsCountedOverAChangeOfTheBuffers)
{
    startBoth();
    perform("loosen 0 0 2 lost");
    const auto group = dma(ALPHA_SERIAL, 0)->getFrameBufferGroup();
    pumpUntil([&] { return group->lostImages() >= 10; });
    const auto lost = group->lostImages();
    run(AcquisitionBufferCountChangeCommand::create(dma(ALPHA_SERIAL, 0), 4));
    EXPECT_GE(group->lostImages(), lost);
    run(StopAcquisitionCommand::create(dma(ALPHA_SERIAL, 0)));
    EXPECT_GE(group->lostImages(), lost);
    perform("loosen 0 0 0");
}

TEST_F(Unplug, ALinkThatIsUnpluggedIsSilentUntilItIsPluggedInOrTheTimeoutHasPassed)
{
    startBoth();
    perform("unplug link 0 0");
    pumpUntil([&] { return stateOf(ALPHA_SERIAL) == "no signal"; });
    expectImagesOf(BETA_SERIAL);
    perform("plug link 0 0");
    expectImagesOf(ALPHA_SERIAL); // nobody had to start anything
    run(StopAcquisitionCommand::create(dma(ALPHA_SERIAL, 0)));
    boost::dynamic_pointer_cast<display::FglibFrameBufferGroup>(dma(ALPHA_SERIAL, 0)->getFrameBufferGroup())
        ->setTimeout(1);
    run(StartAcquisitionCommand::create(dma(ALPHA_SERIAL, 0), ENDLESS));
    expectImagesOf(ALPHA_SERIAL);
    perform("unplug link 0 0");
    pumpUntil([&] { return stateOf(ALPHA_SERIAL) == "timed out"; });
    expectImagesOf(BETA_SERIAL);
    EXPECT_EQ(failures, Lines{});
    perform("plug link 0 0");
}

} // namespace

} // namespace ovra::tests
