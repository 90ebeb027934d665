// SPDX-License-Identifier: MIT
#include "../RunProgram.h"

#include "front-ends/shared/Paths.h"

#include <stdexcept>

#include <windows.h>

namespace ovra::tests {

namespace {

class Handle
{
public:
    explicit Handle(HANDLE handle) : m_handle(handle) {}
    ~Handle() { CloseHandle(m_handle); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    HANDLE get() const { return m_handle; }

private:
    const HANDLE m_handle;
};

HANDLE openForChild(const std::filesystem::path& file, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    const HANDLE handle = CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                      disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        throw std::runtime_error("cannot open " + file.string());
    return handle;
}

} // namespace

int runProgram(const ProgramRun& run)
{
    std::wstring command = L"\"" + run.program.wstring() + L"\"";
    for (const auto& argument : run.arguments)
        command += L" \"" + frontend::pathOf(argument).wstring() + L"\"";

    const Handle input(openForChild(run.input, GENERIC_READ, OPEN_EXISTING));
    const Handle output(openForChild(run.output, GENERIC_WRITE, CREATE_ALWAYS));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.get();
    startup.hStdOutput = output.get();
    startup.hStdError = output.get();
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &process))
        throw std::runtime_error("cannot start " + run.program.string());
    const Handle thread(process.hThread);
    const Handle running(process.hProcess);

    WaitForSingleObject(running.get(), INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(running.get(), &exitCode);
    return static_cast<int>(exitCode);
}

} // namespace ovra::tests
