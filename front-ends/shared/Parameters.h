// SPDX-License-Identifier: MIT
/// \file
/// Lists and changes the parameters of boards for a user.
///
/// GUI thread. On an error the functions throw RequestError with the reason, and change nothing.
#pragma once

#include "Lookup.h"

#include "gui-core/keys/Keys.h"
#include "ovra-lib-parameters/Parameter.h"

#include <string>
#include <vector>

namespace ovra::core::models {
class FgLibModel;
}

namespace ovra::frontend {

/// An owner of parameters: a DMA channel, or a board whose applet has no channels.
struct ParameterOwner
{
    std::string title; ///< "board 0 DMA 1", "board 0"
    unsigned int dma;
    boost::shared_ptr<core::models::FgLibModel> model; ///< empty if the runtime describes no parameters

    /// All parameters in the runtime's order, with their current values.
    std::vector<parameters::Parameter> all() const;
    parameters::Parameter find(const std::string& name) const;
    bool has(const std::string& name) const;
};

/// The channels of a board in the order of their indices, or the board itself.
std::vector<ParameterOwner> parameterOwners(const core::models::HlEnvironmentBoardNode& board);
ParameterOwner parameterOwner(const core::models::HlEnvironmentBoardNode& board,
                              const core::models::HlEnvironmentDmaNode& dma);

/// Sets a parameter of each of \p owners, after checking that all of them accept the value.
void setParameter(const BoardNode& board, const std::vector<ParameterOwner>& owners, const std::string& name,
                  const std::string& value);

/// Marks the ports of processes whose channels all use their generators, and stops their cameras, which no
/// channel needs. If a running channel needs the camera again, starts it. The library skips marked ports in
/// start, stop and comparison of sizes.
void markGenerators(const BoardNode& board);

/// The parameter that switches a channel's generator on and off.
inline constexpr const char* GENERATOR_SWITCH = gui::keys::parameters::GENERATOR_SWITCH;

} // namespace ovra::frontend
