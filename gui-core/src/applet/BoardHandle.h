/// \file
/// Changes of a board's handle.
#pragma once

#include <boost/shared_ptr.hpp>

#include <string>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::commands {

/// Brackets a change, so that observers of the board see one update. end() closes the bracket; leaving the
/// scope without it, by an exception, closes it too.
class [[nodiscard]] HandleChange
{
public:
    explicit HandleChange(core::models::HlEnvironmentBoardNode& board);
    ~HandleChange();
    HandleChange(const HandleChange&) = delete;
    HandleChange& operator=(const HandleChange&) = delete;

    void end();

private:
    core::models::HlEnvironmentBoardNode& m_board;
    bool m_open = true;
};

/// Frees the board's handle, if it has one, as one change of the board.
void freeBoardHandle(core::models::HlEnvironmentBoardNode& board);

/// Puts the applet at \p appletPath on the board and stores the handle. On failure tells the user, and
/// returns false with the board as it was. Worker thread.
bool initialiseBoard(core::models::HlEnvironmentBoardNode& board, const std::string& appletPath);

} // namespace ovra::gui::commands
