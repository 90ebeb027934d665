/// \file
/// How many objects of each host class exist, for tests that look for what was left behind.
///
///   liveObject       takes over a new object and counts it
///   liveObjects<T>   number of objects of one class
///   allLiveObjects   all classes of which there was ever one
#pragma once

#include "ovra_log/Export.h"

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <map>
#include <string>
#include <typeinfo>

namespace ovra::reference {

namespace detail {
/// The same counter for equal types, for the life of the process.
OVRA_LOG_API std::atomic<long>& liveCounter(const std::type_info& type);
} // namespace detail

template <class T>
std::atomic<long>& liveCounter()
{
    static std::atomic<long>& counter = detail::liveCounter(typeid(T));
    return counter;
}

/// The shared owner of \p object, which counts as alive until its destructor has returned.
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

/// By full class name; classes that have none at present have 0.
OVRA_LOG_API std::map<std::string, long> allLiveObjects();

} // namespace ovra::reference
