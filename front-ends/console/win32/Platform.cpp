#include "../Platform.h"

#include <cstdio>

#include <io.h>
#include <stdlib.h>
#include <windows.h>

namespace ovra::console {

bool inputIsTerminal()
{
    return _isatty(_fileno(stdin)) != 0;
}

bool outputIsTerminal()
{
    return _isatty(_fileno(stdout)) != 0;
}

void prepareTerminal()
{
    SetConsoleCP(CP_UTF8);
    SetConsoleOutputCP(CP_UTF8);
}

// The C run-time library's own copy is what the libraries of the process read; this changes both.
void setEnvironmentVariable(const std::string& name, const std::string& value)
{
    _putenv_s(name.c_str(), value.c_str());
}

} // namespace ovra::console
