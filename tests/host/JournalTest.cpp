// SPDX-License-Identifier: MIT
// Tests of the journal of host operations, faults, and live objects.

#include "ovra_log/reference/Journal.h"
#include "ovra-core/EntryPoints.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-lib-environment/EntryPoints.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-genicam-model/EntryPoints.h"
#include "ovra_log/reference/LibraryUse.h"
#include "ovra_log/reference/LiveObjects.h"

#include <gmock/gmock.h>

#include <thread>

namespace {

using namespace ovra::core::models;
using ovra::core::HarloApplication;
using ovra::reference::Journal;
using ovra::reference::ReferenceFault;
using testing::ElementsAre;

class JournalTest : public testing::Test
{
protected:
    JournalTest() { Journal::start(); }
    ~JournalTest() override { Journal::stop(); }
};

TEST_F(JournalTest, HasALineForEachOperationWithItsDetailsUntilItIsOff)
{
    const auto dma = HlEnvironmentDmaNode::create();
    dma->setIndex(3);
    dma->setDisplayScene({});
    HarloApplication::setConfigEntry("key", 5);
    EXPECT_THAT(Journal::lines(),
                ElementsAre("HlEnvironmentDmaNode::create", "HlEnvironmentDmaNode::setIndex index=3",
                            "HlEnvironmentDmaNode::setDisplayScene dma=3 null",
                            "HarloApplication::setConfigEntry key=5"));
    Journal::stop();
    dma->setIndex(4);
    EXPECT_EQ(Journal::calls(), 4U);
}

TEST_F(JournalTest, LetsTheNthCallWithThePrefixFailOnceBeforeItHasAnEffect)
{
    const auto dma = HlEnvironmentDmaNode::create();
    Journal::throwAt(2, "HlEnvironmentDmaNode::set");
    dma->setIndex(1);
    dma->getBoard();
    EXPECT_FALSE(Journal::faultStruck());
    EXPECT_THAT([&] { dma->setBoard(9); }, testing::ThrowsMessage<ReferenceFault>(
                                               "Fault asked for at HlEnvironmentDmaNode::setBoard dma=1 9"));
    EXPECT_TRUE(Journal::faultStruck());
    EXPECT_EQ(dma->getBoard(), 0U);
    EXPECT_EQ(Journal::calls(), 5U);
    dma->setBoard(8);
    EXPECT_EQ(dma->getBoard(), 8U);
}

TEST_F(JournalTest, TakesCallsOfManyThreads)
{
    const auto dma = HlEnvironmentDmaNode::create();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&] {
            for (unsigned int call = 0; call < 250; ++call)
                dma->setIndex(call);
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(Journal::lines().size(), 1001U);
}

TEST_F(JournalTest, ShowsTheStartOfALibraryWhichIsCounted)
{
    const int before = ovra::reference::libraryUses("ovra-core");
    OvraCoreInit();
    OvraCoreInit();
    OvraCoreDeinit();
    EXPECT_EQ(ovra::reference::libraryUses("ovra-core"), before + 1);
    OvraCoreDeinit();
    ovra::reference::libraryEnded("never started"); // the log has it
    EXPECT_EQ(ovra::reference::libraryUses("never started"), 0);
    EXPECT_THAT(Journal::lines(),
                ElementsAre("OvraCoreInit", "OvraCoreInit", "OvraCoreDeinit", "OvraCoreDeinit"));
    // Starts by the host itself are not calls of a client.
    Journal::clear();
    OvraEnvironmentInit();
    EXPECT_EQ(ovra::reference::libraryUses("ovra-lib-genicam-model"), 1);
    OvraGenicamModelInit();
    OvraGenicamModelDeinit();
    OvraEnvironmentDeinit();
    EXPECT_EQ(ovra::reference::libraryUses("ovra-lib-genicam-model"), 0);
    EXPECT_THAT(Journal::lines(), ElementsAre("OvraEnvironmentInit", "OvraGenicamModelInit",
                                              "OvraGenicamModelDeinit", "OvraEnvironmentDeinit"));
}

TEST(LiveObjects, AreCountedUntilTheyAreGone)
{
    const long before = ovra::reference::liveObjects<HlEnvironmentBoardNode>();
    auto board = HlEnvironmentBoardNode::create(0, 1, 2, "board");
    EXPECT_EQ(ovra::reference::liveObjects<HlEnvironmentBoardNode>(), before + 1);
    EXPECT_EQ(ovra::reference::allLiveObjects().at("ovra::core::models::HlEnvironmentBoardNode"), before + 1);
    board.reset();
    EXPECT_EQ(ovra::reference::liveObjects<HlEnvironmentBoardNode>(), before);
}

} // namespace
