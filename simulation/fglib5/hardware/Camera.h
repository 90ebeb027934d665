// SPDX-License-Identifier: MIT
/// \file
/// Camera: a camera plugged into a board, with its scene, its settings and its images.
#pragma once

#include "descriptions/MachineDescription.h"
#include "hardware/ParameterSet.h"
#include "hardware/Stream.h"
#include "pictures/ReplayFilm.h"

#include "fglib5/Fglib5Types.h"

#include <memory>
#include <optional>

namespace simulation {

/// Not thread-safe; the board's lock guards it.
class Camera
{
public:
    explicit Camera(const CameraDescription& description);

    const CameraDescription& description() const { return m_description; }

    /// Parameters are those of CameraControl.h. Throw FG_INVALID_PARAMETER; FG_VALUE_OUT_OF_RANGE;
    /// FG_NOT_WRITABLE, also for the size while the camera is running.
    double value(int parameter) const;
    void setValue(int parameter, double value);
    FgRegisterInfo* registerInfo() { return &m_registers.info; }

    /// The camera's view with its current settings.
    struct View
    {
        SceneView scene;
        std::optional<Pattern> testPattern;
        bool lineScan = false;
        std::optional<ReplayView> replay;

        bool operator==(const View&) const = default;
    };
    View view() const;
    /// Draws the view, unless the cache has it.
    static std::shared_ptr<const Film> draw(const View& view);

    bool acquiring() const { return m_stream != nullptr; }
    const std::shared_ptr<const Stream>& stream() const { return m_stream; }
    /// Starts the images from the first.
    void start(std::shared_ptr<const Film> film);
    /// The settings have changed: the images continue with this film.
    void goOn(std::shared_ptr<const Film> film);
    void stop();
    /// Number of stops so far.
    unsigned int stops() const { return m_stops; }

private:
    const ParameterDescription& descriptionOf(int parameter) const;
    void requireOnSensor(int parameter, double value) const;
    double rate() const;

    const CameraDescription m_description;
    ParameterSet m_parameters;
    RegisterList m_registers;
    std::shared_ptr<const Stream> m_stream; ///< null while the camera is stopped
    unsigned int m_stops = 0;
};

} // namespace simulation
