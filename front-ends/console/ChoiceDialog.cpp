// SPDX-License-Identifier: MIT
#include "ChoiceDialog.h"

#include "Printer.h"

#include <sstream>
#include <utility>

namespace ovra::console {

namespace {

constexpr int LAST_BUTTON = 2;

std::optional<ChoiceDialog::Answer> readAnswer(const std::string& line)
{
    std::istringstream words(line);
    int button = 0;
    if (!(words >> button) || button < 0 || button > LAST_BUTTON)
        return std::nullopt;
    std::string option;
    words >> option;
    if (!option.empty() && option != "remember")
        return std::nullopt;
    return ChoiceDialog::Answer{button, !option.empty()};
}

} // namespace

ChoiceDialog::ChoiceDialog(Printer& printer, User user)
    : m_printer(printer),
      m_user(std::move(user)),
      m_answer{LAST_BUTTON, false}
{}

void ChoiceDialog::setAnswer(const Answer& answer)
{
    m_answer = answer;
}

ChoiceDialog::Answer ChoiceDialog::ask(const std::string& question, const std::array<std::string, 3>& buttons)
{
    if (m_printer.target() == Printer::Target::Objects)
        return tellAnswer(question, buttons);
    m_printer.line(question);
    for (std::size_t i = 0; i < buttons.size(); ++i)
        m_printer.line("  " + std::to_string(i) + "  " + buttons.at(i));

    const Answer answer = m_user ? askUser() : m_answer;
    m_printer.line("Answer: " + buttons.at(static_cast<std::size_t>(answer.button)) +
                   (answer.remember ? ", from now on." : "."));
    return answer;
}

/// A program is not asked.
ChoiceDialog::Answer ChoiceDialog::tellAnswer(const std::string& question,
                                              const std::array<std::string, 3>& buttons)
{
    m_printer.result("question",
                     {{"text", question},
                      {"buttons", std::vector<std::string>(buttons.begin(), buttons.end())},
                      {"answer", std::int64_t{m_answer.button}},
                      {"remember", m_answer.remember}},
                     "");
    return m_answer;
}

ChoiceDialog::Answer ChoiceDialog::askUser()
{
    for (;;) {
        const auto line = m_user("0, 1 or 2 [remember]: ");
        if (!line)
            return {LAST_BUTTON, false};
        if (const auto answer = readAnswer(*line))
            return *answer;
    }
}

} // namespace ovra::console
