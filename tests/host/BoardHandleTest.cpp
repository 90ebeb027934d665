// SPDX-License-Identifier: MIT
// Effects of a change of the board handle.

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra-lib-environment/reference/BoardHandleObserver.h"
#include "ovra_log/OvraLog.h"

#include <gmock/gmock.h>

namespace {

using namespace ovra::core::models;
using ovra::reference::BoardHandleObserver;
using testing::ElementsAre;
using testing::IsEmpty;

Fg_Struct_s* handle(int number)
{
    static int places[4];
    return reinterpret_cast<Fg_Struct_s*>(&places[number]);
}

class BoardHandleTest : public testing::Test
{
protected:
    BoardHandleTest()
    {
        const auto source = HlEnvironmentBoardSourceNode::create();
        model.root()->addSourcesEntry("ovra", source);
        source->addChild(0x2f, board);
        BoardHandleObserver::connect(board, [this](Fg_Struct_s* now) {
            seen.push_back(now);
            portsSeen.push_back(board->getPhysicalPortsEntryNode()->_children().count());
        });
    }

    void plugIn(const std::string& name, unsigned int boardIndex, unsigned int port)
    {
        model.root()->addCamera(name, HlEnvironmentCameraNode::create(name, boardIndex, port));
    }

    HlEnvironmentModel model;
    boost::shared_ptr<HlEnvironmentBoardNode> board = HlEnvironmentBoardNode::create(1, 0x2f, 7, "model");
    std::vector<Fg_Struct_s*> seen;
    std::vector<std::size_t> portsSeen;
};

TEST_F(BoardHandleTest, ShowsNestedChangesAsOneUpdateAndNoneWhereNothingChanged)
{
    board->endHandleChange(); // without a beginning
    board->beginHandleChange();
    board->endHandleChange();
    EXPECT_THAT(seen, IsEmpty());
    board->beginHandleChange();
    board->setBoardHandle(handle(1));
    board->beginHandleChange();
    board->setBoardHandle(nullptr);
    board->setBoardHandle(handle(2));
    board->endHandleChange();
    EXPECT_THAT(seen, IsEmpty());
    board->endHandleChange();
    board->setBoardHandle(handle(1));
    board->setBoardHandle(nullptr);
    EXPECT_THAT(seen, ElementsAre(handle(2), handle(1), nullptr));
}

TEST_F(BoardHandleTest, LetsAListenerOfTheLogAskAndChangeTheBoardAtAnEndWithoutABeginning)
{
    OvraLogInit();
    OvraLogSetMessageCallback(
        [](auto, auto, auto, auto, auto, auto, auto, void* userData) {
            static_cast<HlEnvironmentBoardNode*>(userData)->setBoardHandle(handle(2));
        },
        board.get());
    board->endHandleChange();
    OvraLogSetMessageCallback(nullptr, nullptr);
    OvraLogDeinit();
    EXPECT_THAT(seen, ElementsAre(handle(2)));
}

TEST_F(BoardHandleTest, CreatesPhysicalPortsForItsOwnCamerasBeforeTheUpdateIsSeen)
{
    plugIn("near", 1, 0);
    plugIn("far", 1, 2);
    plugIn("elsewhere", 0, 3);
    board->setBoardHandle(handle(1));

    EXPECT_THAT(portsSeen, ElementsAre(3U));
    EXPECT_EQ(board->getPortsEntry(0)->getConnectedCameraEntry()->getName(), "near");
    EXPECT_FALSE(board->getPortsEntry(1)->getConnectedCameraEntry());
    EXPECT_EQ(board->getPortsEntry(2)->getConnectedCameraEntry()->getName(), "far");
    EXPECT_FALSE(board->getPortsEntry(3));
    EXPECT_EQ(board->getPortsEntry(0)->_parent().get()->_parent().get(), board);
}

} // namespace
