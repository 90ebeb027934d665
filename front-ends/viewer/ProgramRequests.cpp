// The program itself.
#include "RequestTable.h"
#include "Viewer.h"

namespace ovra::viewer {

using nlohmann::json;

namespace {

json quit(Viewer& viewer, const json&)
{
    viewer.quit();
    return nullptr;
}

} // namespace

std::vector<RequestEntry> programRequests()
{
    return {{"quit", quit}};
}

} // namespace ovra::viewer
