/// \file
/// A board of the machine with the cameras plugged into it.
#pragma once

#include "descriptions/MachineDescription.h"
#include "hardware/FrameCycle.h"
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
    int cameraInteger(unsigned int port, int selector) const;
    void setCameraInteger(unsigned int port, int selector, int value);
    /// May draw, which takes a while; a stop meanwhile ends the start.
    void startCamera(unsigned int port);
    /// No effect on a camera at rest.
    void stopCamera(unsigned int port);

private:
    struct Camera
    {
        CameraDescription description;
        int width;
        int height;
        std::shared_ptr<const Stream> stream; ///< null while it does not acquire
        unsigned int stops = 0;               ///< how often it was told to
    };

    const Camera& at(unsigned int port) const;
    Camera& at(unsigned int port);
    void setStream(Camera& camera, std::shared_ptr<const Stream> stream, const char* event);

    const BoardDescription m_description;
    mutable std::mutex m_mutex; ///< may be held while a channel's lock is taken, not the reverse
    std::map<unsigned int, Camera> m_cameras;
    std::shared_ptr<Grabber> m_grabber;
};

} // namespace simulation
