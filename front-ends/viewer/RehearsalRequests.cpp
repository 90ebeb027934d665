// SPDX-License-Identifier: MIT
// Rehearsals: faults, cables, shortages and scenarios of a virtual installation.
#include "RequestTable.h"
#include "Viewer.h"

#include "front-ends/shared/Paths.h"
#include "front-ends/shared/Rehearsal.h"
#include "front-ends/shared/RequestError.h"

#include "ovra-core/HarloApplication.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <sstream>
#include <system_error>
#include <vector>

namespace ovra::viewer {

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

json linesOf(const std::string& text)
{
    json lines = json::array();
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// Any step except "scenario", whose argument is a path.
std::string stepArgument(const json& arguments)
{
    constexpr std::array VERBS{"fault", "delay",  "calls", "faults",       "forget", "unplug",
                               "plug",  "loosen", "busy",  "image-memory", "disk"};
    auto step = textArgument(arguments, "step");
    const auto verb = step.substr(0, step.find(' '));
    if (std::ranges::find(VERBS, verb) == VERBS.end())
        throw frontend::RequestError("there is no step '" + verb + "'");
    return step;
}

json performStep(Viewer& viewer, const json& arguments)
{
    const auto answer = frontend::rehearse(stepArgument(arguments));
    frontend::followHardware(viewer.application());
    return linesOf(answer);
}

fs::path scenarioFolder()
{
    return frontend::pathOf(core::HarloApplication::getRuntimeDirectory()) / "simulation" / "scenarios";
}

std::vector<std::string> scenarioNames()
{
    std::vector<std::string> names;
    std::error_code ignored; // a folder that cannot be read has none
    for (const auto& entry : fs::directory_iterator(scenarioFolder(), ignored))
        if (entry.path().extension() == ".scenario")
            names.push_back(frontend::textOf(entry.path().stem()));
    std::ranges::sort(names);
    return names;
}

json listScenarios(Viewer&, const json&)
{
    return scenarioNames();
}

json playScenario(Viewer&, const json& arguments)
{
    const auto name = textArgument(arguments, "name");
    const auto names = scenarioNames();
    if (std::ranges::find(names, name) == names.end())
        throw frontend::RequestError("there is no such scenario any more");
    frontend::rehearse("scenario " +
                       frontend::textOf(scenarioFolder() / frontend::pathOf(name + ".scenario")));
    return nullptr;
}

json uploadScenario(Viewer& viewer, const json& arguments)
{
    const auto file = viewer.storeUpload(textArgument(arguments, "text"), ".scenario");
    frontend::rehearse("scenario " + frontend::textOf(file));
    return nullptr;
}

json stopScenario(Viewer&, const json&)
{
    frontend::rehearse("scenario stop");
    return nullptr;
}

} // namespace

json describeRehearsal()
{
    try {
        return {{"plans", linesOf(frontend::rehearse("faults"))},
                {"scenario", linesOf(frontend::rehearse("scenario"))}};
    } catch (const std::exception&) {
        return nullptr; // no virtual installation
    }
}

std::vector<RequestEntry> rehearsalRequests()
{
    return {{"rehearse", performStep},
            {"list-scenarios", listScenarios},
            {"play-scenario", playScenario},
            {"upload-scenario", uploadScenario},
            {"stop-scenario", stopScenario}};
}

} // namespace ovra::viewer
