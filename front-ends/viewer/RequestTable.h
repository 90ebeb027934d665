// SPDX-License-Identifier: MIT
/// \file
/// RequestTable: the requests that pages can send.
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

// One list per subject, each in its own source.
std::vector<RequestEntry> machineRequests();
std::vector<RequestEntry> acquisitionRequests();
std::vector<RequestEntry> imageRequests();
std::vector<RequestEntry> parameterRequests();
std::vector<RequestEntry> configurationRequests();
std::vector<RequestEntry> rehearsalRequests();
std::vector<RequestEntry> programRequests();

/// GUI thread. Throws RequestError or MessageError with a text for the user if the request fails.
nlohmann::json performRequest(Viewer& viewer, const std::string& name, const nlohmann::json& arguments);

/// The state section about rehearsals; null if the installation is not a virtual one.
nlohmann::json describeRehearsal();

// Look up what arguments name. Serials have the form of the state document.
frontend::BoardNode boardArgument(const nlohmann::json& arguments);
frontend::BoardNode loadedBoardArgument(const nlohmann::json& arguments);
/// Of a channel or a port.
int indexArgument(const nlohmann::json& arguments, const char* name);

} // namespace ovra::viewer
