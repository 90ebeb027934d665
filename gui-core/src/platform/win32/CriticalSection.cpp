// SPDX-License-Identifier: MIT
#include "platform/CriticalSection.h"

#include <new>

#include <windows.h>

namespace ovra::templates::platform {

namespace {

static_assert(sizeof(CRITICAL_SECTION) <= 8 * sizeof(void*) && alignof(CRITICAL_SECTION) <= alignof(void*));

CRITICAL_SECTION* native(unsigned char* storage)
{
    return std::launder(reinterpret_cast<CRITICAL_SECTION*>(storage));
}

} // namespace

CriticalSection::CriticalSection()
{
    InitializeCriticalSection(::new (m_storage) CRITICAL_SECTION);
}

CriticalSection::~CriticalSection()
{
    DeleteCriticalSection(native(m_storage));
}

void CriticalSection::enter()
{
    EnterCriticalSection(native(m_storage));
}

void CriticalSection::leave()
{
    LeaveCriticalSection(native(m_storage));
}

} // namespace ovra::templates::platform
