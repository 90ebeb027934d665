/// \file
/// Question: what the library asks the user in the middle of a command.
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
        int button = 2; ///< the last one: nothing is changed
        bool remember = false;
        bool given = false; ///< by a user
    };

    /// \p isAnybodyThere tells whether a page is open.
    Question(reference::Application& application, StateDocument& state, std::function<bool()> isAnybodyThere);

    /// Shows the question on all pages and lets the loop run until one of them answers. Nobody there, or
    /// nobody for some seconds: the last button.
    Answer ask(const std::string& title, const std::string& message,
               const std::array<std::string, 3>& buttons);

    bool isOpen() const { return m_open; }
    /// False when this question is not asked any more.
    bool answer(std::int64_t question, int button, bool remember);
    /// The program ends: nobody will answer.
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
    std::chrono::steady_clock::time_point m_lastSeen; ///< somebody
};

} // namespace ovra::viewer
