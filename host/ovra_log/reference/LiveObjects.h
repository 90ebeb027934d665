// SPDX-License-Identifier: MIT
/// \file
/// How many objects of each host class exist, for tests that look for leaks.
///
///   liveObject       takes ownership of a new object and counts it
///   liveObjects<T>   number of objects of one class
///   allLiveObjects   numbers of all classes that ever had an object
///
/// \code
/// stopTheApplication();
/// for (const auto& [name, count] : reference::allLiveObjects())
///     EXPECT_EQ(count, 0) << name;
/// \endcode
#pragma once

#include "ovra_log/Export.h"

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <map>
#include <string>
#include <typeinfo>

namespace ovra::reference {

namespace detail {
/// The counter of \p type, for the life of the process. Every module gets the same counter for the same type.
OVRA_LOG_API std::atomic<long>& liveCounter(const std::type_info& type);
} // namespace detail

template <class T>
std::atomic<long>& liveCounter()
{
    static std::atomic<long>& counter = detail::liveCounter(typeid(T));
    return counter;
}

/// Takes ownership of \p object. It counts as alive until its destructor has returned.
template <class T>
boost::shared_ptr<T> liveObject(T* object)
{
    ++liveCounter<T>();
    return boost::shared_ptr<T>(object, [](T* dying) {
        delete dying;
        --liveCounter<T>();
    });
}

template <class T>
long liveObjects()
{
    return liveCounter<T>();
}

/// By full class name; 0 for classes without objects at the moment.
OVRA_LOG_API std::map<std::string, long> allLiveObjects();

} // namespace ovra::reference
