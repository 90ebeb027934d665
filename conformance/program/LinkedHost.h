/// \file
/// The host that this program is linked to.
#pragma once

#include "conformance/HostUnderTest.h"

#include <memory>

namespace ovra::conformance {

/// Defined once for each host: for the reference host in ReferenceHost.cpp, for another in the source that
/// OVRA_HOST_UNDER_TEST names.
std::unique_ptr<HostUnderTest> linkedHost();

} // namespace ovra::conformance
