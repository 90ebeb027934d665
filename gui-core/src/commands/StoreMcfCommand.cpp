// SPDX-License-Identifier: MIT
#include "gui-core/StoreMcfCommand.h"

#include "messages/StatusText.h"

#include "gui-core/Gui.h"
#include "gui-core/Views.h"

#include "fglib5/Fglib5.h"

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace ovra::gui::commands {

using core::models::HlEnvironmentBoardNode;

struct StoreMcfCommand::Request
{
    boost::shared_ptr<HlEnvironmentBoardNode> board;
    std::string file;
};

boost::shared_ptr<StoreMcfCommand> StoreMcfCommand::create(boost::shared_ptr<HlEnvironmentBoardNode> board,
                                                           const std::string& file)
{
    return boost::make_shared<StoreMcfCommand>(std::move(board), file);
}

StoreMcfCommand::StoreMcfCommand(boost::shared_ptr<HlEnvironmentBoardNode> board, const std::string& file)
    : Command(Command::Synchronous),
      m_request(boost::make_shared<Request>(Request{std::move(board), file}))
{}

StoreMcfCommand::StoreMcfCommand(const StoreMcfCommand& other) = default;
StoreMcfCommand& StoreMcfCommand::operator=(const StoreMcfCommand& other) = default;
StoreMcfCommand::~StoreMcfCommand() = default;

void StoreMcfCommand::executeSync()
{
    const auto& board = m_request->board;
    if (!board)
        return;
    const int status = Fg_saveConfig(board->getBoardHandle(), m_request->file.c_str());
    if (status == FG_OK)
        return;
    const std::string title =
        "Board " + std::to_string(board->getIndex()) + " - Storing MCF Configuration File";
    Gui::views()->showErrorMessage(title, "ERROR: " + messages::descriptionWithCode(status));
}

} // namespace ovra::gui::commands
