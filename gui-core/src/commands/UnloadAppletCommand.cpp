// SPDX-License-Identifier: MIT
#include "gui-core/UnloadAppletCommand.h"

#include "applet/BoardTeardown.h"
#include "model/BoardLookup.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <boost/make_shared.hpp>

namespace ovra::gui::commands {

struct UnloadAppletCommand::Request
{
    unsigned int boardSerial;
};

boost::shared_ptr<UnloadAppletCommand> UnloadAppletCommand::create(int boardSerial)
{
    return boost::make_shared<UnloadAppletCommand>(boardSerial);
}

UnloadAppletCommand::UnloadAppletCommand(int boardSerial)
    : Command(Command::Synchronous),
      m_request(boost::make_shared<Request>(Request{static_cast<unsigned int>(boardSerial)}))
{}

UnloadAppletCommand::UnloadAppletCommand(const UnloadAppletCommand& other) = default;
UnloadAppletCommand& UnloadAppletCommand::operator=(const UnloadAppletCommand& other) = default;
UnloadAppletCommand::~UnloadAppletCommand() = default;

void UnloadAppletCommand::executeSync()
{
    const auto board = model::findBoard(m_request->boardSerial);
    if (!board)
        return;
    applet::emptyBoard(*board);
    const auto views = Gui::views();
    views->applet_unloaded();
    views->update_dma_memory();
}

} // namespace ovra::gui::commands
