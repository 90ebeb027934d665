/// \file
/// LineEditor: a user types lines at the terminal; posix/ and win32/ hold one source each.
#pragma once

#include "LineReader.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ovra::console {

/// Gives what the last word of \p line may become; \p line ends at the cursor. Called while a line is read,
/// on the thread that reads.
using Completer = std::function<std::vector<std::string>(const std::string& line)>;

/// Standard input and output must be the terminal.
class LineEditor final : public LineSource
{
public:
    /// \param history  file in which lines are kept from one session to the next; empty: none. Where the
    ///                 system's own editing keeps them, it is not used.
    explicit LineEditor(const std::filesystem::path& history);
    ~LineEditor() override;

    /// Not while a line is read.
    void setCompleter(Completer completer);

    LineStatus read(const std::string& prompt, std::string& line) override;
    bool cancel() override;

    /// Any thread. Puts \p text, which ends with a line break, above the line that is being typed. False when
    /// none is.
    bool printAbove(const std::string& text);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::console
