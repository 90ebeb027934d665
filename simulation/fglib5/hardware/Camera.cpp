// SPDX-License-Identifier: MIT
#include "hardware/Camera.h"

#include "Failure.h"
#include "pictures/WebFilm.h"

#include "fglib5/CameraControl.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace simulation {

namespace {

constexpr double MAX_EXPOSURE = 1'000'000;                            // us
constexpr double MAX_FRAME_RATE = 100'000, MAX_LINE_RATE = 1'000'000; // Hz
constexpr int TEST_PATTERN_DEPTH = 10;                                // bits

ParameterDescription integer(int id, const char* name, const char* unit, int minimum, int maximum,
                             int initial)
{
    return numberParameter(id, name, unit, FG_TYPE_INT32, minimum, maximum, std::int64_t{initial});
}

ParameterDescription number(int id, const char* name, const char* unit, double minimum, double maximum,
                            double initial)
{
    return numberParameter(id, name, unit, FG_TYPE_DOUBLE, minimum, maximum, initial);
}

ParameterDescription readOnly(ParameterDescription description)
{
    description.writable = false;
    return description;
}

std::vector<ParameterDescription> parametersOf(const CameraDescription& camera)
{
    std::vector<ParameterDescription> parameters = {
        integer(FGCAM_WIDTH, "Width", "pixel", 1, camera.sensorWidth, camera.width),
        integer(FGCAM_HEIGHT, "Height", "lines", 1, camera.sensorHeight, camera.height),
        integer(FGCAM_OFFSET_X, "OffsetX", "pixel", 0, camera.sensorWidth - 1, 0),
        integer(FGCAM_OFFSET_Y, "OffsetY", "lines", 0, camera.sensorHeight - 1, 0),
        readOnly(
            integer(FGCAM_SENSOR_WIDTH, "SensorWidth", "pixel", 1, camera.sensorWidth, camera.sensorWidth)),
        readOnly(integer(FGCAM_SENSOR_HEIGHT, "SensorHeight", "lines", 1, camera.sensorHeight,
                         camera.sensorHeight)),
        camera.lineScan ? number(FGCAM_LINE_RATE, "LineRate", "Hz", 0, MAX_LINE_RATE, camera.frameRate)
                        : number(FGCAM_FRAME_RATE, "FrameRate", "Hz", 0, MAX_FRAME_RATE, camera.frameRate),
        number(FGCAM_EXPOSURE, "ExposureTime", "us", 1, MAX_EXPOSURE, camera.exposure),
        number(FGCAM_GAIN, "Gain", "", 0, 16, 1),
        integer(FGCAM_REVERSE_X, "ReverseX", "", 0, 1, 0),
    };
    if (camera.lineScan)
        return parameters; // a line camera has no ReverseY and no test pattern
    parameters.push_back(integer(FGCAM_REVERSE_Y, "ReverseY", "", 0, 1, 0));
    parameters.push_back(choiceParameter(FGCAM_TEST_PATTERN, "TestPattern",
                                         {{0, "off"}, {1, "ramp"}, {2, "checkerboard"}}, 0));
    return parameters;
}

} // namespace

Camera::Camera(const CameraDescription& description)
    : m_description(description),
      m_parameters(parametersOf(description)),
      m_registers{&m_parameters}
{}

const ParameterDescription& Camera::descriptionOf(int parameter) const
{
    const auto* const found = m_parameters.find(parameter);
    if (found == nullptr)
        throw Failure(FG_INVALID_PARAMETER, "The camera has no parameter " + std::to_string(parameter));
    return *found;
}

double Camera::value(int parameter) const
{
    if (parameter == FGCAM_ACQUIRING)
        return acquiring() ? 1 : 0;
    descriptionOf(parameter);
    return numberOf(m_parameters.get(parameter));
}

void Camera::setValue(int parameter, double value)
{
    const auto& description = descriptionOf(parameter);
    m_parameters.checked(description, value);
    if (acquiring() && (parameter == FGCAM_WIDTH || parameter == FGCAM_HEIGHT))
        throw Failure(FG_NOT_WRITABLE, "The camera's size cannot be written while it acquires");
    requireOnSensor(parameter, value);
    m_parameters.set(description, value);
}

void Camera::requireOnSensor(int parameter, double value) const
{
    for (const auto& [offset, size, sensor] :
         {std::tuple(FGCAM_OFFSET_X, FGCAM_WIDTH, FGCAM_SENSOR_WIDTH),
          std::tuple(FGCAM_OFFSET_Y, FGCAM_HEIGHT, FGCAM_SENSOR_HEIGHT)}) {
        if (parameter != offset && parameter != size)
            continue;
        const auto other = parameter == offset ? size : offset;
        if (value + this->value(other) > this->value(sensor))
            throw Failure(FG_VALUE_OUT_OF_RANGE,
                          descriptionOf(offset).name + " and " + descriptionOf(size).name +
                              " together reach to the sensor's edge at " + textOf(this->value(sensor)) +
                              ", not to " + textOf(value + this->value(other)));
    }
}

double Camera::rate() const
{
    return value(m_description.lineScan ? FGCAM_LINE_RATE : FGCAM_FRAME_RATE);
}

Camera::View Camera::view() const
{
    const auto whole = [this](int parameter) {
        return m_parameters.find(parameter) != nullptr ? m_parameters.integer(parameter) : 0;
    };
    // At most the time between two images.
    const double exposed = rate() > 0 ? std::min(value(FGCAM_EXPOSURE), 1e6 / rate()) : value(FGCAM_EXPOSURE);
    View view;
    view.scene = {
        .scene = m_description.scene,
        .sensorWidth = m_description.sensorWidth,
        .sensorHeight = m_description.sensorHeight,
        .window = {whole(FGCAM_OFFSET_X), whole(FGCAM_OFFSET_Y), whole(FGCAM_WIDTH), whole(FGCAM_HEIGHT)},
        .blur = static_cast<int>(std::lround(exposed * rate() / 1e6 * MAX_BLUR)),
        .brightness = exposed / m_description.exposure * value(FGCAM_GAIN),
        .reverseX = whole(FGCAM_REVERSE_X) != 0,
        .reverseY = whole(FGCAM_REVERSE_Y) != 0};
    if (const int pattern = whole(FGCAM_TEST_PATTERN); pattern != 0)
        view.testPattern = pattern == 1 ? Pattern::Ramp : Pattern::Checkerboard;
    view.lineScan = m_description.lineScan;
    const auto& scene = view.scene;
    if (m_description.replay)
        view.replay = ReplayView{m_description.replay->files, scene.window, scene.brightness, scene.reverseX,
                                 scene.reverseY};
    return view;
}

std::shared_ptr<const Film> Camera::draw(const View& view)
{
    const auto& window = view.scene.window;
    if (view.testPattern)
        return patternFilm(*view.testPattern, window.width, window.height, TEST_PATTERN_DEPTH, true);
    if (view.replay)
        return replayFilm(*view.replay);
    const auto& scene = view.scene;
    if (view.lineScan)
        return webFilm(scene.sensorWidth, window.x, window.width, scene.brightness, scene.reverseX);
    return sceneFilm(scene);
}

void Camera::start(std::shared_ptr<const Film> film)
{
    Stream stream{.film = std::move(film), .rate = rate(), .start = std::chrono::steady_clock::now()};
    if (m_description.replay && !m_description.replay->repeat)
        stream.end = m_description.replay->files.size();
    m_stream = std::make_shared<const Stream>(std::move(stream));
}

void Camera::goOn(std::shared_ptr<const Film> film)
{
    auto stream = *m_stream;
    stream.film = std::move(film);
    if (stream.rate != rate()) { // keep the image count, at the new rate
        const auto now = std::chrono::steady_clock::now();
        const std::chrono::duration<double> age = now - stream.start;
        stream.first += static_cast<std::uint64_t>(std::ceil(age.count() * stream.rate));
        stream.start = now;
        stream.rate = rate();
    }
    m_stream = std::make_shared<const Stream>(std::move(stream));
}

void Camera::stop()
{
    ++m_stops;
    m_stream.reset();
}

} // namespace simulation
