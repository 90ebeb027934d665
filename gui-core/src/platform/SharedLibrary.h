/// \file
/// SharedLibrary: owner of a module that is loaded at run time.
#pragma once

#include <cstdint>
#include <string>

/// Made for a full path; load() opens the file. For one thread at a time.
class SharedLibrary
{
public:
    /// \param freeOnDestruction  false leaves the module loaded for the life of the process
    SharedLibrary(std::string path, bool freeOnDestruction);
    ~SharedLibrary();
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;

    /// True on success and when it is loaded already.
    bool load();
    /// Unloads the module now, whatever was asked for at construction.
    void close();
    bool isLoaded() const { return m_module != nullptr; }

    /// Address of an exported symbol; null when there is none, or no module.
    void* locate(const char* symbol) const;

private:
    void* m_module = nullptr;
    bool m_freeOnDestruction;
    std::string m_path;
    // The platform's number and words for the failure of the last load(), 0 and empty after a good one: for a
    // look in the debugger, the user is told in other words.
    std::uint32_t m_lastError = 0;
    std::string m_errorText;
};
