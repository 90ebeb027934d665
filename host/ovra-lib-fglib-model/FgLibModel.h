/// \file
/// FgLibModel: the parameters of a DMA channel or of a whole applet.
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

/// Safe from any thread. After stop() the board handle is not used any more.
class OVRA_FGLIB_MODEL_API FgLibModel
{
public:
    /// \param handle  of the loaded applet; used until stop()
    /// \param dma     DMA channel whose parameters these are; 0 with \p noDma
    /// \param info    the runtime's description, owned by the handle
    /// \param board   the board that the handle belongs to
    /// \param noDma   the parameters belong to the applet as a whole
    static boost::shared_ptr<FgLibModel> create(Fg_Struct_s* handle, unsigned int dma, FgRegisterInfo_s* info,
                                                const boost::shared_ptr<HlEnvironmentBoardNode>& board,
                                                bool noDma);
    ~FgLibModel();
    FgLibModel(const FgLibModel&) = delete;
    FgLibModel& operator=(const FgLibModel&) = delete;

    /// Reads the description.
    void init();
    /// Ends all use of the board handle.
    void stop();

    /// Groups that are told when a parameter that shapes the image changes.
    void addFrameBufferGroup(const boost::shared_ptr<display::FglibFrameBufferGroup>& group);
    void removeFrameBufferGroup(const boost::shared_ptr<display::FglibFrameBufferGroup>& group);

    /// The parameters with their present values, read for \p dma; empty before init() and after stop(). An
    /// applet-wide model is asked with the DMA channel of interest.
    std::vector<parameters::Parameter> parameters(unsigned int dma) const;
    /// Reads \p text as the value of the parameter \p name and writes it for \p dma. Throws
    /// std::invalid_argument for an unknown name or a text that does not fit, std::runtime_error when the
    /// runtime refuses the value.
    void setParameter(const std::string& name, unsigned int dma, const std::string& text);

private:
    FgLibModel();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::core::models
