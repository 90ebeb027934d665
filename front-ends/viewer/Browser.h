// SPDX-License-Identifier: MIT
/// \file
/// Browser: opens the page in the user's browser; posix/ and win32/ hold one source each.
#pragma once

#include <functional>
#include <string>

namespace ovra::viewer {

/// GUI thread.
class Browser
{
public:
    /// Opens \p address in the system's default browser without waiting for it. Calls \p onFailure if there
    /// is none, possibly later and on another thread. Keep the object: the file that leads to the address is
    /// deleted with it.
    Browser(const std::string& address, std::function<void()> onFailure);
    ~Browser();
    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;

private:
    std::string m_file; ///< a page that leads to the address; empty if not needed
};

} // namespace ovra::viewer
