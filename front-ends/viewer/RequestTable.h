/// \file
/// RequestTable: what a page can ask the program to do.
#pragma once

#include "front-ends/shared/Lookup.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace ovra::viewer {

class Viewer;

struct RequestEntry
{
    const char* name;
    nlohmann::json (*perform)(Viewer& viewer, const nlohmann::json& arguments);
};

// One list a subject; a source each.
std::vector<RequestEntry> machineRequests();
std::vector<RequestEntry> acquisitionRequests();
std::vector<RequestEntry> parameterRequests();
std::vector<RequestEntry> configurationRequests();
std::vector<RequestEntry> programRequests();

/// GUI thread. Throws RequestError or MessageError with a text for the user when it cannot be done.
nlohmann::json performRequest(Viewer& viewer, const std::string& name, const nlohmann::json& arguments);

/// After a load: cameras of generated channels rest.
void attachGenerators(const frontend::BoardNode& board);

// What arguments name. Serials come as the state document shows them.
frontend::BoardNode boardArgument(const nlohmann::json& arguments);
frontend::BoardNode loadedBoardArgument(const nlohmann::json& arguments);
/// Of a channel or a port.
int indexArgument(const nlohmann::json& arguments, const char* name);

} // namespace ovra::viewer
