// SPDX-License-Identifier: MIT
#include "ovra-lib-genicam-model/GenICamModel.h"

#include "ovra-core/reference/RuntimeEntries.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace ovra::core::models {

using reference::probe;
using reference::RuntimeEntries;

/// The camera's connector. Everything else is read from the runtime each time.
struct GenICamModel::State
{
    const unsigned int board;
    const unsigned int port;

    std::string name() const
    {
        return "Camera on board " + std::to_string(board) + ", port " + std::to_string(port);
    }
    boost::shared_ptr<const RuntimeEntries> control() const;
    void check(const RuntimeEntries& runtime, const char* what, int code) const;
    int get(const char* what, int selector) const;
    void set(const char* what, int selector, int value) const;
    parameters::Parameter read(const RuntimeEntries& runtime, const FgRegisterDescription& description) const;
};

boost::shared_ptr<const RuntimeEntries> GenICamModel::State::control() const
{
    auto runtime = reference::requireRuntime();
    if (!runtime->hasCameraControl)
        throw std::runtime_error(name() + ": the frame-grabber runtime controls no cameras");
    return runtime;
}

void GenICamModel::State::check(const RuntimeEntries& runtime, const char* what, int code) const
{
    if (code != FG_OK)
        throw std::runtime_error(reference::failureText(runtime, name() + ": " + what, code));
}

int GenICamModel::State::get(const char* what, int selector) const
{
    const auto runtime = control();
    int value = 0;
    check(*runtime, what, runtime->FgCam_getInteger(board, port, selector, &value));
    return value;
}

void GenICamModel::State::set(const char* what, int selector, int value) const
{
    const auto runtime = control();
    check(*runtime, what, runtime->FgCam_setInteger(board, port, selector, value));
}

parameters::Parameter GenICamModel::State::read(const RuntimeEntries& runtime,
                                                const FgRegisterDescription& description) const
{
    double value = 0;
    check(runtime, "a parameter could not be read",
          runtime.FgCam_getValue(board, port, description.id, &value));
    parameters::Parameter parameter{.id = description.id,
                                    .name = description.name,
                                    .unit = description.unit,
                                    .minimum = description.minimum,
                                    .maximum = description.maximum,
                                    .step = description.step,
                                    .writable = description.writable != 0,
                                    .value = value,
                                    .choices = parameters::choicesFromText(description.choices)};
    if (description.type != FG_TYPE_DOUBLE)
        parameter.value = static_cast<std::int64_t>(value);
    return parameter;
}

GenICamModel::GenICamModel(unsigned int board, unsigned int port) : m_state(new State{board, port}) {}
GenICamModel::~GenICamModel() = default;

boost::shared_ptr<GenICamModel> GenICamModel::create(unsigned int board, unsigned int port)
{
    probe("GenICamModel::create", "board=", board, " port=", port);
    return reference::liveObject(new GenICamModel(board, port));
}

int GenICamModel::width() const
{
    probe("GenICamModel::width", "board=", m_state->board, " port=", m_state->port);
    return m_state->get("the width could not be read", FGCAM_WIDTH);
}

int GenICamModel::height() const
{
    probe("GenICamModel::height", "board=", m_state->board, " port=", m_state->port);
    return m_state->get("the height could not be read", FGCAM_HEIGHT);
}

void GenICamModel::setWidth(int width)
{
    probe("GenICamModel::setWidth", "board=", m_state->board, " port=", m_state->port, " width=", width);
    m_state->set("the width could not be set", FGCAM_WIDTH, width);
}

void GenICamModel::setHeight(int height)
{
    probe("GenICamModel::setHeight", "board=", m_state->board, " port=", m_state->port, " height=", height);
    m_state->set("the height could not be set", FGCAM_HEIGHT, height);
}

std::vector<parameters::Parameter> GenICamModel::parameters() const
{
    probe("GenICamModel::parameters", "board=", m_state->board, " port=", m_state->port);
    const auto runtime = m_state->control();
    FgRegisterInfo* info = nullptr;
    m_state->check(*runtime, "its parameters could not be read",
                   runtime->FgCam_getParameterInfo(m_state->board, m_state->port, &info));
    std::vector<parameters::Parameter> all;
    for (unsigned int i = 0; i < info->count; ++i)
        all.push_back(m_state->read(*runtime, info->parameters[i]));
    return all;
}

void GenICamModel::setParameter(const std::string& name, const std::string& text)
{
    probe("GenICamModel::setParameter", "board=", m_state->board, " port=", m_state->port, ' ', name, '=',
          text);
    const reference::Unrecorded own;
    const auto all = parameters();
    const auto parameter = std::ranges::find(all, name, &parameters::Parameter::name);
    if (parameter == all.end())
        throw std::invalid_argument(m_state->name() + " has no parameter " + name);
    const auto value = parameters::fromText(*parameter, text);
    const auto* const whole = std::get_if<std::int64_t>(&value);
    const auto runtime = m_state->control();
    const std::string refusal = name + " = " + text + " was refused";
    m_state->check(*runtime, refusal.c_str(),
                   runtime->FgCam_setValue(m_state->board, m_state->port, parameter->id,
                                           whole ? static_cast<double>(*whole) : std::get<double>(value)));
}

void GenICamModel::restartAcquisition()
{
    probe("GenICamModel::restartAcquisition", "board=", m_state->board, " port=", m_state->port);
    const auto runtime = m_state->control();
    m_state->check(*runtime, "it could not be started", runtime->FgCam_start(m_state->board, m_state->port));
}

void GenICamModel::stopAcquisition()
{
    probe("GenICamModel::stopAcquisition", "board=", m_state->board, " port=", m_state->port);
    const auto runtime = m_state->control();
    const int code = runtime->FgCam_stop(m_state->board, m_state->port);
    if (code != FG_DEVICE_LOST) // an unplugged camera has stopped
        m_state->check(*runtime, "it could not be stopped", code);
}

bool GenICamModel::isAcquiring() const
{
    probe("GenICamModel::isAcquiring", "board=", m_state->board, " port=", m_state->port);
    return m_state->get("whether it streams could not be read", FGCAM_ACQUIRING) != 0;
}

} // namespace ovra::core::models
