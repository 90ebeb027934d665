// SPDX-License-Identifier: MIT
// What boards hold: loading, unloading, looking for files again.
#include "RequestTable.h"
#include "Viewer.h"

#include "front-ends/shared/RequestError.h"

#include "gui-core/LoadAppletCommand.h"
#include "gui-core/RescanAppletsCommand.h"
#include "gui-core/UnloadAppletCommand.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"

namespace ovra::viewer {

using nlohmann::json;

namespace {

/// The text is looked up in the list of files and never used as a path.
frontend::FileNode appletArgument(const json& arguments)
{
    const std::string path = textArgument(arguments, "applet");
    for (const auto& file : frontend::allApplets())
        if (file->getFilePath() == path)
            return file;
    throw frontend::RequestError("this machine has no such applet any more");
}

json load(Viewer& viewer, const json& arguments)
{
    viewer.requireNoLoad();
    const auto board = boardArgument(arguments);
    const auto applet = appletArgument(arguments);
    viewer.run(gui::commands::LoadAppletCommand::create(static_cast<int>(board->getSerial()),
                                                        applet->getFilePath(), ""));
    return nullptr;
}

json unload(Viewer& viewer, const json& arguments)
{
    viewer.requireNoLoad();
    const auto board = loadedBoardArgument(arguments);
    viewer.run(gui::commands::UnloadAppletCommand::create(static_cast<int>(board->getSerial())));
    return nullptr;
}

json rescan(Viewer& viewer, const json&)
{
    viewer.run(gui::commands::RescanAppletsCommand::create());
    return nullptr;
}

} // namespace

std::vector<RequestEntry> machineRequests()
{
    return {{"load", load}, {"unload", unload}, {"rescan", rescan}};
}

} // namespace ovra::viewer
