// SPDX-License-Identifier: MIT
#include "platform/SharedLibrary.h"

#include "platform/Module.h"

#include <utility>

namespace platform = ovra::templates::platform;

SharedLibrary::SharedLibrary(std::string path, bool freeOnDestruction)
    : m_freeOnDestruction(freeOnDestruction),
      m_path(std::move(path))
{}

SharedLibrary::~SharedLibrary()
{
    if (m_freeOnDestruction)
        close();
}

bool SharedLibrary::load()
{
    if (m_module)
        return true;
    platform::ModuleError error;
    m_module = platform::openModule(m_path, error);
    m_lastError = error.number;
    m_errorText = error.text;
    return m_module != nullptr;
}

void SharedLibrary::close()
{
    if (void* module = std::exchange(m_module, nullptr))
        platform::closeModule(module);
}

void* SharedLibrary::locate(const char* symbol) const
{
    return m_module ? platform::locateSymbol(m_module, symbol) : nullptr;
}
