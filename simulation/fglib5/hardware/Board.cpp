#include "hardware/Board.h"

#include "Failure.h"

#include "fglib5/CameraControl.h"

#include <iterator>
#include <utility>

namespace simulation {

void Board::plugIn(const CameraDescription& camera)
{
    m_cameras.emplace(camera.port, Camera{camera, camera.width, camera.height, nullptr});
}

void Board::occupy(std::shared_ptr<Grabber> grabber)
{
    const std::lock_guard lock(m_mutex);
    if (m_grabber)
        throw Failure(FG_ALREADY_INITIALISED,
                      "The board carries the applet '" + m_grabber->applet().name + "' already");
    m_grabber = std::move(grabber);
    for (const auto& [port, camera] : m_cameras)
        m_grabber->setCameraStream(port, camera.stream);
}

void Board::vacate()
{
    const std::lock_guard lock(m_mutex);
    m_grabber.reset();
}

bool Board::occupied() const
{
    const std::lock_guard lock(m_mutex);
    return m_grabber != nullptr;
}

std::shared_ptr<Grabber> Board::grabber() const
{
    const std::lock_guard lock(m_mutex);
    return m_grabber;
}

int Board::cameras() const
{
    return static_cast<int>(m_cameras.size());
}

int Board::portOf(unsigned int position) const
{
    if (position >= m_cameras.size())
        throw Failure(FG_INVALID_ARGUMENT, "The board has no camera " + std::to_string(position));
    return static_cast<int>(std::next(m_cameras.begin(), static_cast<std::ptrdiff_t>(position))->first);
}

const Board::Camera& Board::at(unsigned int port) const
{
    const auto found = m_cameras.find(port);
    if (found == m_cameras.end())
        throw Failure(FG_INVALID_ARGUMENT, "No camera is plugged into port " + std::to_string(port));
    return found->second;
}

Board::Camera& Board::at(unsigned int port)
{
    return const_cast<Camera&>(std::as_const(*this).at(port));
}

const CameraDescription& Board::camera(unsigned int port) const
{
    return at(port).description;
}

int Board::cameraInteger(unsigned int port, int selector) const
{
    const std::lock_guard lock(m_mutex);
    const auto& camera = at(port);
    switch (selector) {
    case FGCAM_WIDTH:
        return camera.width;
    case FGCAM_HEIGHT:
        return camera.height;
    case FGCAM_SENSOR_WIDTH:
        return camera.description.sensorWidth;
    case FGCAM_SENSOR_HEIGHT:
        return camera.description.sensorHeight;
    case FGCAM_ACQUIRING:
        return camera.stream ? 1 : 0;
    default:
        throw Failure(FG_INVALID_PARAMETER, "A camera has no integer " + std::to_string(selector));
    }
}

void Board::setCameraInteger(unsigned int port, int selector, int value)
{
    const std::lock_guard lock(m_mutex);
    auto& camera = at(port);
    if (selector != FGCAM_WIDTH && selector != FGCAM_HEIGHT)
        throw Failure(FG_NOT_WRITABLE, "Only the size of a camera can be written");
    const bool width = selector == FGCAM_WIDTH;
    const int largest = width ? camera.description.sensorWidth : camera.description.sensorHeight;
    if (value < 1 || value > largest)
        throw Failure(FG_VALUE_OUT_OF_RANGE, std::string("The camera's ") + (width ? "width" : "height") +
                                                 " is 1 to " + std::to_string(largest) + ", " +
                                                 std::to_string(value) + " is outside");
    if (camera.stream)
        throw Failure(FG_NOT_WRITABLE, "The camera's size cannot be written while it acquires");
    (width ? camera.width : camera.height) = value;
}

void Board::drawAhead() const
{
    for (const auto& [port, camera] : m_cameras) {
        const int width = cameraInteger(port, FGCAM_WIDTH), height = cameraInteger(port, FGCAM_HEIGHT);
        if (FrameCycle::quickToDraw(width, height))
            FrameCycle::ofScene(camera.description.scene, width, height);
    }
}

void Board::startCamera(unsigned int port)
{
    std::unique_lock lock(m_mutex);
    auto& camera = at(port);
    const auto stops = camera.stops;
    std::shared_ptr<const FrameCycle> images;
    int width = 0, height = 0;
    while (width != camera.width || height != camera.height) { // the size can be changed while it is drawn
        width = camera.width;
        height = camera.height;
        lock.unlock();
        images = FrameCycle::ofScene(camera.description.scene, width, height);
        lock.lock();
        if (camera.stops != stops)
            return;
    }
    setStream(camera,
              std::make_shared<const Stream>(std::move(images), camera.description.frameRate,
                                             std::chrono::steady_clock::now()),
              "FG_CAMERA_STARTED");
}

void Board::stopCamera(unsigned int port)
{
    const std::lock_guard lock(m_mutex);
    auto& camera = at(port);
    ++camera.stops;
    if (camera.stream)
        setStream(camera, nullptr, "FG_CAMERA_STOPPED");
}

void Board::setStream(Camera& camera, std::shared_ptr<const Stream> stream, const char* event)
{
    camera.stream = std::move(stream);
    if (!m_grabber)
        return;
    m_grabber->setCameraStream(camera.description.port, camera.stream);
    m_grabber->events().raise(m_grabber->events().maskOf(event), 0);
}

} // namespace simulation
