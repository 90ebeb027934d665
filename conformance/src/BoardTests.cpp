// SPDX-License-Identifier: MIT
// Tests of changes of the board handle.

#include "Machine.h"
#include "Tests.h"

#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

namespace ovra::conformance {

namespace {

using namespace core::models;

void change(HlEnvironmentBoardNode& board, Fg_Struct_s* handle)
{
    board.beginHandleChange();
    board.setBoardHandle(handle);
    board.endHandleChange();
}

/// A board whose handle is observed.
struct ObservedBoard
{
    explicit ObservedBoard(HostUnderTest& host)
        : machine(host),
          channel(host.openChannel()),
          board(machine.boardOf(*channel))
    {}
    ~ObservedBoard()
    {
        board->getPhysicalPortsEntryNode()->_children().clear();
        change(*board, nullptr); // before the channel frees the handle
    }
    ObservedBoard(const ObservedBoard&) = delete;
    ObservedBoard& operator=(const ObservedBoard&) = delete;

    std::size_t ports() const { return board->getPhysicalPortsEntryNode()->_children().count(); }
    boost::shared_ptr<HlEnvironmentCameraNode> camera() const
    {
        for (const auto each = board->getPorts(); each->hasNext(); each->advance())
            if (const auto found = each->current()->getConnectedCameraEntry())
                return found;
        return {};
    }

    const Machine machine;
    const std::unique_ptr<ChannelUnderTest> channel;
    const boost::shared_ptr<HlEnvironmentBoardNode> board;
};

void handleIsKept(HostUnderTest& host)
{
    const ObservedBoard tested(host);
    require(!tested.board->getBoardHandle(), "a board without an applet has no handle");
    change(*tested.board, tested.channel->handle());
    require(tested.board->getBoardHandle() == tested.channel->handle(),
            "the board has the handle that was set");
    change(*tested.board, nullptr);
    require(!tested.board->getBoardHandle(), "the board has no handle after it was taken away");
}

void handleChangeIsOneUpdate(HostUnderTest& host)
{
    const ObservedBoard tested(host);
    HlEnvironmentBoardNode& board = *tested.board;
    Fg_Struct_s* const handle = tested.channel->handle();
    auto updates =
        std::make_shared<std::vector<std::string>>(); // shared, because the observer stays installed
    host.observeHandle(tested.board, [=](Fg_Struct_s* now) {
        updates->push_back(now == handle ? "handle" : now ? "another handle" : "null");
    });
    board.beginHandleChange();
    board.setBoardHandle(handle);
    board.setBoardHandle(nullptr);
    board.setBoardHandle(handle);
    requireEqual(*updates, std::vector<std::string>{}, "updates before endHandleChange");
    board.endHandleChange();
    await(
        host, [&] { return !updates->empty(); }, "an update after endHandleChange");
    requireEqual(*updates, std::vector<std::string>{"handle"}, "updates");
    change(board, nullptr);
    await(
        host, [&] { return updates->size() > 1; }, "an update when the handle is taken away");
    stays(
        host, [&] { return updates->size() == 2; }, "two updates for two changes, found " + toText(*updates));
    requireEqual(updates->back(), "null", "what the second update shows");
}

void handleAppearsWithPhysicalPorts(HostUnderTest& host)
{
    const ObservedBoard tested(host);
    requireEqual(tested.ports(), 0U, "physical ports of a board without a handle");
    change(*tested.board, tested.channel->handle());
    require(tested.ports() > 0, "the board has physical ports when endHandleChange returns");
    require(static_cast<bool>(tested.board->getPortsEntry(0)), "physical ports are counted from 0");
    for (const auto each = tested.board->getPorts(); each->hasNext(); each->advance()) {
        const auto& port = each->current();
        require(tested.board->getPortsEntry(port->getIndex()) == port,
                "getPortsEntry finds a port by its index");
    }
}

void physicalPortsCarryTheirCameras(HostUnderTest& host)
{
    const ObservedBoard tested(host);
    change(*tested.board, tested.channel->handle());
    require(static_cast<bool>(tested.camera()),
            "a physical port of the board has the camera that is plugged in");
}

void camerasAreControllable(HostUnderTest& host)
{
    const ObservedBoard tested(host);
    change(*tested.board, tested.channel->handle());
    const auto camera = tested.camera();
    if (!camera || !camera->getGenICamModelEntry())
        skip("No camera of the board is controlled through its port");
    const auto model = camera->getGenICamModelEntry();
    require(model->width() > 0 && model->height() > 0, "a camera tells the size of its images");
    model->restartAcquisition();
    model->restartAcquisition();
    model->stopAcquisition();
    model->stopAcquisition();
}

void physicalPortsComeAnew(HostUnderTest& host)
{
    const ObservedBoard tested(host);
    change(*tested.board, tested.channel->handle());
    const std::size_t count = tested.ports();
    require(count > 0, "the board has physical ports when endHandleChange returns");
    tested.board->getPhysicalPortsEntryNode()->_children().clear();
    change(*tested.board, nullptr);
    requireEqual(tested.ports(), 0U, "physical ports after an unload, which empties them");
    change(*tested.board, tested.channel->handle());
    requireEqual(tested.ports(), count, "physical ports when the next handle appears");
    require(static_cast<bool>(tested.camera()), "the camera is there again");
}

} // namespace

std::vector<Test> boardTests()
{
    return {
        {"handle-is-kept", "A board keeps the handle that is set, and gives it up when it is taken away",
         handleIsKept},
        {"handle-change-is-one-update",
         "What happens between beginHandleChange and endHandleChange is one update for views",
         handleChangeIsOneUpdate},
        {"handle-appears-with-physical-ports",
         "At the end of a change that leaves a handle the board has its physical ports",
         handleAppearsWithPhysicalPorts},
        {"physical-ports-carry-their-cameras",
         "Cameras that are plugged in are attached to their physical ports", physicalPortsCarryTheirCameras},
        {"cameras-are-controllable", "A camera starts, starts anew, stops and stops again",
         camerasAreControllable},
        {"physical-ports-come-anew", "Physical ports that an unload removed come back with the next handle",
         physicalPortsComeAnew},
    };
}

} // namespace ovra::conformance
