// SPDX-License-Identifier: MIT
/// \file
/// Machine: an application with the host's environment.
#pragma once

#include "conformance/HostUnderTest.h"

#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"

#include <boost/shared_ptr.hpp>

namespace ovra::conformance {

/// An application with an environment that has searched for its resources once.
struct Machine
{
    /// Skips the test if there is no board.
    explicit Machine(HostUnderTest& host);

    boost::shared_ptr<core::models::HlEnvironmentBoardNode> boardOf(const ChannelUnderTest& channel) const;

    HostUnderTest& host;
    boost::shared_ptr<core::Environment> environment;
    boost::shared_ptr<core::models::HlEnvironmentBoardNode> board; ///< the first one; without an applet
};

} // namespace ovra::conformance
