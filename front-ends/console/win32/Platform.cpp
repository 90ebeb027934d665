#include "../Platform.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include <io.h>
#include <windows.h>

namespace ovra::console {

namespace {

std::string utf8(std::wstring_view text)
{
    const int length = static_cast<int>(text.size());
    std::string converted(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), length,
                                                                       nullptr, 0, nullptr, nullptr)),
                          '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, converted.data(), static_cast<int>(converted.size()),
                        nullptr, nullptr);
    return converted;
}

UINT outputCodePageBefore = 0;

void restoreTerminal()
{
    SetConsoleOutputCP(outputCodePageBefore);
}

// The narrow reading functions lose what is outside ASCII, whatever the code page.
bool readTerminalLine(std::string& line)
{
    constexpr wchar_t END_OF_INPUT = 0x1a; // Ctrl-Z
    std::wstring text;
    while (!text.ends_with(L'\n')) {
        std::array<wchar_t, 256> part{};
        DWORD count = 0;
        // None at all: Ctrl-C.
        if (!ReadConsoleW(GetStdHandle(STD_INPUT_HANDLE), part.data(), static_cast<DWORD>(part.size()),
                          &count, nullptr) ||
            count == 0)
            return false;
        text.append(part.data(), count);
        if (text.front() == END_OF_INPUT)
            return false;
    }
    text.pop_back();
    line = utf8(text);
    return true;
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

void prepareTerminal()
{
    outputCodePageBefore = GetConsoleOutputCP();
    if (outputCodePageBefore == 0) // there is no terminal
        return;
    SetConsoleOutputCP(CP_UTF8);
    std::atexit(restoreTerminal);
}

bool readInputLine(std::string& line)
{
    return inputIsTerminal() ? readTerminalLine(line) : static_cast<bool>(std::getline(std::cin, line));
}

} // namespace ovra::console
