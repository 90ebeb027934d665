// SPDX-License-Identifier: MIT
#include "../Process.h"

#include <cstdlib>
#include <mutex>
#include <string_view>
#include <thread>
#include <utility>

#include <stdlib.h>
#include <windows.h>

#include <shellapi.h>

namespace ovra::frontend {

namespace {

std::mutex& handlerMutex()
{
    static std::mutex mutex;
    return mutex;
}

std::function<void(Signal)>& installedHandler()
{
    static std::function<void(Signal)> handler;
    return handler;
}

Signal meaningOf(DWORD event)
{
    if (event == CTRL_C_EVENT)
        return Signal::Interrupt;
    return event == CTRL_BREAK_EVENT ? Signal::Terminate : Signal::Hangup;
}

// The system calls this on a thread of its own.
BOOL WINAPI onControl(DWORD event)
{
    const Signal meaning = meaningOf(event);
    {
        const std::lock_guard lock(handlerMutex());
        installedHandler()(meaning);
    }
    if (meaning == Signal::Hangup)
        Sleep(INFINITE); // the system ends the process when this returns, or after some seconds
    return TRUE;
}

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

std::string environmentVariable(const wchar_t* name)
{
    constexpr DWORD MAX_LENGTH = 32767;
    std::wstring value(MAX_LENGTH, L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), MAX_LENGTH));
    return utf8(value);
}

} // namespace

std::vector<std::string> commandLineArguments(int, char**)
{
    int count = 0;
    LPWSTR* const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> texts;
    for (int i = 1; words && i < count; ++i)
        texts.push_back(utf8(words[i]));
    LocalFree(static_cast<void*>(words));
    return texts;
}

// GetVersionEx reports an old version to programs whose manifest does not list newer ones.
std::string systemDescription()
{
    using GetVersion = LONG(WINAPI*)(OSVERSIONINFOW*);
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    const auto get = reinterpret_cast<GetVersion>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
    if (get)
        get(&version);
    return "Windows " + std::to_string(version.dwMajorVersion) + '.' +
           std::to_string(version.dwMinorVersion) + '.' + std::to_string(version.dwBuildNumber) + ", " +
           std::to_string(std::thread::hardware_concurrency()) + " processors";
}

std::string userName()
{
    return environmentVariable(L"USERNAME");
}

std::string homeFolder()
{
    return environmentVariable(L"USERPROFILE");
}

// The libraries of the process read the C run-time library's copy of the environment; this changes both
// copies.
void setEnvironmentVariable(const std::string& name, const std::string& value)
{
    _putenv_s(name.c_str(), value.c_str());
}

void handleSignals(std::function<void(Signal)> handler)
{
    installedHandler() = std::move(handler);
    SetConsoleCtrlHandler(&onControl, TRUE);
}

void endAtOnce(Signal)
{
    constexpr UINT EXIT_CODE_OF_CTRL_C = 0xc000013a; // what the system's own handler ends with
    TerminateProcess(GetCurrentProcess(), EXIT_CODE_OF_CTRL_C);
    std::_Exit(EXIT_FAILURE);
}

} // namespace ovra::frontend
