// SPDX-License-Identifier: MIT
/// \file
/// GuardedSingletonBase and GuardedSingleton<T>: process-wide objects that the last OvraGuiCoreDeinit
/// destroys.
#pragma once

#include "platform/SpinLockVariableGuard.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace ovra::templates::patterns {

/// The interface of singletons for the library's initialisation controller. Its virtual functions and their
/// order are part of a fixed interface, so the two hooks stay although no singleton here overrides them.
class GuardedSingletonBase
{
public:
    GuardedSingletonBase() = default;
    GuardedSingletonBase(const GuardedSingletonBase&) = delete;
    GuardedSingletonBase& operator=(const GuardedSingletonBase&) = delete;

    /// Called by the controller just before it destroys the singleton.
    virtual void beforeDestruction() {}

    /// The static pointer through which the singleton is reached; the controller nulls it.
    virtual std::atomic<GuardedSingletonBase*>& instancePointer() = 0;

    virtual ~GuardedSingletonBase() = default;

    /// Called right after the singleton has been created and registered.
    virtual void afterCreation() {}
};

/// Registers \p singleton with the controller, which destroys it on the last OvraGuiCoreDeinit. While the
/// library is not initialised there is no controller, and the object is never destroyed.
void registerSingleton(GuardedSingletonBase& singleton);

/// `class Settings : public GuardedSingleton<Settings>` is reached with Settings::instance(), which creates
/// it on first use. Any thread; the reference is valid until the last OvraGuiCoreDeinit, after which the next
/// use creates a new object.
template <class T>
class GuardedSingleton : public GuardedSingletonBase // NOLINT(bugprone-crtp-*): needs no friend
{
public:
    static T& instance()
    {
        const platform::SpinLockVariableGuard guard(&s_lock, &s_owner);
        if (!s_instance)
            create();
        return static_cast<T&>(*s_instance);
    }

    std::atomic<GuardedSingletonBase*>& instancePointer() override { return s_instance; }

private:
    static void create()
    {
        auto created = std::make_unique<T>();
        s_instance = created.get();
        try {
            registerSingleton(*created);
        } catch (...) {
            s_instance = nullptr;
            throw;
        }
        created.release()->afterCreation();
    }

    inline static std::atomic<GuardedSingletonBase*> s_instance{nullptr};
    inline static std::atomic<std::int32_t> s_lock{0};
    inline static std::atomic<std::uint32_t> s_owner{0};
};

} // namespace ovra::templates::patterns
