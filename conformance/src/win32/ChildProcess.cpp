// SPDX-License-Identifier: MIT
#include "../ChildProcess.h"

#include <stdexcept>

#include <windows.h>

namespace ovra::conformance {

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

// Shared for deletion: other children inherit the handle, too, and must not prevent the file's removal.
HANDLE openForChild(const wchar_t* file, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    const HANDLE handle = CreateFileW(file, access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      &inherited, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        throw std::runtime_error("cannot open " + std::filesystem::path(file).string());
    return handle;
}

} // namespace

ChildResult runChild(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                     const std::filesystem::path& output, std::chrono::milliseconds limit)
{
    std::wstring command = L"\"" + program.wstring() + L"\"";
    for (const auto& argument : arguments)
        command += L" \"" + std::filesystem::path(argument).wstring() + L"\"";
    const Handle input(openForChild(L"NUL", GENERIC_READ, OPEN_EXISTING));
    const Handle printed(openForChild(output.c_str(), GENERIC_WRITE, CREATE_ALWAYS));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.get();
    startup.hStdOutput = printed.get();
    startup.hStdError = printed.get();
    PROCESS_INFORMATION process{};
    // Children inherit this mode: a crashed test opens no message box.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &process))
        throw std::runtime_error("cannot start " + program.string());
    const Handle thread(process.hThread);
    const Handle running(process.hProcess);

    if (WaitForSingleObject(running.get(), static_cast<DWORD>(limit.count())) == WAIT_TIMEOUT) {
        TerminateProcess(running.get(), 1);
        WaitForSingleObject(running.get(), INFINITE);
        return {Ending::Overdue, 0};
    }
    DWORD code = 0;
    GetExitCodeProcess(running.get(), &code);
    return {Ending::Exited, static_cast<int>(code)};
}

} // namespace ovra::conformance
