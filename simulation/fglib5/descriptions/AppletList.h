/// \file
/// A list of applet files, as Fg_getAppletIterator hands it out.
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

/// Not safe from several threads at once; its client sees to that.
class AppletList
{
public:
    AppletList();
    ~AppletList();
    AppletList(const AppletList&) = delete;
    AppletList& operator=(const AppletList&) = delete;

    /// Reads the file, where the list does not have it yet. Throws what readApplet throws.
    const AppletItem& add(const std::string& path, bool* added);
    /// All readable applets installed for a board model, sorted by path; broken ones are left out.
    void addInstalled(const std::filesystem::path& installation, const std::string& model);

    /// Null where there is none.
    const AppletItem* at(std::size_t position) const;
    const AppletItem* find(const std::string& path) const;
    std::size_t size() const { return m_items.size(); }

    static std::int64_t live() noexcept;

private:
    std::vector<std::unique_ptr<AppletItem>> m_items; // clients hold pointers to items
};

} // namespace simulation
