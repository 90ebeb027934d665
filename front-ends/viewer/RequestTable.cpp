// SPDX-License-Identifier: MIT
#include "RequestTable.h"

#include "server/Message.h"

#include "front-ends/shared/Parameters.h"
#include "front-ends/shared/RequestError.h"
#include "front-ends/shared/Titles.h"

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

namespace ovra::viewer {

namespace {

const std::vector<RequestEntry>& requestTable()
{
    static const std::vector<RequestEntry> TABLE = [] {
        std::vector<RequestEntry> all;
        for (const auto& list :
             {machineRequests(), acquisitionRequests(), imageRequests(), parameterRequests(),
              configurationRequests(), rehearsalRequests(), programRequests()})
            all.insert(all.end(), list.begin(), list.end());
        return all;
    }();
    return TABLE;
}

} // namespace

nlohmann::json performRequest(Viewer& viewer, const std::string& name, const nlohmann::json& arguments)
{
    for (const auto& entry : requestTable())
        if (name == entry.name)
            return entry.perform(viewer, arguments);
    throw MessageError("there is no such request");
}

frontend::BoardNode boardArgument(const nlohmann::json& arguments)
{
    const std::string serial = textArgument(arguments, "board");
    for (const auto& board : frontend::allBoards())
        if (frontend::serialText(*board) == serial)
            return board;
    throw frontend::RequestError("this machine has no such board any more");
}

frontend::BoardNode loadedBoardArgument(const nlohmann::json& arguments)
{
    auto board = boardArgument(arguments);
    if (!board->getLoadedAppletEntry())
        throw frontend::RequestError(frontend::boardTitle(*board) + " holds no applet");
    return board;
}

int indexArgument(const nlohmann::json& arguments, const char* name)
{
    constexpr int MAX_INDEX = 255;
    return static_cast<int>(numberArgument(arguments, name, 0, MAX_INDEX));
}

} // namespace ovra::viewer
