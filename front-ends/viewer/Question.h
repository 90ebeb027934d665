// SPDX-License-Identifier: MIT
/// \file
/// Question: a choice that the library asks the user for during a command.
#pragma once

#include <nlohmann/json.hpp>

#include <array>
#include <chrono>
#include <functional>
#include <string>

namespace ovra::reference {
class Application;
}

namespace ovra::viewer {

class StateDocument;

/// GUI thread.
class Question
{
public:
    struct Answer
    {
        int button = 2; ///< the last one changes nothing
        bool remember = false;
        bool given = false; ///< by a user
    };

    /// \p isAnybodyThere tells whether a page is open.
    Question(reference::Application& application, StateDocument& state, std::function<bool()> isAnybodyThere);

    /// Shows the question on all pages and runs the loop until one answers. If no page is open for some
    /// seconds, the answer is the last button.
    Answer ask(const std::string& title, const std::string& message,
               const std::array<std::string, 3>& buttons);

    bool isOpen() const { return m_open; }
    /// False if this question is no longer open.
    bool answer(std::int64_t question, int button, bool remember);
    /// Ends the question: the program quits.
    void giveUp() { m_givenUp = true; }

private:
    bool isSettled();

    reference::Application& m_application;
    StateDocument& m_state;
    const std::function<bool()> m_isAnybodyThere;
    std::int64_t m_number = 0;
    bool m_open = false;
    bool m_givenUp = false;
    Answer m_answer;
    std::chrono::steady_clock::time_point m_lastSeen; ///< when a page was last open
};

} // namespace ovra::viewer
