/// \file
/// A board of the machine with the cameras plugged into it.
#pragma once

#include "descriptions/MachineDescription.h"
#include "hardware/Camera.h"
#include "hardware/Grabber.h"

#include <map>
#include <memory>
#include <mutex>

namespace simulation {

class Board
{
public:
    explicit Board(BoardDescription description) : m_description(std::move(description)) {}

    const BoardDescription& description() const { return m_description; }
    void plugIn(const CameraDescription& camera);

    /// Puts an applet on the board. Throws FG_ALREADY_INITIALISED.
    void occupy(std::shared_ptr<Grabber> grabber);
    void vacate();
    bool occupied() const;
    /// Null while the board is vacant.
    std::shared_ptr<Grabber> grabber() const;

    /// Draws the cameras' images at their present sizes: a start finds them, and its first image is in time.
    void drawAhead() const;

    // Cameras. All throw FG_INVALID_ARGUMENT for a port without a camera.
    int cameras() const;
    int portOf(unsigned int position) const;
    const CameraDescription& camera(unsigned int port) const;
    double cameraValue(unsigned int port, int parameter) const;
    /// May draw, which takes a while, where the camera acquires.
    void setCameraValue(unsigned int port, int parameter, double value);
    FgRegisterInfo* cameraRegisters(unsigned int port);
    /// May draw, which takes a while; a stop meanwhile ends the start.
    void startCamera(unsigned int port);
    /// No effect on a camera at rest.
    void stopCamera(unsigned int port);

private:
    const Camera& at(unsigned int port) const;
    Camera& at(unsigned int port);
    static std::shared_ptr<const Film> draw(std::unique_lock<std::mutex>& lock, const Camera& camera);
    void passOn(const Camera& camera, const char* event);

    const BoardDescription m_description;
    mutable std::mutex m_mutex; ///< may be held while a channel's lock is taken, not the reverse
    std::map<unsigned int, Camera> m_cameras;
    std::shared_ptr<Grabber> m_grabber;
};

} // namespace simulation
