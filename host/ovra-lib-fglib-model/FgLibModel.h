// SPDX-License-Identifier: MIT
/// \file
/// FgLibModel: the parameters of one DMA channel, or those that all channels of an applet share.
#pragma once

#include "ovra-lib-fglib-model/Export.h"
#include "ovra-lib-parameters/Parameter.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>
#include <vector>

struct Fg_Struct_s;
struct FgRegisterInfo_s;

namespace ovra::display {
class FglibFrameBufferGroup;
}

namespace ovra::core::models {

class HlEnvironmentBoardNode;

/// A load creates the models (HlEnvironmentDmaNode::getFrontendRegInfoModel, or
/// HlEnvironmentBoardNode::getNoDmaFrontendRegInfoModel), an unload stops them. Any thread; calls of one
/// model wait for each other, because each asks the runtime. A stopped model lists no parameters and refuses
/// to set any, so a front end that still holds one does no harm.
///
/// \code
/// if (const auto model = dma->getFrontendRegInfoModel())
///     model->setParameter("FG_WIDTH", dma->getIndex(), "512");
/// \endcode
class OVRA_FGLIB_MODEL_API FgLibModel
{
public:
    /// \param handle  of the loaded applet; used until stop()
    /// \param dma     the DMA channel that the parameters belong to; 0 with \p noDma
    /// \param info    the runtime's description; the handle owns it
    /// \param board   the board that the handle belongs to
    /// \param noDma   the parameters belong to the applet as a whole
    [[nodiscard]] static boost::shared_ptr<FgLibModel>
    create(Fg_Struct_s* handle, unsigned int dma, FgRegisterInfo_s* info,
           const boost::shared_ptr<HlEnvironmentBoardNode>& board, bool noDma);
    ~FgLibModel();
    FgLibModel(const FgLibModel&) = delete;
    FgLibModel& operator=(const FgLibModel&) = delete;

    /// Reads the description. The load calls it once.
    void init();
    /// Ends all use of the board handle: when it returns, no call of the runtime with it is running. Safe to
    /// repeat.
    void stop();

    /// The model notifies these groups when a parameter changes the size or the format of the image. Ignores
    /// null.
    void addFrameBufferGroup(const boost::shared_ptr<display::FglibFrameBufferGroup>& group);
    void removeFrameBufferGroup(const boost::shared_ptr<display::FglibFrameBufferGroup>& group);

    /// Reads all parameters with their current values for \p dma from the runtime, in the order of its
    /// description: one call for each, so do not call it for each image. A parameter that cannot be read is
    /// left out, and logged as a warning. Empty before init() and after stop().
    std::vector<parameters::Parameter> parameters(unsigned int dma) const;
    /// Converts \p text to a value of the parameter \p name (parameters::fromText) and writes it for \p dma.
    /// Width, height and pixel format reallocate the channel's buffers before the call returns; a running
    /// acquisition is interrupted for that and continues. Gui::getUsedDmaMemory then has another value;
    /// Views::update_dma_memory does not follow. For FG_GEN_ENABLE see
    /// HlEnvironmentLogicalPortNode::setGeneratorActive.
    /// \throws std::invalid_argument  for an unknown name (every name, after stop()) or a text that is not a
    ///     valid value
    /// \throws std::runtime_error  if the runtime refuses the value
    void setParameter(const std::string& name, unsigned int dma, const std::string& text);

private:
    FgLibModel();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::core::models
