// SPDX-License-Identifier: MIT
#include "descriptions/AppletList.h"

#include "Failure.h"

#include "fglib5/PathText.h"

#include <algorithm>
#include <atomic>

namespace simulation {

namespace {

std::atomic<std::int64_t> lists{0};

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> files;
    std::error_code missing; // a board model without applets has no folder
    for (const auto& entry : std::filesystem::directory_iterator(folder, missing))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

} // namespace

AppletItem::AppletItem(Applet content) : applet(std::move(content)), path(applet.file.string())
{
    for (const auto& tag : applet.tags)
        tags += (tags.empty() ? "" : ";") + tag;
}

AppletList::AppletList()
{
    ++lists;
}

AppletList::~AppletList()
{
    --lists;
}

const AppletItem& AppletList::add(const std::string& path, bool* added)
{
    const auto* known = find(path);
    if (added != nullptr)
        *added = known == nullptr;
    if (known != nullptr)
        return *known;
    return *m_items.emplace_back(std::make_unique<AppletItem>(readApplet(fglib5::pathOf(path))));
}

void AppletList::addInstalled(const std::filesystem::path& installation, const std::string& model)
{
    for (const auto* kind : {"Hardware Applets", "dll"}) {
        for (const auto& file : filesOf(installation / kind / model)) {
            try {
                add(file.string(), nullptr);
            } catch (const Failure&) {
                continue; // adding this file singly reports its error
            }
        }
    }
}

const AppletItem* AppletList::at(std::size_t position) const
{
    return position < m_items.size() ? m_items[position].get() : nullptr;
}

const AppletItem* AppletList::find(const std::string& path) const
{
    const auto found = std::ranges::find(m_items, path, [](const auto& item) { return item->path; });
    return found == m_items.end() ? nullptr : found->get();
}

std::int64_t AppletList::live() noexcept
{
    return lists;
}

} // namespace simulation
