// SPDX-License-Identifier: MIT
#include "hardware/Board.h"

#include "Failure.h"
#include "hardware/Notifier.h"

#include <utility>

namespace simulation {

void Board::plugIn(const CameraDescription& camera)
{
    m_cameras.try_emplace(camera.port, camera);
}

void Board::occupy(std::shared_ptr<Grabber> grabber)
{
    const std::lock_guard lock(m_mutex);
    if (!m_cables.there)
        throw Failure(FG_DEVICE_LOST, descriptionOf(FG_DEVICE_LOST));
    if (m_grabber)
        throw Failure(FG_ALREADY_INITIALISED,
                      "The board carries the applet '" + m_grabber->applet().name + "' already");
    m_grabber = std::move(grabber);
    m_grabber->setBoard(m_index);
    for (const auto& [port, camera] : m_cameras)
        m_grabber->setCameraStream(port, arriving(camera));
    for (const auto& [port, link] : m_cables.loose)
        m_grabber->setLooseLink(port, link);
}

void Board::vacate(const Grabber& grabber)
{
    const std::lock_guard lock(m_mutex);
    if (m_grabber.get() == &grabber)
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

// --- cables

void Board::requireThere() const
{
    const std::lock_guard lock(m_mutex);
    if (!m_cables.there)
        throw Failure(FG_DEVICE_LOST, descriptionOf(FG_DEVICE_LOST));
}

Board::Cables Board::cables() const
{
    const std::lock_guard lock(m_mutex);
    return m_cables;
}

void Board::requirePort(unsigned int port) const
{
    if (port >= m_description.ports)
        throw Failure(FG_INVALID_ARGUMENT,
                      "Board " + std::to_string(m_index) + " has no port " + std::to_string(port));
}

void Board::unplug()
{
    std::shared_ptr<Grabber> lost;
    {
        const std::lock_guard lock(m_mutex);
        if (!std::exchange(m_cables.there, false))
            return;
        lost = std::exchange(m_grabber, nullptr);
        for (auto& [port, camera] : m_cameras) {
            camera.stop();
        }
    }
    if (lost)
        lost->lose();
    Notifier::instance().notify(m_index, FG_NOTIFY_BOARD_GONE, 0);
}

void Board::plug()
{
    {
        const std::lock_guard lock(m_mutex);
        if (std::exchange(m_cables.there, true))
            return;
    }
    Notifier::instance().notify(m_index, FG_NOTIFY_BOARD_THERE, 0);
}

void Board::unplugCamera(unsigned int port)
{
    {
        const std::lock_guard lock(m_mutex);
        auto& camera = described(port);
        if (!m_cables.camerasGone.insert(port).second)
            return;
        const bool acquired = camera.acquiring();
        camera.stop();
        if (acquired)
            passOn(camera, "FG_CAMERA_STOPPED");
    }
    Notifier::instance().notify(m_index, FG_NOTIFY_CAMERA_GONE, port);
}

void Board::plugCamera(unsigned int port)
{
    {
        const std::lock_guard lock(m_mutex);
        described(port);
        if (m_cables.camerasGone.erase(port) == 0)
            return;
    }
    Notifier::instance().notify(m_index, FG_NOTIFY_CAMERA_THERE, port);
}

void Board::unplugLink(unsigned int port)
{
    {
        const std::lock_guard lock(m_mutex);
        requirePort(port);
        if (!m_cables.linksDown.insert(port).second)
            return;
        if (m_grabber)
            m_grabber->setCameraStream(port, nullptr);
    }
    Notifier::instance().notify(m_index, FG_NOTIFY_LINK_DOWN, port);
}

void Board::plugLink(unsigned int port)
{
    {
        const std::lock_guard lock(m_mutex);
        requirePort(port);
        if (m_cables.linksDown.erase(port) == 0)
            return;
        const auto camera = m_cameras.find(port);
        if (m_grabber && camera != m_cameras.end())
            m_grabber->setCameraStream(port, arriving(camera->second), true);
    }
    Notifier::instance().notify(m_index, FG_NOTIFY_LINK_UP, port);
}

void Board::setLooseLink(unsigned int port, std::shared_ptr<const LooseLink> link)
{
    const std::lock_guard lock(m_mutex);
    requirePort(port);
    if (m_grabber)
        m_grabber->setLooseLink(port, link);
    if (link)
        m_cables.loose[port] = std::move(link);
    else
        m_cables.loose.erase(port);
}

// --- cameras

// The stream that arrives at the board; null if the link is unplugged.
std::shared_ptr<const Stream> Board::arriving(const Camera& camera) const
{
    return m_cables.linksDown.contains(camera.description().port) ? nullptr : camera.stream();
}

int Board::cameras() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_cameras.size() - m_cables.camerasGone.size());
}

int Board::portOf(unsigned int position) const
{
    const std::lock_guard lock(m_mutex);
    unsigned int passed = 0;
    for (const auto& [port, camera] : m_cameras)
        if (!m_cables.camerasGone.contains(port) && passed++ == position)
            return static_cast<int>(port);
    throw Failure(FG_INVALID_ARGUMENT, "The board has no camera " + std::to_string(position));
}

const Camera& Board::described(unsigned int port) const
{
    const auto found = m_cameras.find(port);
    if (found == m_cameras.end())
        throw Failure(FG_INVALID_ARGUMENT, "No camera is plugged into port " + std::to_string(port));
    return found->second;
}

const Camera& Board::at(unsigned int port) const
{
    const auto& found = described(port);
    if (m_cables.camerasGone.contains(port))
        throw Failure(FG_DEVICE_LOST,
                      "The camera at port " + std::to_string(port) + " is not there any more");
    return found;
}

Camera& Board::described(unsigned int port)
{
    return const_cast<Camera&>(std::as_const(*this).described(port));
}

Camera& Board::at(unsigned int port)
{
    return const_cast<Camera&>(std::as_const(*this).at(port));
}

const CameraDescription& Board::camera(unsigned int port) const
{
    const std::lock_guard lock(m_mutex);
    return at(port).description();
}

double Board::cameraValue(unsigned int port, int parameter) const
{
    const std::lock_guard lock(m_mutex);
    return at(port).value(parameter);
}

void Board::setCameraValue(unsigned int port, int parameter, double value)
{
    std::unique_lock lock(m_mutex);
    auto& camera = at(port);
    camera.setValue(parameter, value);
    if (!camera.acquiring())
        return;
    const auto stops = camera.stops();
    auto film = draw(lock, camera);
    if (camera.stops() != stops)
        return;
    camera.goOn(std::move(film));
    passOn(camera, nullptr);
}

FgRegisterInfo* Board::cameraRegisters(unsigned int port)
{
    const std::lock_guard lock(m_mutex);
    return at(port).registerInfo();
}

void Board::drawAhead() const
{
    for (const auto& [port, camera] : m_cameras) {
        std::unique_lock lock(m_mutex);
        const auto view = camera.view();
        lock.unlock();
        if (quickToDraw(view.scene.window.width, view.scene.window.height))
            Camera::draw(view);
    }
}

// Draws without the lock, so the settings may change in the meantime.
std::shared_ptr<const Film> Board::draw(std::unique_lock<std::mutex>& lock, const Camera& camera)
{
    for (;;) {
        const auto view = camera.view();
        lock.unlock();
        auto film = Camera::draw(view);
        lock.lock();
        if (view == camera.view())
            return film;
    }
}

void Board::startCamera(unsigned int port)
{
    std::unique_lock lock(m_mutex);
    auto& camera = at(port);
    const auto stops = camera.stops();
    auto film = draw(lock, camera);
    if (camera.stops() != stops)
        return;
    camera.start(std::move(film));
    passOn(camera, "FG_CAMERA_STARTED");
}

void Board::stopCamera(unsigned int port)
{
    const std::lock_guard lock(m_mutex);
    auto& camera = at(port);
    const bool acquired = camera.acquiring();
    camera.stop();
    if (acquired)
        passOn(camera, "FG_CAMERA_STOPPED");
}

void Board::passOn(const Camera& camera, const char* event)
{
    if (!m_grabber)
        return;
    m_grabber->setCameraStream(camera.description().port, arriving(camera));
    if (event != nullptr)
        m_grabber->events().raise(m_grabber->events().maskOf(event), 0);
}

} // namespace simulation
