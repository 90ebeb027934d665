/// \file
/// Brings a board back to empty.
#pragma once

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::commands {

/// Takes everything off a loaded board that applet loading put there, and frees its handle. A host exception
/// ends it: the steps before are done, the others are not. GUI thread.
void emptyBoard(core::models::HlEnvironmentBoardNode& board);

/// Stands for a load that is not complete. Leaving its scope before done() or undo(), by an exception of the
/// host, empties the board by the same steps as emptyBoard(), as far as the host lets it: a step that throws
/// does not keep the others from being done. The next load thus does not meet half of this one. Worker
/// thread.
class [[nodiscard]] UnfinishedLoad
{
public:
    explicit UnfinishedLoad(core::models::HlEnvironmentBoardNode& board) : m_board(board) {}
    ~UnfinishedLoad();
    UnfinishedLoad(const UnfinishedLoad&) = delete;
    UnfinishedLoad& operator=(const UnfinishedLoad&) = delete;

    /// The load has failed in an orderly way: takes back what it has published up to the structure, that is
    /// children, handle and selection. Global resources are not touched: they are registered after the last
    /// step that fails so.
    void undo();
    /// The board may stay as it is.
    void done() { m_finished = true; }

private:
    core::models::HlEnvironmentBoardNode& m_board;
    bool m_finished = false;
};

} // namespace ovra::gui::commands
