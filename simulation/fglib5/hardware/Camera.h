/// \file
/// A camera plugged into a board: what it looks at, its settings, and what it sends.
#pragma once

#include "descriptions/MachineDescription.h"
#include "hardware/ParameterSet.h"
#include "hardware/Stream.h"
#include "pictures/ReplayFilm.h"

#include "fglib5/Fglib5Types.h"

#include <memory>
#include <optional>

namespace simulation {

/// Not safe from several threads by itself; the board guards it.
class Camera
{
public:
    explicit Camera(const CameraDescription& description);

    const CameraDescription& description() const { return m_description; }

    /// Parameters are those of CameraControl.h. Throw FG_INVALID_PARAMETER; FG_NOT_WRITABLE, also for the
    /// size while the camera acquires; FG_VALUE_OUT_OF_RANGE.
    double value(int parameter) const;
    void setValue(int parameter, double value);
    FgRegisterInfo* registerInfo() { return &m_registers.info; }

    /// What a camera with the present settings shows.
    struct View
    {
        SceneView scene;
        std::optional<Pattern> testPattern;
        bool lineScan = false;
        std::optional<ReplayView> replay;

        bool operator==(const View&) const = default;
    };
    View view() const;
    /// Draws what has not been drawn of late.
    static std::shared_ptr<const Film> draw(const View& view);

    bool acquiring() const { return m_stream != nullptr; }
    const std::shared_ptr<const Stream>& stream() const { return m_stream; }
    /// Images begin anew.
    void start(std::shared_ptr<const Film> film);
    /// The settings have changed: the images go on with this film.
    void goOn(std::shared_ptr<const Film> film);
    void stop();
    /// How often it was told to stop.
    unsigned int stops() const { return m_stops; }

private:
    const ParameterDescription& descriptionOf(int parameter) const;
    void requireOnSensor(int parameter, double value) const;
    double rate() const;

    const CameraDescription m_description;
    ParameterSet m_parameters;
    RegisterList m_registers;
    std::shared_ptr<const Stream> m_stream; ///< null while it does not acquire
    unsigned int m_stops = 0;
};

} // namespace simulation
