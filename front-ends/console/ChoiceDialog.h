// SPDX-License-Identifier: MIT
/// \file
/// ChoiceDialog: a question with three possible answers.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>

namespace ovra::console {

class Printer;

class ChoiceDialog
{
public:
    struct Answer
    {
        int button; ///< 0, 1 or 2
        bool remember;
    };

    /// Prompts the user and returns the line; empty at the end of input.
    using User = std::function<std::optional<std::string>(const std::string& prompt)>;

    /// Without \p user, the answers are those of setAnswer.
    ChoiceDialog(Printer& printer, User user);

    /// Sets the answer to later questions; initially button 2.
    void setAnswer(const Answer& answer);

    /// Prints the question and the answer. Asks the user until the answer is valid; chooses button 2 at the
    /// end of input.
    Answer ask(const std::string& question, const std::array<std::string, 3>& buttons);

private:
    Answer tellAnswer(const std::string& question, const std::array<std::string, 3>& buttons);
    Answer askUser();

    Printer& m_printer;
    const User m_user;
    Answer m_answer;
};

} // namespace ovra::console
