// SPDX-License-Identifier: MIT
/// \file
/// VirtualInstallation: an installation in a temporary folder, for one test.
///
/// It has two boards: 0, serial a1b2c3, an "ovra-quad-cl", and 1, serial beef, an "ovra-dual-cxp". On board 0
/// there are cameras at port 0 (64 x 48) and port 1 (32 x 16), on board 1 one at port 0 (64 x 48).
#pragma once

#include "simulation/fglib5/SimulationControl.h"
#include "tests/TemporaryFolder.h"

#include <boost/dll/shared_library.hpp>

#include <cstdint>
#include <filesystem>
#include <string>

namespace ovra::tests {

inline constexpr int ALPHA_SERIAL = 0xa1b2c3;
inline constexpr int BETA_SERIAL = 0xbeef;

/// All bytes of a file. If it cannot be read, returns none and the test fails.
std::string contentOf(const std::filesystem::path& file);

class VirtualInstallation
{
public:
    VirtualInstallation();
    ~VirtualInstallation();
    VirtualInstallation(const VirtualInstallation&) = delete;
    VirtualInstallation& operator=(const VirtualInstallation&) = delete;

    /// With "/" between folders, like the environment's paths.
    std::string folder() const { return m_folder.text(); }
    /// The simulated runtime of the build.
    std::string runtimeLibrary() const { return m_runtimeFile.string(); }

    /// Writes a file, folders included, and returns its path.
    std::string write(const std::string& path, const std::string& content);

    /// Writes an applet for a board model. \p body is the description after name and board type. Returns the
    /// file's path in the environment.
    std::string addAlphaApplet(const std::string& fileName, const std::string& body)
    {
        return addApplet("ovra-quad-cl", 2625, fileName, body);
    }
    std::string addBetaApplet(const std::string& fileName, const std::string& body)
    {
        return addApplet("ovra-dual-cxp", 2898, fileName, body);
    }
    /// Writes a file with the suffix of the platform's libraries into the folder of board 0.
    std::string addAlphaLibrary(const std::string& name, const std::string& content);
    /// Adds a copy of a library that the build made for tests, or of the installation's own.
    std::string addLegacyApplet(const std::string& module);
    std::string addInstalledLegacyApplet();
    /// A wrapped library with two processes, the second of them without DMA channels.
    std::string addWrappedApplet();

    /// Lets the \p nth call of a runtime entry from now on fail with \p code.
    void failCall(const std::string& entry, std::uint64_t nth, int code);
    void forgetFaults() { m_runtime.get<FgSim_clearFaults_t>("FgSim_clearFaults")(); }
    /// Number of calls of an entry since the installation was created; "*": of all entries.
    std::int64_t calls(const std::string& entry) const;
    /// Number of the runtime's existing objects of a kind (FgSimLive).
    std::int64_t live(int kind) const { return m_runtime.get<FgSim_live_t>("FgSim_live")(kind); }

    /// An entry of the runtime, without the library's forwarder:
    /// entry<decltype(Fg_getParameter)>("Fg_getParameter").
    template <class Entry>
    Entry& entry(const char* name) const
    {
        return m_runtime.get<Entry>(name);
    }

private:
    std::string addApplet(const std::string& model, int boardType, const std::string& fileName,
                          const std::string& body);

    const TemporaryFolder m_folder;
    std::filesystem::path m_runtimeFile;
    boost::dll::shared_library m_runtime;
};

} // namespace ovra::tests
