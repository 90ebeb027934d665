/// \file
/// CriticalSectionGuard: stays in a critical section for the length of a scope.
#pragma once

#include "native/CriticalSection.h"
#include "platform/Guard.h"

namespace ovra::templates::platform {

class [[nodiscard]] CriticalSectionGuard final : public patterns::Guard<CriticalSection*>
{
public:
    explicit CriticalSectionGuard(CriticalSection* section) : Guard(section, true) { section->enter(); }
    ~CriticalSectionGuard() override { object()->leave(); }
};

} // namespace ovra::templates::platform
