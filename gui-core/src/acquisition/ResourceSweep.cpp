// SPDX-License-Identifier: MIT
#include "acquisition/ResourceSweep.h"

namespace ovra::gui::acquisition {

namespace {

template <class Node>
ResourceFilter reachAround(const Node& node, Gui::SyncMode mode)
{
    ResourceFilter filter;
    if (mode != Gui::SyncAllBoards)
        filter.board = node.getBoard();
    if (mode == Gui::SyncProcess)
        filter.process = node.getProcess();
    return filter;
}

} // namespace

std::optional<ResourceFilter> reachOf(const AcquisitionTarget& target, Gui::SyncMode mode)
{
    const bool widens = mode == Gui::SyncProcess || mode == Gui::SyncBoard || mode == Gui::SyncAllBoards;
    if (!widens || target.isEmpty())
        return std::nullopt;
    return target.dma ? reachAround(*target.dma, mode) : reachAround(*target.port, mode);
}

} // namespace ovra::gui::acquisition
