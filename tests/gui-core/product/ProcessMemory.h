/// \file
/// How much memory this process takes, for tests that look for what grows.
#pragma once

#include <cstddef>

namespace ovra::tests {

/// Bytes: resident on POSIX, committed on Windows.
std::size_t processMemory();

} // namespace ovra::tests
