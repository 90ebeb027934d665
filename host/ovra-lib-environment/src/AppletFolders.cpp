// SPDX-License-Identifier: MIT
#include "AppletFolders.h"

#include "ovra-core/HarloApplication.h"
#include "ovra_log/reference/Log.h"

#include "fglib5/PathText.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <system_error>

namespace ovra::core::models {

namespace fs = std::filesystem;
using reference::EnvironmentChange;
using reference::log;
using reference::LogLevel;

namespace {

bool isApplet(const fs::path& file)
{
    std::string extension = file.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return extension == ".hap" || extension == ".dll" || extension == ".so";
}

EnvironmentChange fileChange(EnvironmentChange::Kind kind, const std::string& path)
{
    EnvironmentChange change;
    change.subject = EnvironmentChange::Subject::AppletFile;
    change.kind = kind;
    change.name = path;
    return change;
}

// Configuration files may name applets with invalid UTF-8.
bool exists(const std::string& path)
{
    try {
        std::error_code error;
        return fs::is_regular_file(fglib5::pathOf(path), error);
    } catch (const std::runtime_error&) { // which of them it is depends on the standard library
        return false;
    }
}

} // namespace

AppletFolders::AppletFolders(boost::shared_ptr<HlEnvironmentFileCollectionNode> files)
    : m_files(std::move(files))
{}

void AppletFolders::follow(bool scan, Changes& changes)
{
    const Listing present = list();
    removeVanished(changes);
    for (const auto& [path, stamp] : present)
        addOrRead(path, stamp, scan, changes);
}

void AppletFolders::addFile(const std::string& path, Changes& changes)
{
    if (!exists(path))
        return;
    auto node = m_files->getAllFilesEntry(path);
    const bool isNew = !node;
    if (isNew)
        node = HlEnvironmentFileNode::create(path);
    node->scan();
    if (isNew)
        m_files->addAllFilesEntry(path, node);
    changes.push_back(
        fileChange(isNew ? EnvironmentChange::Kind::Came : EnvironmentChange::Kind::Changed, path));
}

AppletFolders::Listing AppletFolders::list()
{
    const std::string root = HarloApplication::getRuntimeDirectory();
    Listing listing;
    if (root.empty())
        return listing;
    listFolder(root + "/Hardware Applets", listing);
    listFolder(root + "/dll", listing);
    return listing;
}

// Files may disappear during the walk: entries that cannot be read are skipped.
void AppletFolders::listFolder(const std::string& folder, Listing& listing)
{
    std::error_code error;
    fs::recursive_directory_iterator entry(fglib5::pathOf(folder),
                                           fs::directory_options::skip_permission_denied, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        std::error_code gone;
        if (!isApplet(entry->path()) || !entry->is_regular_file(gone))
            continue;
        const Stamp stamp{entry->last_write_time(gone), entry->file_size(gone)};
        if (!gone)
            listing.emplace(entry->path().generic_string(), stamp);
    }
}

// Checks the disk and not the listing: files that were added singly are in other folders.
void AppletFolders::removeVanished(Changes& changes)
{
    for (const auto nodes = m_files->getAllFiles(); nodes->hasNext(); nodes->advance()) {
        const std::string& path = nodes->current()->getFilePath();
        if (exists(path))
            continue;
        m_files->removeAllFilesEntry(path);
        m_known.erase(path);
        changes.push_back(fileChange(EnvironmentChange::Kind::Went, path));
        log(LogLevel::Information, "Applet file removed: " + path);
    }
}

void AppletFolders::addOrRead(const std::string& path, const Stamp& stamp, bool scan, Changes& changes)
{
    const auto known = m_known.find(path);
    const auto present = m_files->getAllFilesEntry(path);
    if (present && known != m_known.end() && (known->second == stamp || !scan))
        return;
    const auto node = present ? present : HlEnvironmentFileNode::create(path);
    if (scan)
        node->scan();
    m_known[path] = stamp;
    if (!present)
        m_files->addAllFilesEntry(path, node); // scanned before others can see it
    changes.push_back(
        fileChange(present ? EnvironmentChange::Kind::Changed : EnvironmentChange::Kind::Came, path));
    log(LogLevel::Information, (present ? "Applet file changed: " : "Applet file added: ") + path);
}

} // namespace ovra::core::models
