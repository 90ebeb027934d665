// Entries of the model, walks over them, and fields that threads share.

#include "ovra-core/GenericModel.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"

#include <gmock/gmock.h>

#include <thread>

namespace {

using namespace ovra::core::models;
using testing::ElementsAre;
using testing::IsEmpty;

boost::shared_ptr<HlEnvironmentDmaNode> dma(unsigned int index)
{
    const auto node = HlEnvironmentDmaNode::create();
    node->setIndex(index);
    return node;
}

template <class Iterator>
std::vector<unsigned int> indices(const Iterator& nodes)
{
    std::vector<unsigned int> all;
    for (; nodes->hasNext(); nodes->advance())
        all.push_back(nodes->current()->getIndex());
    return all;
}

class ModelTest : public testing::Test
{
protected:
    boost::shared_ptr<HlEnvironmentBoardNode> board = HlEnvironmentBoardNode::create(0, 0xa1b2c3, 7, "model");
};

TEST_F(ModelTest, WalksInAscendingOrderOverWhatWasThereWhenTheWalkBegan)
{
    const auto node = dma(3);
    board->addDmasEntry(12, dma(12));
    board->addDmasEntry(3, node);
    board->addDmasEntry(7, dma(7));
    const auto walk = board->getDmas();
    board->addDmasEntry(1, dma(1));
    board->getDmasEntryNode()->_children().clear();
    EXPECT_THAT(indices(walk), ElementsAre(3U, 7U, 12U));
    EXPECT_THAT(indices(board->getDmas()), IsEmpty());
    EXPECT_FALSE(node->_parent().get());
    EXPECT_EQ(board->getDmasEntryNode()->_children().count(), 0U);
    node->_children().clear(); // there can be none
    EXPECT_EQ(node->_children().count(), 0U);
}

TEST_F(ModelTest, ReplacesAnIndexThatExistsAndOrphansTheOldNodeOnly)
{
    const auto first = dma(5), second = dma(6);
    board->addDmasEntry(1, first);
    board->addDmasEntry(1, second);
    board->addDmasEntry(1, second);
    EXPECT_THAT(indices(board->getDmas()), ElementsAre(6U));
    EXPECT_FALSE(first->_parent().get());
    EXPECT_EQ(second->_parent().get()->_parent().get(), board);
}

TEST_F(ModelTest, ForgetsLinksToNodesThatAreGone)
{
    const auto process = HlEnvironmentProcessNode::create();
    auto gone = dma(1);
    const auto stays = dma(2);
    process->addDma(gone);
    process->addDma(stays);
    EXPECT_EQ(process->getDmasEntryChildCount(), 2U);
    gone.reset();
    EXPECT_THAT(indices(process->getDmas()), ElementsAre(2U));
    EXPECT_EQ(process->getDmasEntryChildCount(), 1U);
}

TEST_F(ModelTest, FindsResourcesByKeyInByteOrder)
{
    const HlEnvironmentGlobalResourceModel model;
    for (const std::string key : {"board-2", "board-10", "board-1-dma"}) {
        const auto resource = HlEnvironmentGlobalResourceNode::create();
        resource->setKey(key);
        model.root()->addChild(key, resource);
    }
    model.root()->removeChild("board-10");
    model.root()->removeChild("nobody");
    std::vector<std::string> keys;
    for (const auto each = model.root()->getChildren(); each->hasNext(); each->advance())
        keys.push_back(each->current()->getKey());
    EXPECT_THAT(keys, ElementsAre("board-1-dma", "board-2"));
    EXPECT_FALSE(model.root()->getChild("board-10"));
}

TEST_F(ModelTest, MayBeReadWhileItChanges)
{
    std::thread writer([&] {
        for (unsigned int round = 0; round < 300; ++round) {
            board->addDmasEntry(round % 5, dma(round % 5));
            if (round % 50 == 0)
                board->getDmasEntryNode()->_children().clear();
        }
    });
    for (int round = 0; round < 300; ++round) {
        const auto seen = indices(board->getDmas());
        EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
        EXPECT_EQ(std::adjacent_find(seen.begin(), seen.end()), seen.end());
    }
    writer.join();
}

TEST(Guarded, DestroysWhatAWriteDisplacesOutsideItsLock)
{
    // The deleter reads the field: under the lock of the field that would never end.
    Guarded<boost::shared_ptr<int>> field;
    int seen = 0;
    field.set(boost::shared_ptr<int>(new int(1), [&](int* value) {
        seen = *field.get();
        delete value;
    }));
    field.set(boost::make_shared<int>(2));
    EXPECT_EQ(seen, 2);
}

} // namespace
