// SPDX-License-Identifier: MIT
#include "Browser.h"

#include <cstdint>

#include <windows.h>

#include <shellapi.h>

namespace ovra::viewer {

// Other users cannot read a program's arguments on Windows.
Browser::Browser(const std::string& address, std::function<void()> onFailure)
{
    constexpr std::intptr_t LAST_ERROR_CODE = 32;
    const HINSTANCE result = ShellExecuteA(nullptr, "open", address.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    if (reinterpret_cast<std::intptr_t>(result) <= LAST_ERROR_CODE)
        onFailure();
}

Browser::~Browser() = default;

} // namespace ovra::viewer
