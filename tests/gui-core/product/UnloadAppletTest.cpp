// SPDX-License-Identifier: MIT
#include "Product.h"

#include <array>

namespace ovra::tests {

namespace {

using UnloadApplet = Product;

} // namespace

TEST_F(UnloadApplet, LeavesTheOtherBoardAndForeignResourcesAlone)
{
    const auto alpha = installation.addAlphaApplet("single.hap", SINGLE);
    const auto beta = installation.addBetaApplet("single.hap", SINGLE);
    start();
    Journal::start();
    load(BETA_SERIAL, beta);
    EXPECT_EQ(journalOf({"FglibFrameBufferGroup::create"}),
              Lines{"FglibFrameBufferGroup::create board=1 dma=0 buffers=16"});
    const Lines ofBeta = resources();
    load(ALPHA_SERIAL, alpha);
    const auto addForeign = [](core::Environment::GlobalResourceType type, const std::string& key,
                               const boost::shared_ptr<core::models::GenericModelNode>& resource) {
        const auto node = core::models::HlEnvironmentGlobalResourceNode::create();
        node->setType(type);
        node->setResource(resource);
        node->setKey(key);
        Gui::environment()->globalResourceModel()->root()->addChild(key, node);
    };
    addForeign(core::Environment::ResourceCamera, "a camera", board(ALPHA_SERIAL));
    addForeign(core::Environment::ResourceDma, "an expired channel", {});
    addForeign(core::Environment::ResourceBoard, "an expired board", {});
    // What counts is whose it is, not what it is called.
    addForeign(core::Environment::ResourceProcess, "of alpha",
               board(ALPHA_SERIAL)->getProcesses()->current());

    unload(ALPHA_SERIAL);
    expectEmptyBoard(ALPHA_SERIAL);
    EXPECT_TRUE(isLoaded(BETA_SERIAL));
    Lines expected = {"2 a camera", "0 an expired board", "1 an expired channel"};
    expected.insert(expected.end(), ofBeta.begin(), ofBeta.end());
    EXPECT_EQ(resources(), expected);

    EXPECT_EQ(dma(BETA_SERIAL, 0)->getSortKey(), "board-0001-process-0000-dma-0000"); // by index, not serial

    views->clear();
    unload(4711);
    EXPECT_EQ(views->lines(), Lines{});
}

TEST_F(UnloadApplet, OfABoardThatAcquiresDeliversNoImageAfterIt)
{
    const std::string generating =
        R"("width": 8, "height": 8, "generator": {"pattern": "ramp", "frameRate": 500, "enabled": true}})";
    const std::string two = R"("processes": [{"dmas": [0, 1]}], "dmas": [{"index": 0, )" + generating +
                            R"(, {"index": 1, )" + generating + "]";
    const auto alpha = installation.addAlphaApplet("two.hap", two);
    const auto beta = installation.addBetaApplet("two.hap", two);
    std::array<ImageCounter, 3> shown;
    start();
    load(ALPHA_SERIAL, alpha);
    load(BETA_SERIAL, beta);
    const std::pair<int, unsigned int> channels[] = {{ALPHA_SERIAL, 0}, {ALPHA_SERIAL, 1}, {BETA_SERIAL, 0}};
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const auto channel = dma(channels[i].first, channels[i].second);
        channel->getDisplayScene()->setVisualizer(&shown[i]);
        run(StartAcquisitionCommand::create(channel, ENDLESS));
    }
    pumpUntil([&] { return shown[0].images > 3 && shown[1].images > 3; });

    UnloadAppletCommand(ALPHA_SERIAL).executeSync();
    const int atReturn[] = {shown[0].images, shown[1].images, shown[2].images};
    EXPECT_EQ(installation.live(FGSIM_ACQUIRING_CHANNELS), 2) << "those of the other board";
    expectEmptyBoard(ALPHA_SERIAL);
    pumpUntil([&] { return shown[2].images > atReturn[2] + 20; }); // time passes
    EXPECT_EQ(shown[0].images, atReturn[0]);
    EXPECT_EQ(shown[1].images, atReturn[1]);
    unload(BETA_SERIAL);
    expectNothingLeftOf(BETA_SERIAL);
}

TEST_F(UnloadApplet, DoesAgainWhatWouldStayWrongForEver)
{
    const auto applet = installation.addAlphaApplet("single.hap", SINGLE);
    start();
    for (const char* step :
         {"HlEnvironmentBoardNode::setBoardHandle", "HlEnvironmentBoardNode::endHandleChange"}) {
        load(ALPHA_SERIAL, applet);
        Journal::start();
        Journal::throwAt(1, step);
        EXPECT_THROW(UnloadAppletCommand(ALPHA_SERIAL).executeSync(), reference::ReferenceFault) << step;
        EXPECT_EQ(journalOf({step}).size(), 2U) << step;
        EXPECT_EQ(journalOf({"HlEnvironmentBoardNode::handleChanged"}).size(), 1U) << step;
        EXPECT_EQ(board(ALPHA_SERIAL)->getBoardHandle(), nullptr);
    }
}

TEST_F(UnloadApplet, SurvivesEveryHostCallThatThrows)
{
    const Lines kinds = {installation.addAlphaApplet("double.hap", DOUBLE), installation.addWrappedApplet()};
    start();
    for (const auto& applet : kinds) {
        const auto prepare = [&] {
            load(ALPHA_SERIAL, applet);
            EXPECT_TRUE(isLoaded(ALPHA_SERIAL));
        };
        // What was not done the first time is done the second.
        const auto repeat = [&](bool) {
            unload(ALPHA_SERIAL);
            expectNothingLeftOf(ALPHA_SERIAL);
        };
        const auto act = [] { UnloadAppletCommand(ALPHA_SERIAL).executeSync(); };
        EXPECT_GT(sweep(prepare, act, repeat), 50U);
    }
    EXPECT_EQ(failures, Lines{});
}

} // namespace ovra::tests
