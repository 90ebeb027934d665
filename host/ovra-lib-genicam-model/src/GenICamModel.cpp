#include "ovra-lib-genicam-model/GenICamModel.h"

#include "ovra-core/reference/RuntimeEntries.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"

#include <stdexcept>
#include <string>

namespace ovra::core::models {

using reference::probe;
using reference::RuntimeEntries;

/// Where the camera is plugged in: all there is to know, the rest is asked each time.
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
    m_state->check(*runtime, "it could not be stopped", runtime->FgCam_stop(m_state->board, m_state->port));
}

bool GenICamModel::isAcquiring() const
{
    probe("GenICamModel::isAcquiring", "board=", m_state->board, " port=", m_state->port);
    return m_state->get("whether it streams could not be read", FGCAM_ACQUIRING) != 0;
}

} // namespace ovra::core::models
