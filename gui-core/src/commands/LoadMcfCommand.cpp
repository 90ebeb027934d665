// SPDX-License-Identifier: MIT
#include "gui-core/LoadMcfCommand.h"

#include "mcf/Mcf.h"
#include "messages/CommandSubmission.h"
#include "messages/StatusText.h"
#include "model/AppletFolderOf.h"
#include "model/BoardLookup.h"

#include "gui-core/Gui.h"
#include "gui-core/LoadAppletCommand.h"
#include "gui-core/Views.h"

#include "ovra-core/HarloApplication.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <utility>

namespace ovra::gui::commands {

using core::models::HlEnvironmentBoardNode;
using core::models::HlEnvironmentFileNode;

struct LoadMcfCommand::Request
{
    boost::shared_ptr<HlEnvironmentBoardNode> board;
    std::string file;
};

namespace {

/// Case-sensitive: "X.HAP" is not an applet here.
bool isHap(const std::string& name)
{
    return name.ends_with(".hap");
}

/// The applet's name as the file gives it; empty when it names none.
std::string appletNameOf(const std::string& mcf)
{
    std::string name(mcf::mcfValue(mcf, "Kamerasektion", "HapName"));
    if (!name.empty())
        return isHap(name) ? name : name + ".hap";
    name = mcf::mcfValue(mcf, "fglib5", "FileName");
    if (name.empty())
        name = mcf::mcfValue(mcf, "Kamerasektion", "Typ");
    return name;
}

std::string appletPathOf(std::string name, const HlEnvironmentBoardNode& board)
{
    if (name.find_first_of("/\\") != std::string::npos)
        return name;
    if (name.find('.') == std::string::npos)
        name += ".dll";
    const char* folder = isHap(name) ? "/Hardware Applets/" : "/dll/";
    return core::HarloApplication::getRuntimeDirectory() + folder +
           model::appletFolderOf(board.getBoardType()) + "/" + name;
}

/// The environment's node for the path, added if missing; empty when no such file exists.
boost::shared_ptr<HlEnvironmentFileNode> appletFile(const std::string& path)
{
    const auto files = model::environmentRoot()->getFilesEntryNode();
    if (!files->existsAllFilesEntry(path))
        Gui::environment()->forceSingleFileAddition(path);
    if (!files->existsAllFilesEntry(path))
        return {};
    return files->getAllFilesEntry(path);
}

} // namespace

boost::shared_ptr<LoadMcfCommand> LoadMcfCommand::create(boost::shared_ptr<HlEnvironmentBoardNode> board,
                                                         const std::string& file)
{
    return boost::make_shared<LoadMcfCommand>(std::move(board), file);
}

LoadMcfCommand::LoadMcfCommand(boost::shared_ptr<HlEnvironmentBoardNode> board, const std::string& file)
    : Command(Command::Synchronous),
      m_request(boost::make_shared<Request>(Request{std::move(board), file}))
{}

LoadMcfCommand::LoadMcfCommand(const LoadMcfCommand& other) = default;
LoadMcfCommand& LoadMcfCommand::operator=(const LoadMcfCommand& other) = default;
LoadMcfCommand::~LoadMcfCommand() = default;

void LoadMcfCommand::executeSync()
{
    const auto& [board, file] = *m_request;
    if (!board)
        return;

    const bool appletOnly = isHap(file);
    std::string applet = file;
    if (!appletOnly) {
        const std::string name = appletNameOf(mcf::readMcf(file));
        if (name.empty()) {
            executeErrorDialog("Illegal MCF Configuration File");
            return;
        }
        applet = appletPathOf(name, *board);
    }
    std::replace(applet.begin(), applet.end(), '\\', '/');

    const auto node = appletFile(applet);
    if (!node) {
        executeErrorDialog("Applet File Referenced In MCF Configuration File Does Not Exist!");
        return;
    }
    messages::submit(LoadAppletCommand::create(static_cast<int>(board->getSerial()), node->getFilePath(),
                                               appletOnly ? "" : file));
}

void LoadMcfCommand::executeErrorDialog(const std::string& text)
{
    const std::string title = "Board " + std::to_string(m_request->board->getIndex()) + " - Loading File";
    Gui::views()->showErrorMessage(title, "ERROR: " + text);
}

void LoadMcfCommand::executeErrorDialog(int code)
{
    executeErrorDialog(messages::descriptionWithCode(code));
}

} // namespace ovra::gui::commands
