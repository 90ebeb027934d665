/// \file
/// How the process of a test tells its result.
#pragma once

namespace ovra::conformance {

constexpr int PASSED = 0;
// Codes that nothing else ends a process with: run-time libraries and sanitizers have small ones.
constexpr int FAILED = 101;
constexpr int SKIPPED = 102;

} // namespace ovra::conformance
