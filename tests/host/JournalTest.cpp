// The record of host operations, faults, and live objects.

#include "ovra_log/reference/Journal.h"
#include "ovra-core/EntryPoints.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra_log/reference/LibraryUse.h"
#include "ovra_log/reference/LiveObjects.h"

#include <gmock/gmock.h>

#include <thread>

namespace {

using namespace ovra::core::models;
using ovra::core::Environment;
using ovra::core::HarloApplication;
using ovra::reference::Journal;
using ovra::reference::ReferenceFault;
using testing::ElementsAre;
using testing::IsEmpty;

class JournalTest : public testing::Test
{
protected:
    JournalTest() { Journal::start(); }
    ~JournalTest() override { Journal::stop(); }
};

TEST_F(JournalTest, HasALineForEachOperationWithItsDetails)
{
    const auto dma = HlEnvironmentDmaNode::create();
    dma->setIndex(3);
    dma->setDisplayScene({});
    HarloApplication::setConfigEntry("key", 5);
    EXPECT_THAT(Journal::lines(),
                ElementsAre("HlEnvironmentDmaNode::create", "HlEnvironmentDmaNode::setIndex index=3",
                            "HlEnvironmentDmaNode::setDisplayScene dma=3 null",
                            "HarloApplication::setConfigEntry key=5"));
    EXPECT_EQ(Journal::calls(), 4U);
}

TEST_F(JournalTest, IsSilentWhenItIsOff)
{
    Journal::stop();
    HarloApplication::getRuntimeDirectory();
    EXPECT_THAT(Journal::lines(), IsEmpty());
}

TEST_F(JournalTest, LeavesOutWhatTheHostDoesItself)
{
    const auto environment = Environment::create();
    environment->model()->root()->getSourcesEntry("ovra");
    EXPECT_THAT(Journal::lines(),
                ElementsAre("Environment::create", "Environment::model", "HlEnvironmentModel::root",
                            "HlEnvironmentRootNode::getSourcesEntry ovra"));
}

TEST_F(JournalTest, LetsTheNthCallFailBeforeItHasAnEffect)
{
    const auto dma = HlEnvironmentDmaNode::create();
    Journal::throwAt(2);
    dma->setIndex(1);
    try {
        dma->setBoard(9);
        FAIL() << "no fault";
    } catch (const ReferenceFault& fault) {
        EXPECT_STREQ(fault.what(), "Fault asked for at HlEnvironmentDmaNode::setBoard dma=1 9");
    }
    EXPECT_TRUE(Journal::faultStruck());
    EXPECT_EQ(dma->getBoard(), 0U);
    EXPECT_EQ(Journal::calls(), 4U);
}

TEST_F(JournalTest, CountsOnlyCallsWithThePrefix)
{
    const auto dma = HlEnvironmentDmaNode::create();
    Journal::throwAt(2, "HlEnvironmentDmaNode::setIndex");
    dma->setIndex(1);
    dma->setBoard(1);
    EXPECT_FALSE(Journal::faultStruck());
    EXPECT_THROW(dma->setIndex(2), ReferenceFault);
    dma->setIndex(3);
    EXPECT_EQ(dma->getIndex(), 3U);
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
    EXPECT_EQ(Journal::calls(), 1001U);
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
    EXPECT_THAT(Journal::lines(),
                ElementsAre("OvraCoreInit", "OvraCoreInit", "OvraCoreDeinit", "OvraCoreDeinit"));
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
