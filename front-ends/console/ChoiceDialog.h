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

    /// Gives the next line that the user types behind a prompt; empty when no more come.
    using User = std::function<std::optional<std::string>(const std::string& prompt)>;

    /// Without \p user, setAnswer gives the answers.
    ChoiceDialog(Printer& printer, User user);

    /// The answer to the questions that come from now on; button 2 at first.
    void setAnswer(const Answer& answer);

    /// Prints the question and the answer. Asks a user until the answer makes sense; takes button 2 at the
    /// end of input.
    Answer ask(const std::string& question, const std::array<std::string, 3>& buttons);

private:
    Answer askUser();

    Printer& m_printer;
    const User m_user;
    Answer m_answer;
};

} // namespace ovra::console
