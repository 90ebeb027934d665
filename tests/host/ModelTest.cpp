// SPDX-License-Identifier: MIT
// Behaviour of the model beyond the library's requirements.

#include "ovra-core/GenericModel.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using namespace ovra::core::models;

boost::shared_ptr<HlEnvironmentDmaNode> dma(unsigned int index)
{
    const auto node = HlEnvironmentDmaNode::create();
    node->setIndex(index);
    return node;
}

TEST(Model, KeepsTheParentOfANodeThatIsAddedAgainAndLeavesAChildlessNodeWithoutChildren)
{
    const auto board = HlEnvironmentBoardNode::create(0, 0xa1b2c3, 7, "model");
    const auto node = dma(6);
    board->addDmasEntry(1, node);
    board->addDmasEntry(1, node);
    EXPECT_EQ(node->_parent().get()->_parent().get(), board);
    EXPECT_EQ(board->getDmasEntryNode()->_children().count(), 1U);
    node->_children().clear();
    EXPECT_EQ(node->_children().count(), 0U);
    EXPECT_THROW(board->addDmasEntry(1, nullptr), std::invalid_argument);
    EXPECT_EQ(board->getDmas()->current(), node);
}

TEST(Guarded, DestroysWhatAWriteDisplacesOutsideItsLock)
{
    // The deleter reads the field, which would deadlock under the field's lock.
    Guarded<boost::shared_ptr<int>> field;
    int seen = 0;
    field.set(boost::shared_ptr<int>(new int(1), [&](const int* value) {
        seen = *field.get();
        delete value;
    }));
    field.set(boost::make_shared<int>(2));
    EXPECT_EQ(seen, 2);
}

} // namespace
