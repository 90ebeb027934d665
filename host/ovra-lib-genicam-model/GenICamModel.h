// SPDX-License-Identifier: MIT
/// \file
/// GenICamModel: the parameters of a camera, and its start and stop.
#pragma once

#include "ovra-lib-genicam-model/Export.h"
#include "ovra-lib-parameters/Parameter.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>
#include <vector>

namespace ovra::core::models {

/// Every camera node has one (HlEnvironmentCameraNode::getGenICamModelEntry). It holds no values: each call
/// asks the camera through the runtime and blocks until it answers. Any thread.
///
/// Every function throws std::runtime_error if the camera or the runtime reports an error, the camera is
/// unplugged, or the runtime controls no cameras. Only stopAcquisition succeeds for an unplugged camera.
///
/// \code
/// if (const auto camera = port->getConnectedCameraEntry())
///     if (const auto model = camera->getGenICamModelEntry())
///         model->setParameter("ExposureTime", "2000");
/// \endcode
class OVRA_GENICAM_MODEL_API GenICamModel
{
public:
    /// For the camera at the physical port \p port of the board with index \p board, whether or not one is
    /// there. Never null.
    [[nodiscard]] static boost::shared_ptr<GenICamModel> create(unsigned int board, unsigned int port);
    ~GenICamModel();
    GenICamModel(const GenICamModel&) = delete;
    GenICamModel& operator=(const GenICamModel&) = delete;

    /// Size of the camera's images, in pixels. The camera refuses a size outside its range.
    int width() const;
    int height() const;
    void setWidth(int width);
    void setHeight(int height);

    /// All parameters of the camera with their current values, one call of the runtime for each.
    std::vector<parameters::Parameter> parameters() const;
    /// Converts \p text to a value of the parameter \p name and writes it.
    /// \throws std::invalid_argument  for an unknown name or a text that is not a valid value
    void setParameter(const std::string& name, const std::string& text);

    /// Starts the camera; restarts it if it is running. StartAcquisitionCommand calls it.
    void restartAcquisition();
    /// No effect if the camera is not running.
    void stopAcquisition();
    /// Whether the camera sends images.
    bool isAcquiring() const;

private:
    GenICamModel(unsigned int board, unsigned int port);

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::core::models
