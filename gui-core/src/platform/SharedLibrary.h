// SPDX-License-Identifier: MIT
/// \file
/// SharedLibrary: owns a module that is loaded at run time.
#pragma once

#include <cstdint>
#include <string>

/// Constructed with a full path; load() opens the file. Not thread-safe.
class SharedLibrary
{
public:
    /// \param freeOnDestruction  false leaves the module loaded for the life of the process
    SharedLibrary(std::string path, bool freeOnDestruction);
    ~SharedLibrary();
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;

    /// True on success and when the module is already loaded.
    bool load();
    /// Unloads the module now, also when it was to stay loaded on destruction.
    void close();
    bool isLoaded() const { return m_module != nullptr; }

    /// Address of an exported symbol; null when there is none, or no module.
    void* locate(const char* symbol) const;

private:
    void* m_module = nullptr;
    bool m_freeOnDestruction;
    std::string m_path;
    // Number and description of the last load()'s failure; 0 and empty after success. For a look in the
    // debugger: callers report failures in their own words.
    std::uint32_t m_lastError = 0;
    std::string m_errorText;
};
