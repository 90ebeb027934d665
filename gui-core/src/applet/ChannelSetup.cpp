// SPDX-License-Identifier: MIT
#include "applet/ChannelSetup.h"

#include "gui-core/keys/Keys.h"
#include "messages/CommandSubmission.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

#include "fglib5/Fglib5.h"

#include "ovra-core/HarloApplication.h"
#include "ovra-lib-display-fglib/FglibFrameBufferGroup.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-fglib-model/FgLibEventsModel.h"
#include "ovra-lib-fglib-model/FgLibModel.h"

#include <string>

namespace ovra::gui::applet {

using core::models::FgLibEventsModel;
using core::models::FgLibModel;
using core::models::HlEnvironmentBoardNode;
using core::models::HlEnvironmentDmaNode;

namespace {

/// Null, after a warning, when the runtime describes no parameters.
FgRegisterInfo* registerInformation(const HlEnvironmentBoardNode& board, unsigned int dma)
{
    FgRegisterInfo* const info = Fg_getParameterInfo(board.getBoardHandle(), dma);
    if (!info)
        messages::postLoadWarning("Error in Fg_getParameterInfo(" + std::to_string(dma) + "): NULL");
    return info;
}

boost::shared_ptr<FgLibModel> createModel(HlEnvironmentBoardNode& board, unsigned int dma,
                                          FgRegisterInfo* info, bool noDma)
{
    const auto self = boost::static_pointer_cast<HlEnvironmentBoardNode>(board.shared_from_this());
    auto model = FgLibModel::create(board.getBoardHandle(), dma, info, self, noDma);
    model->init();
    return model;
}

void createModelPerDma(HlEnvironmentBoardNode& board)
{
    for (const auto dmas = board.getDmas(); dmas->hasNext(); dmas->advance()) {
        HlEnvironmentDmaNode& dma = *dmas->current();
        FgRegisterInfo* const info = registerInformation(board, dma.getIndex());
        if (!info)
            continue;
        const auto model = createModel(board, dma.getIndex(), info, false);
        dma.setFrontendRegInfoPointer(info);
        dma.setFrontendRegInfoModel(model);
    }
}

void createModelForApplet(HlEnvironmentBoardNode& board)
{
    FgRegisterInfo* const info = registerInformation(board, 0);
    if (!info)
        return;
    const auto model = createModel(board, 0, info, true);
    for (const auto dmas = board.getDmas(); dmas->hasNext(); dmas->advance()) {
        dmas->current()->setFrontendRegInfoPointer(info);
        dmas->current()->setFrontendRegInfoModel(model);
    }
    // On the board as well, because an applet without DMA channels has parameters, too.
    board.setNoDmaFrontendRegInfoPointer(info);
    board.setNoDmaFrontendRegInfoModel(model);
}

unsigned int configured(const keys::IntegerKey& key)
{
    return static_cast<unsigned int>(core::HarloApplication::getConfigIntEntry(key.name, key.defaultValue));
}

void setUpChannel(HlEnvironmentBoardNode& board, HlEnvironmentDmaNode& dma)
{
    dma.setAcqTimeout(configured(keys::DEFAULT_TIMEOUT_SECONDS));
    dma.setAcqBuffersCurrent(configured(keys::DEFAULT_BUFFERS));

    const auto group = display::FglibFrameBufferGroup::create(
        board.getBoardHandle(), board.getIndex(), dma.getIndex(), dma.getAcqBuffersCurrent(),
        &Gui::getUsedDmaMemory, &Gui::getTotalDmaMemory, &Gui::updateUsedMemory);
    // As after a change of the number: what the group was asked for, and what it grants, which may be fewer.
    dma.setAcqBuffersRequested(group->requestedBufferCount());
    dma.setAcqBuffersCurrent(group->bufferCount());
    group->setTimeout(dma.getAcqTimeout());

    const auto scene = display::DisplayScene::create();
    scene->addFrameBufferGroup(0, group);
    dma.setFrameBufferGroup(group);
    dma.setDisplayScene(scene);
    if (const auto model = dma.getFrontendRegInfoModel())
        model->addFrameBufferGroup(group);
}

} // namespace

void createEventsModel(HlEnvironmentBoardNode& board)
{
    const auto self = boost::static_pointer_cast<HlEnvironmentBoardNode>(board.shared_from_this());
    const auto events = FgLibEventsModel::create(self);
    board.setFglibEventsModel(events);
    board.setFglibEventsSignalConnection(Gui::views()->connectFglibEvents(events));
}

void createParameterModels(HlEnvironmentBoardNode& board, model::AppletType type)
{
    if (type == model::AppletType::Hap)
        createModelForApplet(board);
    else
        createModelPerDma(board);
}

void setUpChannels(HlEnvironmentBoardNode& board)
{
    for (const auto dmas = board.getDmas(); dmas->hasNext(); dmas->advance())
        setUpChannel(board, *dmas->current());
}

} // namespace ovra::gui::applet
