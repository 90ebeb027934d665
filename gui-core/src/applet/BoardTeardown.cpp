// SPDX-License-Identifier: MIT
#include "applet/BoardTeardown.h"

#include "applet/BoardHandle.h"
#include "model/BoardResources.h"
#include "model/FrameBuffers.h"

#include "ovra-lib-display-fglib/FglibFrameBufferGroup.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-fglib-model/FgLibEventsModel.h"
#include "ovra-lib-fglib-model/FgLibModel.h"

namespace ovra::gui::applet {

using core::models::FgLibModel;
using core::models::HlEnvironmentBoardNode;
using core::models::HlEnvironmentDmaNode;

namespace {

/// Performs a step; its exception propagates.
constexpr auto STRICTLY = [](auto step) { step(); };

/// Performs a step and ignores its exception, since the exception that ended the load is already propagating.
constexpr auto AS_FAR_AS_IT_GOES = [](auto step) noexcept {
    try {
        step();
    } catch (...) {
    }
};

template <class Perform>
void clearStructure(HlEnvironmentBoardNode& board, Perform perform)
{
    perform([&] { board.getDmasEntryNode()->_children().clear(); });
    perform([&] { board.getProcessesEntryNode()->_children().clear(); });
    perform([&] { board.getLogicalPortsEntryNode()->_children().clear(); });
    perform([&] { board.getPhysicalPortsEntryNode()->_children().clear(); });
}

/// A channel of a loaded board has a group and a scene; after an unload or a load that failed part-way either
/// may be missing. A register model is there only where the runtime gave a description.
template <class Perform>
void detachDma(HlEnvironmentDmaNode& dma, Perform perform)
{
    boost::shared_ptr<FgLibModel> model;
    boost::shared_ptr<display::FglibFrameBufferGroup> group;
    boost::shared_ptr<display::DisplayScene> scene;
    perform([&] { model = dma.getFrontendRegInfoModel(); });
    perform([&] { group = model::frameBuffersOf(dma); });
    if (model) {
        perform([&] { model->stop(); });
        perform([&] { dma.getFrontendRegInfoModel()->removeFrameBufferGroup(group); });
        perform([&] { dma.setFrontendRegInfoModel({}); });
    }
    perform([&] { dma.setFrontendRegInfoPointer(nullptr); });
    perform([&] { scene = dma.getDisplayScene(); });
    if (scene) {
        perform([&] { scene->stopGrabbing(); });
        perform([&] { scene->removeFrameBufferGroup(0); });
        perform([&] { scene->setVisualizer(nullptr); });
    }
    perform([&] { dma.setFrameBufferGroup({}); });
    perform([&] { dma.setDisplayScene({}); });
    if (group)
        perform([&] { group->releaseBuffers(); });
}

/// All steps, in their order.
template <class Perform>
void takeApart(HlEnvironmentBoardNode& board, Perform perform)
{
    // First, so that no event reaches the front end during the teardown.
    perform([&] { board.setFglibEventsSignalConnection({}); });
    perform([&] { model::removeBoardResources(board); });
    perform([&] {
        for (const auto dmas = board.getDmas(); dmas->hasNext(); dmas->advance())
            detachDma(*dmas->current(), perform);
    });
    perform([&] {
        if (const auto model = board.getNoDmaFrontendRegInfoModel())
            model->stop();
    });
    perform([&] { board.setNoDmaFrontendRegInfoModel({}); });
    perform([&] { board.setNoDmaFrontendRegInfoPointer(nullptr); });
    clearStructure(board, perform);
    perform([&] { board.setFglibEventsModel({}); });
    perform([&] { freeBoardHandle(board); });
    perform([&] { board.setLoadedAppletEntry({}); });
    perform([&] { board.setBoardSelectedForViewEntry(false); });
}

void forceEmpty(HlEnvironmentBoardNode& board) noexcept
{
    takeApart(board, AS_FAR_AS_IT_GOES);
}

void undoLoad(HlEnvironmentBoardNode& board)
{
    clearStructure(board, STRICTLY);
    freeBoardHandle(board);
    board.setBoardSelectedForViewEntry(false);
}

} // namespace

void emptyBoard(HlEnvironmentBoardNode& board)
{
    takeApart(board, STRICTLY);
}

UnfinishedLoad::~UnfinishedLoad()
{
    if (!m_finished)
        forceEmpty(m_board);
}

void UnfinishedLoad::undo()
{
    undoLoad(m_board);
    m_finished = true;
}

} // namespace ovra::gui::applet
