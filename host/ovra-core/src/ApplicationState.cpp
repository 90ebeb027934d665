// SPDX-License-Identifier: MIT
#include "ApplicationState.h"

#include "ovra_log/reference/Journal.h"

#include "fglib5/PathText.h"

#include <boost/dll/runtime_symbol_info.hpp>
#include <boost/dll/shared_library.hpp>

#include <stdexcept>

namespace ovra::reference {

namespace fs = std::filesystem;

namespace {

std::mutex currentMutex;
boost::shared_ptr<ApplicationState> current;

fs::path absolutePath(const std::string& text)
{
    return fs::absolute(fglib5::pathOf(text)).lexically_normal();
}

// A path with a trailing separator has an empty last component.
std::string directoryText(const fs::path& directory)
{
    return (directory.has_filename() ? directory : directory.parent_path()).generic_string();
}

fs::path ownInstallation()
{
    const fs::path library = fs::absolute(boost::dll::this_line_location()).lexically_normal();
    return library.parent_path().parent_path();
}

std::string runtimeDirectoryOf(const ApplicationOptions& options)
{
    return directoryText(options.runtimeDirectory.empty() ? ownInstallation()
                                                          : absolutePath(options.runtimeDirectory));
}

fs::path runtimeLibraryOf(const ApplicationOptions& options, const std::string& runtimeDirectory)
{
    // Native separators: with others, the Windows loader does not search the file's folder for its
    // dependencies.
    if (!options.runtimeLibrary.empty())
        return absolutePath(options.runtimeLibrary).make_preferred();
    fs::path library = fglib5::pathOf(runtimeDirectory) / "bin" / "fglib5";
    library += boost::dll::shared_library::suffix();
    return library.make_preferred();
}

} // namespace

void PluginFolder::startMonitor()
{
    probe("PluginManager::startMonitor");
    m_monitoring = true;
}

void PluginFolder::stopMonitor()
{
    probe("PluginManager::stopMonitor");
    m_monitoring = false;
}

bool PluginFolder::isMonitoring() const
{
    return m_monitoring;
}

ApplicationState::ApplicationState(const ApplicationOptions& options)
    : runtimeDirectory(runtimeDirectoryOf(options)),
      runtimeLibrary(runtimeLibraryOf(options, runtimeDirectory)),
      configuration(fglib5::pathOf(options.configurationFile)),
      processor(queue)
{}

boost::shared_ptr<ApplicationState> currentApplication()
{
    const std::lock_guard lock(currentMutex);
    return current;
}

void setCurrentApplication(const boost::shared_ptr<ApplicationState>& state)
{
    const std::lock_guard lock(currentMutex);
    if (current)
        throw std::logic_error("There is an application in this process already");
    current = state;
}

void clearCurrentApplication()
{
    boost::shared_ptr<ApplicationState> cleared;
    const std::lock_guard lock(currentMutex);
    cleared.swap(current);
}

} // namespace ovra::reference
