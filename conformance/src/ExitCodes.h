// SPDX-License-Identifier: MIT
/// \file
/// Exit codes by which the process of a test reports its result.
#pragma once

namespace ovra::conformance {

constexpr int PASSED = 0;
// Large, because run-time libraries and sanitizers use small codes.
constexpr int FAILED = 101;
constexpr int SKIPPED = 102;

} // namespace ovra::conformance
