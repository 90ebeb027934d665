// SPDX-License-Identifier: MIT
/// \file
/// LineEditor: reads lines that a user types at the terminal. posix/ and win32/ contain one source each.
#pragma once

#include "LineReader.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ovra::console {

/// Returns the completions of the last word of \p line, which ends at the cursor. Called while a line is
/// read, on the reading thread.
using Completer = std::function<std::vector<std::string>(const std::string& line)>;

/// Standard input and output must be the terminal.
class LineEditor final : public LineSource
{
public:
    /// \param history  file that keeps lines between sessions; empty: none. Not used if the system's own
    ///     editing keeps a history.
    explicit LineEditor(const std::filesystem::path& history);
    ~LineEditor() override;

    /// Must not be called while a line is read.
    void setCompleter(Completer completer);

    LineStatus read(const std::string& prompt, std::string& line) override;
    bool cancel() override;

    /// Any thread. Prints \p text, which ends with a line break, above the line that the user types. False if
    /// no line is being read.
    bool printAbove(const std::string& text);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::console
