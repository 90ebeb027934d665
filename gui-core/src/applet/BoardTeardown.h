/// \file
/// Brings a board back to empty.
#pragma once

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::commands {

/// Takes DMA channels, processes, logical and physical ports off the board, in this order.
void clearStructure(core::models::HlEnvironmentBoardNode& board);

/// Takes back what a load has published up to the structure: children, handle, selection. Global resources
/// are not touched: they are registered after the last step that fails in an orderly way.
void undoLoad(core::models::HlEnvironmentBoardNode& board);

/// Empties a board that a load left at any point, as far as the host lets it: a step that throws does not
/// keep the others from being done.
void forceEmpty(core::models::HlEnvironmentBoardNode& board) noexcept;

/// Stands for a load that is not complete. Leaving its scope before done() or reset(), by an exception of the
/// host, abandons the board, so that the next load does not meet half of this one.
class [[nodiscard]] UnfinishedLoad
{
public:
    explicit UnfinishedLoad(core::models::HlEnvironmentBoardNode& board) : m_board(board) {}
    ~UnfinishedLoad();
    UnfinishedLoad(const UnfinishedLoad&) = delete;
    UnfinishedLoad& operator=(const UnfinishedLoad&) = delete;

    /// The load has failed in an orderly way: resets the board.
    void reset();
    /// The board may stay as it is.
    void done() { m_finished = true; }

private:
    core::models::HlEnvironmentBoardNode& m_board;
    bool m_finished = false;
};

} // namespace ovra::gui::commands
