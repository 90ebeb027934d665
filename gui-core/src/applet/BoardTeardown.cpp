#include "applet/BoardTeardown.h"

#include "applet/BoardHandle.h"
#include "model/BoardResources.h"

#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-display/FrameBufferGroup.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-fglib-model/FgLibEventsModel.h"
#include "ovra-lib-fglib-model/FgLibModel.h"

namespace ovra::gui::commands {

using core::models::HlEnvironmentBoardNode;
using core::models::HlEnvironmentDmaNode;

namespace {

template <class Step>
void attempt(Step step) noexcept
{
    try {
        step();
    } catch (...) {
        // The exception that made the load fail is the one to report.
    }
}

/// Unlike a loaded board's channels these may lack anything.
void abandonDma(HlEnvironmentDmaNode& dma) noexcept
{
    attempt([&] {
        if (const auto model = dma.getFrontendRegInfoModel())
            model->stop();
    });
    attempt([&] {
        if (const auto scene = dma.getDisplayScene()) {
            scene->stopGrabbing();
            scene->removeFrameBufferGroup(0);
            scene->setVisualizer(nullptr);
        }
    });
    attempt([&] {
        if (const auto group = dma.getFrameBufferGroup())
            group->releaseBuffers();
    });
    attempt([&] { dma.setFrontendRegInfoModel({}); });
    attempt([&] { dma.setFrameBufferGroup({}); });
    attempt([&] { dma.setDisplayScene({}); });
}

} // namespace

void clearStructure(HlEnvironmentBoardNode& board)
{
    board.getDmasEntryNode()->_children().clear();
    board.getProcessesEntryNode()->_children().clear();
    board.getLogicalPortsEntryNode()->_children().clear();
    board.getPhysicalPortsEntryNode()->_children().clear();
}

void undoLoad(HlEnvironmentBoardNode& board)
{
    clearStructure(board);
    freeBoardHandle(board);
    board.setBoardSelectedForViewEntry(false);
}

void forceEmpty(HlEnvironmentBoardNode& board) noexcept
{
    attempt([&] { board.setFglibEventsSignalConnection({}); });
    attempt([&] { removeBoardResources(board); });
    attempt([&] {
        for (const auto dmas = board.getDmas(); dmas->hasNext(); dmas->advance())
            abandonDma(*dmas->current());
    });
    attempt([&] {
        if (const auto model = board.getNoDmaFrontendRegInfoModel())
            model->stop();
    });
    attempt([&] { board.setNoDmaFrontendRegInfoModel({}); });
    attempt([&] { board.setNoDmaFrontendRegInfoPointer(nullptr); });
    attempt([&] { board.setFglibEventsModel({}); });
    attempt([&] { board.setLoadedAppletEntry({}); });
    attempt([&] { clearStructure(board); });
    attempt([&] { freeBoardHandle(board); });
    attempt([&] { board.setBoardSelectedForViewEntry(false); });
}

UnfinishedLoad::~UnfinishedLoad()
{
    if (!m_finished)
        forceEmpty(m_board);
}

void UnfinishedLoad::reset()
{
    undoLoad(m_board);
    m_finished = true;
}

} // namespace ovra::gui::commands
