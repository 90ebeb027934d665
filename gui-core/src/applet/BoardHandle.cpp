// SPDX-License-Identifier: MIT
#include "applet/BoardHandle.h"

#include "messages/CommandSubmission.h"
#include "messages/StatusText.h"
#include "model/BoardLookup.h"

#include "fglib5/Fglib5.h"

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"

#include <memory>
#include <utility>

namespace ovra::gui::applet {

namespace {

/// Sets the root's initialisation-in-progress flag until end(), or until an exception leaves the scope.
class [[nodiscard]] InitialisationInProgress
{
public:
    explicit InitialisationInProgress(boost::shared_ptr<core::models::HlEnvironmentRootNode> root)
        : m_root(std::move(root))
    {
        m_root->setFgInitInProgress(true);
    }

    ~InitialisationInProgress()
    {
        if (!m_set)
            return;
        try {
            m_root->setFgInitInProgress(false);
        } catch (...) {
            // Another exception already propagates to the command processor.
        }
    }

    InitialisationInProgress(const InitialisationInProgress&) = delete;
    InitialisationInProgress& operator=(const InitialisationInProgress&) = delete;

    void end()
    {
        m_root->setFgInitInProgress(false);
        m_set = false;
    }

private:
    boost::shared_ptr<core::models::HlEnvironmentRootNode> m_root;
    bool m_set = true;
};

/// Brackets a change of the handle, so that observers of the board see one update. end() closes the bracket;
/// leaving the scope without it, by an exception, closes it too.
class [[nodiscard]] HandleChange
{
public:
    explicit HandleChange(core::models::HlEnvironmentBoardNode& board) : m_board(board)
    {
        m_board.beginHandleChange();
    }

    ~HandleChange()
    {
        if (!m_open)
            return;
        // Also open after an end() that threw: this is the second attempt.
        try {
            m_board.endHandleChange();
        } catch (...) {
            // Another exception already propagates to the command processor.
        }
    }

    HandleChange(const HandleChange&) = delete;
    HandleChange& operator=(const HandleChange&) = delete;

    void end()
    {
        m_board.endHandleChange();
        m_open = false;
    }

private:
    core::models::HlEnvironmentBoardNode& m_board;
    bool m_open = true;
};

struct FreeGrabber
{
    void operator()(Fg_Struct* handle) const { Fg_FreeGrabber(handle); }
};

using OwnedHandle = std::unique_ptr<Fg_Struct, FreeGrabber>;

/// A freed handle must not stay on the board, because the next unload would free it again. After an exception
/// it is cleared in a second attempt before the exception propagates.
void forgetHandle(core::models::HlEnvironmentBoardNode& board)
{
    try {
        board.setBoardHandle(nullptr);
    } catch (...) {
        board.setBoardHandle(nullptr);
        throw;
    }
}

} // namespace

void freeBoardHandle(core::models::HlEnvironmentBoardNode& board)
{
    HandleChange change(board);
    if (Fg_Struct* handle = board.getBoardHandle()) {
        Fg_FreeGrabber(handle);
        forgetHandle(board);
    }
    change.end();
}

bool initialiseBoard(core::models::HlEnvironmentBoardNode& board, const std::string& appletPath)
{
    InitialisationInProgress inProgress(model::environmentRoot());
    OwnedHandle handle(Fg_Init(appletPath.c_str(), static_cast<unsigned int>(board.getIndex())));
    if (!handle) {
        messages::postLoadError("Error in Fg_Init(...): " + messages::lastErrorWithDescription());
        inProgress.end();
        return false;
    }
    inProgress.end();

    HandleChange change(board);
    board.setBoardHandle(handle.get());
    static_cast<void>(handle.release()); // the board has it now
    change.end();
    return true;
}

} // namespace ovra::gui::applet
