// SPDX-License-Identifier: MIT
// The program itself.
#include "RequestTable.h"
#include "Viewer.h"

#include "front-ends/shared/ProblemReport.h"

namespace ovra::viewer {

using nlohmann::json;

namespace {

json reportProblem(Viewer& viewer, const json& arguments)
{
    const bool withPrivateNames = flagArgument(arguments, "withPaths");
    return {{"name", viewer.readyName("ovra-viewer-report", ".txt")},
            {"text", frontend::problemReport(viewer.reportContents(), withPrivateNames)}};
}

json quit(Viewer& viewer, const json&)
{
    viewer.quit();
    return nullptr;
}

} // namespace

std::vector<RequestEntry> programRequests()
{
    return {{"problem-report", reportProblem}, {"quit", quit}};
}

} // namespace ovra::viewer
