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

/// Any thread. After stop() the model does not use the board handle.
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

    /// Reads the description.
    void init();
    /// Ends all use of the board handle.
    void stop();

    /// The model notifies these groups when a parameter changes the size or the format of the image.
    void addFrameBufferGroup(const boost::shared_ptr<display::FglibFrameBufferGroup>& group);
    void removeFrameBufferGroup(const boost::shared_ptr<display::FglibFrameBufferGroup>& group);

    /// Reads all parameters with their current values for \p dma from the runtime. Empty before init() and
    /// after stop().
    std::vector<parameters::Parameter> parameters(unsigned int dma) const;
    /// Converts \p text to a value of the parameter \p name and writes it for \p dma.
    /// \throws std::invalid_argument  for an unknown name or a text that is not a valid value
    /// \throws std::runtime_error  if the runtime refuses the value
    void setParameter(const std::string& name, unsigned int dma, const std::string& text);

private:
    FgLibModel();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::core::models
