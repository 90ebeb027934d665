// SPDX-License-Identifier: MIT
#include "../Platform.h"

#include <cstdio>
#include <cstdlib>

#include <io.h>
#include <windows.h>

namespace ovra::console {

namespace {

UINT outputCodePageBefore = 0;

void restoreTerminal()
{
    SetConsoleOutputCP(outputCodePageBefore);
}

} // namespace

bool inputIsTerminal()
{
    return _isatty(_fileno(stdin)) != 0;
}

bool outputIsTerminal()
{
    return _isatty(_fileno(stdout)) != 0;
}

bool errorsAreTerminal()
{
    return _isatty(_fileno(stderr)) != 0;
}

void prepareTerminal()
{
    outputCodePageBefore = GetConsoleOutputCP();
    if (outputCodePageBefore == 0) // there is no terminal
        return;
    SetConsoleOutputCP(CP_UTF8);
    std::atexit(restoreTerminal);
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (GetConsoleMode(output, &mode))
        SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

int terminalColumns()
{
    constexpr int DEFAULT_COLUMNS = 80;
    CONSOLE_SCREEN_BUFFER_INFO info{};
    const bool known =
        GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) && info.dwSize.X > 0;
    return known ? info.dwSize.X : DEFAULT_COLUMNS;
}

std::filesystem::path historyFile()
{
    return {};
}

} // namespace ovra::console
