// SPDX-License-Identifier: MIT
#include "acquisition/ImageSizes.h"

#include "acquisition/CameraOfPort.h"
#include "acquisition/ResourceSweep.h"
#include "gui-core/keys/Keys.h"
#include "model/FrameBuffers.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

#include "ovra-core/HarloApplication.h"
#include "ovra-lib-display-fglib/FglibFrameBufferGroup.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

#include <string>

namespace ovra::gui::acquisition {

using core::HarloApplication;
using core::models::GenICamModel;
using core::models::HlEnvironmentDmaNode;
using core::models::HlEnvironmentLogicalPortNode;

namespace {

/// Indices of the question's buttons. Any other number changes nothing.
constexpr int APPLY_CAMERA_TO_DMA = 0;
constexpr int APPLY_DMA_TO_CAMERA = 1;

struct Size
{
    int width;
    int height;
};

std::string text(const Size& size)
{
    return "(" + std::to_string(size.width) + " x " + std::to_string(size.height) + ")";
}

bool agree(const Size& camera, const Size& display)
{
    return camera.width == display.width && (camera.height == 1 || camera.height == display.height);
}

int ask(const std::string& message)
{
    bool remember = false;
    const int choice =
        Gui::views()->showChoiceDialog("Dimension Mismatch", message, "Apply camera dimension to DMA",
                                       "Apply DMA dimension to camera", "Ignore", &remember);
    if (remember) {
        HarloApplication::setConfigEntry(keys::ANSWER_REMEMBERED.name, 1);
        HarloApplication::setConfigEntry(keys::ANSWER.name, choice);
    }
    return choice;
}

long long rememberedOrAsked(const std::string& message)
{
    const auto configured = [](const keys::IntegerKey& key) {
        return HarloApplication::getConfigIntEntry(key.name, key.defaultValue);
    };
    const auto remembered = configured(keys::ANSWER_REMEMBERED);
    const auto value = configured(keys::ANSWER);
    return remembered != 0 ? value : ask(message);
}

void applyToDma(const HlEnvironmentDmaNode& dma, const Size& camera)
{
    const auto group = model::frameBuffersOf(dma);
    if (!group)
        return;
    group->setWidth(camera.width);
    group->setHeight(camera.height);
    model::announceGeometry(*group);
}

void reconcilePair(const HlEnvironmentDmaNode& dma, const HlEnvironmentLogicalPortNode& port)
{
    if (port.getGeneratorActive())
        return;
    const auto camera = cameraOfPort(port);
    if (!camera)
        return;
    const Size cameraSize{camera->width(), camera->height()};
    const auto scene = dma.getDisplayScene();
    if (!scene)
        return;
    const Size displaySize{scene->width(), scene->height()};
    if (agree(cameraSize, displaySize))
        return;

    const long long choice = rememberedOrAsked(
        "Board " + std::to_string(port.getBoard()) + ": Camera dimension " + text(cameraSize) +
        " on camera port " + std::to_string(port.getIndex()) + " differs from DMA dimension " +
        text(displaySize) + " on DMA port " + std::to_string(dma.getIndex()) + ".");
    if (choice == APPLY_DMA_TO_CAMERA) {
        camera->setWidth(displaySize.width);
        camera->setHeight(displaySize.height);
    } else if (choice == APPLY_CAMERA_TO_DMA) {
        applyToDma(dma, cameraSize);
    }
}

} // namespace

void reconcileImageSizes(const ResourceFilter& filter)
{
    const ResourceSweep sweep;
    sweep.forEachDma(filter, [&sweep](const HlEnvironmentDmaNode& dma) {
        sweep.forEachLogicalPort({}, [&dma](const HlEnvironmentLogicalPortNode& port) {
            if (port.getBoard() == dma.getBoard() && port.getProcess() == dma.getProcess())
                reconcilePair(dma, port);
        });
    });
}

} // namespace ovra::gui::acquisition
