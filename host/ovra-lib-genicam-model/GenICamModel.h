/// \file
/// GenICamModel: the controls of a camera.
#pragma once

#include "ovra-lib-genicam-model/Export.h"
#include "ovra-lib-parameters/Parameter.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>
#include <vector>

namespace ovra::core::models {

/// Safe from any thread. Failures of the camera throw std::runtime_error.
class OVRA_GENICAM_MODEL_API GenICamModel
{
public:
    /// The camera that is plugged into that physical port of that board.
    static boost::shared_ptr<GenICamModel> create(unsigned int board, unsigned int port);
    ~GenICamModel();
    GenICamModel(const GenICamModel&) = delete;
    GenICamModel& operator=(const GenICamModel&) = delete;

    /// Size of the images the camera sends, in pixels.
    int width() const;
    int height() const;
    void setWidth(int width);
    void setHeight(int height);

    /// All parameters of the camera with their present values.
    std::vector<parameters::Parameter> parameters() const;
    /// Reads \p text as the value of the parameter \p name and writes it. Throws std::invalid_argument for an
    /// unknown name or a text that does not fit.
    void setParameter(const std::string& name, const std::string& text);

    /// Lets the camera stream, anew if it does already.
    void restartAcquisition();
    void stopAcquisition();
    bool isAcquiring() const;

private:
    GenICamModel(unsigned int board, unsigned int port);

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::core::models
