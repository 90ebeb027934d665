// SPDX-License-Identifier: MIT
/// \file
/// AppletList: the list of applet files behind Fg_getAppletIterator.
#pragma once

#include "descriptions/Applet.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace simulation {

struct AppletItem
{
    explicit AppletItem(Applet content);

    Applet applet;
    std::string path;
    std::string tags; ///< joined by ";"
};

/// Not thread-safe: one thread at a time may use a list.
class AppletList
{
public:
    AppletList();
    ~AppletList();
    AppletList(const AppletList&) = delete;
    AppletList& operator=(const AppletList&) = delete;

    /// Adds the file and reads it, unless the list has it already. Throws like readApplet.
    const AppletItem& add(const std::string& path, bool* added);
    /// Adds all applets installed for a board model, sorted by path, except broken ones.
    void addInstalled(const std::filesystem::path& installation, const std::string& model);

    /// Null if there is none.
    const AppletItem* at(std::size_t position) const;
    const AppletItem* find(const std::string& path) const;
    std::size_t size() const { return m_items.size(); }

    static std::int64_t live() noexcept;

private:
    std::vector<std::unique_ptr<AppletItem>> m_items; // clients hold pointers to items
};

} // namespace simulation
