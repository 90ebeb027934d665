/// \file
/// What the operating system has given this process, for tests that look for what grows.
#pragma once

namespace ovra::tests {

struct ProcessResources
{
    long long memory;  ///< bytes: resident on POSIX, committed on Windows
    long long handles; ///< descriptors on POSIX, kernel handles on Windows
    long long threads; ///< one that has just ended may still be among them
};

ProcessResources processResources();

/// At most so many handles come late: where a lock has one, it is made when threads first meet at that lock.
extern const long long LATE_HANDLES;

} // namespace ovra::tests
