// SPDX-License-Identifier: MIT
/// \file
/// emptyBoard, UnfinishedLoad: take an applet off a board.
#pragma once

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::applet {

/// Removes everything that a load created on the board, and frees its handle. A host exception ends it: the
/// steps before it are done, the others are not. GUI thread.
void emptyBoard(core::models::HlEnvironmentBoardNode& board);

/// Represents an incomplete load. If an exception leaves its scope before done() or undo(), the destructor
/// empties the board with the steps of emptyBoard(), so that the next load finds no remains. If one step
/// throws, the others still run. Worker thread.
class [[nodiscard]] UnfinishedLoad
{
public:
    explicit UnfinishedLoad(core::models::HlEnvironmentBoardNode& board) : m_board(board) {}
    ~UnfinishedLoad();
    UnfinishedLoad(const UnfinishedLoad&) = delete;
    UnfinishedLoad& operator=(const UnfinishedLoad&) = delete;

    /// For a load that fails without an exception: removes the children, the handle and the selection. There
    /// are no global resources to remove, since they are registered after the last step that can fail in this
    /// way.
    void undo();
    /// The load is complete: the destructor does nothing.
    void done() { m_finished = true; }

private:
    core::models::HlEnvironmentBoardNode& m_board;
    bool m_finished = false;
};

} // namespace ovra::gui::applet
