// SPDX-License-Identifier: MIT
/// \file
/// Board: a board of the machine, with the cameras plugged into it.
#pragma once

#include "descriptions/MachineDescription.h"
#include "hardware/Camera.h"
#include "hardware/Grabber.h"

#include <map>
#include <memory>
#include <mutex>
#include <set>

namespace simulation {

class Board
{
public:
    Board(BoardDescription description, unsigned int index)
        : m_description(std::move(description)),
          m_index(index)
    {}

    unsigned int index() const { return m_index; }
    const BoardDescription& description() const { return m_description; }
    void plugIn(const CameraDescription& camera);

    /// Puts an applet on the board. Throws FG_ALREADY_INITIALISED if it has one.
    void occupy(std::shared_ptr<Grabber> grabber);
    /// Removes the applet; no effect if the board has another applet by now.
    void vacate(const Grabber& grabber);
    bool occupied() const;
    /// Null while the board has no applet.
    std::shared_ptr<Grabber> grabber() const;

    /// Draws the cameras' images at their current sizes in advance, so that the first image after a start is
    /// not late.
    void drawAhead() const;

    // Cables. Plugging what is plugged, or unplugging what is unplugged, has no effect. After plugging, a
    // board has no applet and a camera is stopped. All throw FG_INVALID_ARGUMENT for a port that the board
    // does not have, or without a camera.
    void unplug();
    void plug();
    void unplugCamera(unsigned int port);
    void plugCamera(unsigned int port);
    /// The camera can still be controlled and continues, but its images do not arrive.
    void unplugLink(unsigned int port);
    void plugLink(unsigned int port);
    /// Null: the cable is not loose.
    void setLooseLink(unsigned int port, std::shared_ptr<const LooseLink> link);
    /// Throws FG_DEVICE_LOST if the board is unplugged.
    void requireThere() const;
    struct Cables
    {
        bool there = true;
        std::set<unsigned int> camerasGone;
        std::set<unsigned int> linksDown;
        std::map<unsigned int, std::shared_ptr<const LooseLink>> loose;
    };
    Cables cables() const;

    // Cameras. All throw FG_INVALID_ARGUMENT for a port without a camera, and FG_DEVICE_LOST if the camera is
    // unplugged.
    int cameras() const;
    int portOf(unsigned int position) const;
    const CameraDescription& camera(unsigned int port) const;
    double cameraValue(unsigned int port, int parameter) const;
    /// Draws new images if the camera is running, which takes a while.
    void setCameraValue(unsigned int port, int parameter, double value);
    FgRegisterInfo* cameraRegisters(unsigned int port);
    /// May draw images, which takes a while; a stop in the meantime cancels the start.
    void startCamera(unsigned int port);
    /// No effect on a stopped camera.
    void stopCamera(unsigned int port);

private:
    std::shared_ptr<const Stream> arriving(const Camera& camera) const;
    void requirePort(unsigned int port) const;
    const Camera& described(unsigned int port) const;
    Camera& described(unsigned int port);
    const Camera& at(unsigned int port) const;
    Camera& at(unsigned int port);
    static std::shared_ptr<const Film> draw(std::unique_lock<std::mutex>& lock, const Camera& camera);
    void passOn(const Camera& camera, const char* event);

    const BoardDescription m_description;
    const unsigned int m_index;
    mutable std::mutex m_mutex; ///< may be held while a channel's lock is taken, not the reverse
    std::map<unsigned int, Camera> m_cameras;
    std::shared_ptr<Grabber> m_grabber;
    Cables m_cables;
};

} // namespace simulation
