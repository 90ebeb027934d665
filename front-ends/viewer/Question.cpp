// SPDX-License-Identifier: MIT
#include "Question.h"

#include "server/StateDocument.h"

#include "ovra-core/reference/Application.h"

#include <utility>

namespace ovra::viewer {

Question::Question(reference::Application& application, StateDocument& state,
                   std::function<bool()> isAnybodyThere)
    : m_application(application),
      m_state(state),
      m_isAnybodyThere(std::move(isAnybodyThere))
{
    m_state.set("question", nullptr);
}

Question::Answer Question::ask(const std::string& title, const std::string& message,
                               const std::array<std::string, 3>& buttons)
{
    constexpr std::chrono::hours MAX_WAIT{24};
    m_answer = {};
    if (m_open || m_givenUp || !m_isAnybodyThere())
        return m_answer;
    m_open = true;
    m_lastSeen = std::chrono::steady_clock::now();
    m_state.set("question",
                {{"id", ++m_number}, {"title", title}, {"message", message}, {"buttons", buttons}});
    m_application.pumpUntil([this] { return isSettled(); }, MAX_WAIT);
    m_open = false;
    m_state.set("question", nullptr);
    return m_answer;
}

bool Question::answer(std::int64_t question, int button, bool remember)
{
    if (!m_open || question != m_number || m_answer.given)
        return false;
    m_answer = {button, remember, true};
    return true;
}

/// A page is briefly absent while it reloads.
bool Question::isSettled()
{
    constexpr std::chrono::seconds MAX_ABSENCE{5};
    const auto now = std::chrono::steady_clock::now();
    if (m_isAnybodyThere())
        m_lastSeen = now;
    return m_answer.given || m_givenUp || now - m_lastSeen > MAX_ABSENCE;
}

} // namespace ovra::viewer
