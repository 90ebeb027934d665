// SPDX-License-Identifier: MIT
/// \file
/// linkedHost: the host that this program is linked to.
#pragma once

#include "conformance/HostUnderTest.h"

#include <memory>

namespace ovra::conformance {

/// Each host has one definition: the reference host in ReferenceHost.cpp, another one in the source that
/// OVRA_HOST_UNDER_TEST names.
std::unique_ptr<HostUnderTest> linkedHost();

} // namespace ovra::conformance
