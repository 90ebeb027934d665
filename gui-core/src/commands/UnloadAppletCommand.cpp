#include "gui-core/UnloadAppletCommand.h"

#include "applet/BoardHandle.h"
#include "applet/BoardTeardown.h"
#include "model/BoardLookup.h"
#include "model/BoardResources.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

#include "ovra-lib-display-fglib/FglibFrameBufferGroup.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-fglib-model/FgLibEventsModel.h"
#include "ovra-lib-fglib-model/FgLibModel.h"

#include <boost/make_shared.hpp>

namespace ovra::gui::commands {

using core::models::HlEnvironmentBoardNode;
using core::models::HlEnvironmentDmaNode;

struct UnloadAppletCommand::Request
{
    int boardSerial;
};

namespace {

/// A channel of a loaded board has a group and a scene, but one that an unload before left half-way may lack
/// them. A register model is there only where the runtime gave a description.
void detachDma(HlEnvironmentDmaNode& dma)
{
    const auto model = dma.getFrontendRegInfoModel();
    const auto group = dma.getFrameBufferGroup();
    if (model) {
        model->stop();
        // Applet loading makes groups of this kind only.
        dma.getFrontendRegInfoModel()->removeFrameBufferGroup(
            boost::static_pointer_cast<display::FglibFrameBufferGroup>(group));
        dma.setFrontendRegInfoModel({});
    }
    dma.setFrontendRegInfoPointer(nullptr);

    if (const auto scene = dma.getDisplayScene()) {
        scene->stopGrabbing();
        scene->removeFrameBufferGroup(0);
        scene->setVisualizer(nullptr);
    }
    dma.setFrameBufferGroup({});
    dma.setDisplayScene({});
    if (group)
        group->releaseBuffers();
}

void releaseAppletParameters(HlEnvironmentBoardNode& board)
{
    if (const auto model = board.getNoDmaFrontendRegInfoModel())
        model->stop();
    board.setNoDmaFrontendRegInfoModel({});
    board.setNoDmaFrontendRegInfoPointer(nullptr);
}

} // namespace

boost::shared_ptr<UnloadAppletCommand> UnloadAppletCommand::create(int boardSerial)
{
    return boost::make_shared<UnloadAppletCommand>(boardSerial);
}

UnloadAppletCommand::UnloadAppletCommand(int boardSerial)
    : Command(Command::Synchronous),
      m_request(boost::make_shared<Request>(Request{boardSerial}))
{}

UnloadAppletCommand::UnloadAppletCommand(const UnloadAppletCommand& other) = default;
UnloadAppletCommand& UnloadAppletCommand::operator=(const UnloadAppletCommand& other) = default;
UnloadAppletCommand::~UnloadAppletCommand() = default;

void UnloadAppletCommand::executeSync()
{
    const auto board = findBoard(static_cast<unsigned int>(m_request->boardSerial));
    if (!board)
        return;

    // No event reaches the front end from a board that is being taken apart.
    board->setFglibEventsSignalConnection({});
    removeBoardResources(*board);
    for (const auto dmas = board->getDmas(); dmas->hasNext(); dmas->advance())
        detachDma(*dmas->current());
    releaseAppletParameters(*board);
    clearStructure(*board);
    board->setFglibEventsModel({});
    freeBoardHandle(*board);
    board->setLoadedAppletEntry({});
    board->setBoardSelectedForViewEntry(false);

    const auto views = Gui::views();
    views->applet_unloaded();
    views->update_dma_memory();
}

} // namespace ovra::gui::commands
