/// \file
/// The parameters of boards as a user sees and changes them.
///
/// GUI thread. What cannot be done throws RequestError with a text that says what was wrong, and has changed
/// nothing.
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

/// What has parameters: a DMA channel, or a board whose applet has no channels.
struct ParameterOwner
{
    std::string title; ///< "board 0 DMA 1", "board 0"
    unsigned int dma;
    boost::shared_ptr<core::models::FgLibModel> model; ///< empty where the runtime describes no parameters

    /// In the runtime's order, with their present values.
    std::vector<parameters::Parameter> all() const;
    parameters::Parameter find(const std::string& name) const;
    bool has(const std::string& name) const;
};

/// The channels of a board in the order of their indices, or the board itself.
std::vector<ParameterOwner> parameterOwners(const core::models::HlEnvironmentBoardNode& board);
ParameterOwner parameterOwner(const core::models::HlEnvironmentBoardNode& board,
                              const core::models::HlEnvironmentDmaNode& dma);

/// Sets a parameter of each of \p owners. All of them are asked first whether they take the value.
void setParameter(const BoardNode& board, const std::vector<ParameterOwner>& owners, const std::string& name,
                  const std::string& value);

/// Marks the ports whose pictures come from generators, and lets their cameras rest: a process without a
/// channel that takes camera images needs none. A camera that is needed again by a channel that acquires
/// starts. The library leaves such ports out of start, stop and comparison of sizes.
void markGenerators(const BoardNode& board);

/// The parameter that switches a channel's generator.
inline constexpr const char* GENERATOR_SWITCH = gui::keys::parameters::GENERATOR_SWITCH;

} // namespace ovra::frontend
