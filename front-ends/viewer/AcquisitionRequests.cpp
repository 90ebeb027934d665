// Acquisition: start, stop, how far they reach, and the question that a start may ask.
#include "RequestTable.h"
#include "Viewer.h"

#include "front-ends/shared/RequestError.h"

#include "gui-core/Gui.h"
#include "gui-core/StartAcquisitionCommand.h"
#include "gui-core/StopAcquisitionCommand.h"
#include "gui-core/keys/Keys.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <limits>

namespace ovra::viewer {

using nlohmann::json;

namespace {

bool namesPort(const json& arguments)
{
    const std::string kind = textArgument(arguments, "kind");
    if (kind != "dma" && kind != "port")
        throw MessageError("'kind' is neither 'dma' nor 'port'");
    return kind == "port";
}

json start(Viewer& viewer, const json& arguments)
{
    using gui::commands::StartAcquisitionCommand;
    constexpr int WITHOUT_END = -1;
    const auto board = loadedBoardArgument(arguments);
    const int index = indexArgument(arguments, "index");
    const int images =
        arguments.contains("images")
            ? static_cast<int>(numberArgument(arguments, "images", 1, std::numeric_limits<int>::max()))
            : WITHOUT_END;
    if (namesPort(arguments))
        viewer.run(StartAcquisitionCommand::create(frontend::findPort(*board, index), images));
    else
        viewer.run(StartAcquisitionCommand::create(frontend::findDma(*board, index), images));
    return nullptr;
}

json stop(Viewer& viewer, const json& arguments)
{
    using gui::commands::StopAcquisitionCommand;
    const auto board = loadedBoardArgument(arguments);
    const int index = indexArgument(arguments, "index");
    if (namesPort(arguments))
        viewer.run(StopAcquisitionCommand::create(frontend::findPort(*board, index)));
    else
        viewer.run(StopAcquisitionCommand::create(frontend::findDma(*board, index)));
    return nullptr;
}

json setSyncMode(Viewer&, const json& arguments)
{
    gui::Gui::setSyncMode(static_cast<gui::Gui::SyncMode>(
        numberArgument(arguments, "mode", gui::Gui::SyncNone, gui::Gui::SyncAllBoards)));
    return nullptr;
}

json answer(Viewer& viewer, const json& arguments)
{
    constexpr int LAST_BUTTON = 2;
    const auto question = numberArgument(arguments, "question", 0, std::numeric_limits<std::int32_t>::max());
    const auto button = static_cast<int>(numberArgument(arguments, "button", 0, LAST_BUTTON));
    if (!viewer.question().answer(question, button, flagArgument(arguments, "remember")))
        throw frontend::RequestError("the question has been answered already");
    return nullptr;
}

json forgetAnswer(Viewer&, const json&)
{
    core::HarloApplication::setConfigEntry(gui::keys::ANSWER_REMEMBERED.name, 0);
    return nullptr;
}

} // namespace

std::vector<RequestEntry> acquisitionRequests()
{
    return {{"start", start},
            {"stop", stop},
            {"set-sync-mode", setSyncMode},
            {"answer", answer},
            {"forget-answer", forgetAnswer}};
}

} // namespace ovra::viewer
