// SPDX-License-Identifier: MIT
/// \file
/// CriticalSection and its guard: the lock for a handful of instructions inside other locks.
///
/// enter() waits until no other thread is inside, leave() lets the next one in; any thread, but leave() only
/// by the one that is inside. Not recursive, unfair, and not to be held across anything that blocks. It can
/// be neither copied nor moved.
#pragma once

#include "native/CriticalSectionImpl.h"
#include "platform/Guard.h"

namespace ovra::templates::platform {

/// Stays in a critical section for the length of a scope.
class [[nodiscard]] CriticalSectionGuard final : public patterns::Guard<CriticalSection*>
{
public:
    explicit CriticalSectionGuard(CriticalSection* section) : Guard(section, true) { section->enter(); }
    ~CriticalSectionGuard() override { object()->leave(); }
};

} // namespace ovra::templates::platform
