/// \file
/// GenICamModel: the controls of a camera.
#pragma once

#include "ovra-lib-genicam-model/Export.h"

#include <boost/shared_ptr.hpp>

#include <memory>

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
