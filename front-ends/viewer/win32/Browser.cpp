#include "Browser.h"

#include <cstdint>

#include <windows.h>

#include <shellapi.h>

namespace ovra::viewer {

bool openBrowser(const std::string& address)
{
    constexpr std::intptr_t LAST_ERROR_CODE = 32;
    const HINSTANCE result = ShellExecuteA(nullptr, "open", address.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<std::intptr_t>(result) > LAST_ERROR_CODE;
}

} // namespace ovra::viewer
