// SPDX-License-Identifier: MIT
/// \file
/// Guard<T*>: common base of the scoped guards.
#pragma once

namespace ovra::templates::patterns {

template <class T>
class Guard;

/// Holds a pointer to the guarded object, which it does not own, and whether leaving the scope releases
/// anything. The derived guard defines what taking and releasing mean.
template <class T>
class Guard<T*>
{
public:
    virtual ~Guard() = default;
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

protected:
    Guard(T* object, bool owns) : m_object(object), m_owns(owns) {}

    T* object() const { return m_object; }
    bool owns() const { return m_owns; }

private:
    T* m_object;
    bool m_owns;
};

} // namespace ovra::templates::patterns
