// SPDX-License-Identifier: MIT
// Acquisition: start, stop, sync mode, and the question that a start may ask.
#include "RequestTable.h"
#include "Viewer.h"

#include "front-ends/shared/RequestError.h"

#include "gui-core/Gui.h"
#include "gui-core/StartAcquisitionCommand.h"
#include "gui-core/StopAcquisitionCommand.h"
#include "gui-core/keys/Keys.h"
#include "ovra-core/Command.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <boost/make_shared.hpp>

#include <limits>

namespace ovra::viewer {

using nlohmann::json;

namespace {

using gui::Gui;

/// Sets the mode for the commands between two of these: they reach a whole process.
class SetSyncMode final : public core::Command
{
public:
    SetSyncMode(Gui::SyncMode mode, Gui::SyncMode expected)
        : core::Command(core::Command::Synchronous),
          m_mode(mode),
          m_expected(expected)
    {}

    /// Keeps a mode that the user chose in the meantime.
    void executeSync() override
    {
        if (Gui::getSyncMode() == m_expected)
            Gui::setSyncMode(m_mode);
    }

private:
    const Gui::SyncMode m_mode;
    const Gui::SyncMode m_expected;
};

/// Runs the command that \p create makes for the channel, port or process in the arguments.
template <class Create>
void runFor(Viewer& viewer, const json& arguments, const Create& create)
{
    const auto board = loadedBoardArgument(arguments);
    const int index = indexArgument(arguments, "index");
    const std::string kind = textArgument(arguments, "kind");
    if (kind == "dma")
        return viewer.run(create(frontend::findDma(*board, index)));
    if (kind == "port")
        return viewer.run(create(frontend::findPort(*board, index)));
    if (kind != "process")
        throw MessageError("'kind' is neither 'dma' nor 'port' nor 'process'");

    const auto process = frontend::findProcess(*board, index);
    const auto dmas = frontend::listOf(process->getDmas());
    const auto ports = frontend::listOf(process->getLogicalPorts());
    if (dmas.empty() && ports.empty())
        return;
    const auto mode = Gui::getSyncMode();
    viewer.run(boost::make_shared<SetSyncMode>(Gui::SyncProcess, mode));
    viewer.run(dmas.empty() ? create(ports.front()) : create(dmas.front()));
    viewer.run(boost::make_shared<SetSyncMode>(mode, Gui::SyncProcess));
}

json start(Viewer& viewer, const json& arguments)
{
    constexpr int WITHOUT_END = -1;
    const int images =
        arguments.contains("images")
            ? static_cast<int>(numberArgument(arguments, "images", 1, std::numeric_limits<int>::max()))
            : WITHOUT_END;
    runFor(viewer, arguments, [images](const auto& target) {
        return gui::commands::StartAcquisitionCommand::create(target, images);
    });
    return nullptr;
}

json stop(Viewer& viewer, const json& arguments)
{
    runFor(viewer, arguments,
           [](const auto& target) { return gui::commands::StopAcquisitionCommand::create(target); });
    return nullptr;
}

json setSyncMode(Viewer&, const json& arguments)
{
    Gui::setSyncMode(
        static_cast<Gui::SyncMode>(numberArgument(arguments, "mode", Gui::SyncNone, Gui::SyncAllBoards)));
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
