#include "hardware/Board.h"

#include "Failure.h"

#include <iterator>
#include <utility>

namespace simulation {

void Board::plugIn(const CameraDescription& camera)
{
    m_cameras.try_emplace(camera.port, camera);
}

void Board::occupy(std::shared_ptr<Grabber> grabber)
{
    const std::lock_guard lock(m_mutex);
    if (m_grabber)
        throw Failure(FG_ALREADY_INITIALISED,
                      "The board carries the applet '" + m_grabber->applet().name + "' already");
    m_grabber = std::move(grabber);
    for (const auto& [port, camera] : m_cameras)
        m_grabber->setCameraStream(port, camera.stream());
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

const Camera& Board::at(unsigned int port) const
{
    const auto found = m_cameras.find(port);
    if (found == m_cameras.end())
        throw Failure(FG_INVALID_ARGUMENT, "No camera is plugged into port " + std::to_string(port));
    return found->second;
}

Camera& Board::at(unsigned int port)
{
    return const_cast<Camera&>(std::as_const(*this).at(port));
}

const CameraDescription& Board::camera(unsigned int port) const
{
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

// Without the lock; the settings can change meanwhile.
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
    m_grabber->setCameraStream(camera.description().port, camera.stream());
    if (event != nullptr)
        m_grabber->events().raise(m_grabber->events().maskOf(event), 0);
}

} // namespace simulation
