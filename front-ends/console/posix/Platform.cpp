#include "../Platform.h"

#include <iostream>

#include <unistd.h>

namespace ovra::console {

bool inputIsTerminal()
{
    return isatty(STDIN_FILENO) != 0;
}

bool outputIsTerminal()
{
    return isatty(STDOUT_FILENO) != 0;
}

void prepareTerminal() {}

bool readInputLine(std::string& line)
{
    return static_cast<bool>(std::getline(std::cin, line));
}

} // namespace ovra::console
