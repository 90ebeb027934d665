// SPDX-License-Identifier: MIT
#include "ovra-lib-environment/reference/SoftwareTrigger.h"

#include "ovra-core/reference/RuntimeEntries.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <stdexcept>
#include <string>

namespace ovra::reference {

void sendSoftwareTrigger(const core::models::HlEnvironmentBoardNode& board, unsigned int port,
                         unsigned int count)
{
    const auto name = "Board " + std::to_string(board.getIndex()) + ", port " + std::to_string(port);
    auto* const handle = board.getBoardHandle();
    if (!handle)
        throw std::runtime_error(name + ": the board holds no applet");
    const auto runtime = requireRuntime();
    if (!runtime->Fg_sendSoftwareTriggerEx)
        throw std::runtime_error(name + ": the frame-grabber runtime has no software trigger");
    const int code = runtime->Fg_sendSoftwareTriggerEx(handle, port, count);
    if (code != FG_OK)
        throw std::runtime_error(name + ": the trigger was not taken: " + lastFailureText(*runtime));
}

} // namespace ovra::reference
