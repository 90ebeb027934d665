// SPDX-License-Identifier: MIT
#include "gui-core/LoadAppletCommand.h"

#include "applet/AppletStructure.h"
#include "applet/BoardHandle.h"
#include "applet/BoardTeardown.h"
#include "applet/ChannelSetup.h"
#include "applet/LegacyApplet.h"
#include "messages/CommandSubmission.h"
#include "messages/StatusText.h"
#include "model/AppletType.h"
#include "model/BoardLookup.h"
#include "model/BoardResources.h"
#include "model/FrameBuffers.h"

#include "gui-core/Gui.h"
#include "gui-core/RescanAppletsCommand.h"
#include "gui-core/UnloadAppletCommand.h"
#include "gui-core/Views.h"

#include "fglib5/Fglib5.h"

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"

#include <boost/make_shared.hpp>

namespace ovra::gui::commands {

using core::models::HlEnvironmentBoardNode;
using core::models::HlEnvironmentFileNode;

struct LoadAppletCommand::Request
{
    unsigned int boardSerial = 0;
    std::string appletFile;
    std::string mcfFile;
    boost::shared_ptr<HlEnvironmentBoardNode> board;
    boost::shared_ptr<HlEnvironmentFileNode> file;
    bool loadable = false; ///< board and file were found, and the board was unloaded
    bool accepted = false; ///< this request holds the loading slot
};

namespace {

/// One load at a time. GUI thread only.
bool loadInProgress = false;

/// Frees the loading slot at the end of a scope, also when the front end throws.
struct [[nodiscard]] LoadingSlotRelease
{
    LoadingSlotRelease() = default;
    ~LoadingSlotRelease() { loadInProgress = false; }
    LoadingSlotRelease(const LoadingSlotRelease&) = delete;
    LoadingSlotRelease& operator=(const LoadingSlotRelease&) = delete;
};

/// On failure posts an error to the user; the board is then half built.
bool buildStructure(HlEnvironmentBoardNode& board, const HlEnvironmentFileNode& file, model::AppletType type,
                    const std::string& appletPath)
{
    const std::string detected = std::string("Detected applet type: ") + model::appletTypeName(type);
    if (type == model::AppletType::Unknown) {
        messages::postLoadError(detected);
        return false;
    }
    messages::postLoadStatus(detected);
    return type == model::AppletType::LegacyDll ? applet::buildLegacyApplet(board, appletPath)
                                                : applet::buildRuntimeStructure(board, file);
}

void applyMcf(const HlEnvironmentBoardNode& board, const std::string& mcfFile)
{
    messages::postLoadStatus("Loading Configuration from MCF.");
    const int code = Fg_loadConfig(board.getBoardHandle(), mcfFile.c_str());
    if (code != FG_OK) {
        messages::postLoadWarning("...Error loading MCF: " + messages::descriptionWithCode(code));
        return;
    }
    messages::postLoadStatus("Loading Configuration from MCF succeeded.");
    for (const auto dmas = board.getDmas(); dmas->hasNext(); dmas->advance())
        if (const auto group = model::frameBuffersOf(*dmas->current()))
            model::announceGeometry(*group);
}

} // namespace

boost::shared_ptr<LoadAppletCommand> LoadAppletCommand::create(int boardSerial, const std::string& appletFile,
                                                               const std::string& mcfFile)
{
    return boost::make_shared<LoadAppletCommand>(boardSerial, appletFile, mcfFile);
}

LoadAppletCommand::LoadAppletCommand(int boardSerial, const std::string& appletFile,
                                     const std::string& mcfFile)
    : Command(Command::Asynchronous),
      m_request(boost::make_shared<Request>())
{
    m_request->boardSerial = static_cast<unsigned int>(boardSerial);
    m_request->appletFile = appletFile;
    m_request->mcfFile = mcfFile;
}

LoadAppletCommand::LoadAppletCommand(const LoadAppletCommand& other) = default;
LoadAppletCommand& LoadAppletCommand::operator=(const LoadAppletCommand& other) = default;
LoadAppletCommand::~LoadAppletCommand() = default;

void LoadAppletCommand::executeSync()
{
    Request& request = *m_request;
    if (loadInProgress) {
        request.accepted = false;
        return;
    }
    loadInProgress = true;
    request.accepted = true;
    request.loadable = false;

    const auto views = Gui::views();
    views->onLoadAppletStarted();

    request.board = model::findBoard(request.boardSerial);
    if (!request.board) {
        views->showLoadAppletError("Invalid board serial: " + std::to_string(request.boardSerial));
        return;
    }
    views->showLoadingBoard(std::to_string(request.board->getIndex()) + " - " +
                            request.board->getBoardName());

    request.file = model::findAppletFile(request.appletFile);
    if (!request.file) {
        views->showLoadAppletError("Invalid applet file: " + request.appletFile);
        return;
    }
    views->showLoadingApplet(request.file->getFileName());

    messages::submit(UnloadAppletCommand::create(static_cast<int>(request.boardSerial)));
    request.loadable = true;
}

void LoadAppletCommand::executeAsync()
{
    const Request& request = *m_request;
    if (!request.accepted || !request.loadable)
        return;
    HlEnvironmentBoardNode& board = *request.board;
    const HlEnvironmentFileNode& file = *request.file;

    applet::UnfinishedLoad unfinished(board);
    messages::postLoadStatus("Loading applet '" + file.getFileName() + "' on board " +
                             std::to_string(board.getIndex()) + " ...");
    if (!applet::initialiseBoard(board, request.appletFile)) {
        unfinished.done();
        return;
    }
    messages::postLoadStatus("Loading succeeded.");

    messages::postLoadStatus("Reading applet structure ...");
    const model::AppletType type = model::appletType(file);
    if (!buildStructure(board, file, type, request.appletFile)) {
        unfinished.undo();
        return;
    }
    applet::logStructure(board);
    applet::mapLogicalPorts(board);
    applet::createEventsModel(board);
    applet::createParameterModels(board, type);
    applet::setUpChannels(board);
    model::registerBoardResources(board, type);
    board.setLoadedAppletEntry(request.file);
    board.setBoardSelectedForViewEntry(true);
    // A configuration that the runtime refuses is a warning: the applet stays.
    if (!request.mcfFile.empty())
        applyMcf(board, request.mcfFile);
    unfinished.done();
}

void LoadAppletCommand::executePostAsync()
{
    Request& request = *m_request;
    if (!request.accepted)
        return;
    {
        const LoadingSlotRelease release;
        request.board.reset();
        request.file.reset();
        const auto views = Gui::views();
        views->onLoadAppletFinished();
        views->ensure_board_selection(request.boardSerial);
        views->update_dma_memory();
    }
    messages::submit(RescanAppletsCommand::create());
}

} // namespace ovra::gui::commands
