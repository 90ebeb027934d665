// SPDX-License-Identifier: MIT
#include "ovra-lib-fglib-model/FgLibModel.h"

#include "ovra-core/reference/RuntimeEntries.h"
#include "ovra-lib-display-fglib/FglibFrameBufferGroup.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"
#include "ovra_log/reference/Log.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <mutex>
#include <optional>
#include <set>
#include <stdexcept>

namespace ovra::core::models {

using display::FglibFrameBufferGroup;
using parameters::Parameter;
using parameters::Value;
using reference::probe;
using reference::RuntimeEntries;
using reference::Unrecorded;

namespace {

/// A parameter without its value, and the type in which the runtime passes the value.
struct Description
{
    Parameter parameter;
    FgValueType type;
};

Value emptyValue(FgValueType type)
{
    switch (type) {
    case FG_TYPE_DOUBLE:
        return 0.0;
    case FG_TYPE_STRING:
        return std::string();
    default:
        return std::int64_t{0};
    }
}

Description describe(const FgRegisterDescription& source)
{
    const auto text = [](const char* given) { return std::string(given ? given : ""); };
    return {{source.id, text(source.name), text(source.unit), source.minimum, source.maximum, source.step,
             source.writable != 0, emptyValue(source.type),
             parameters::choicesFromText(text(source.choices))},
            source.type};
}

// True for parameters that change the size of an image in memory.
bool shapesImage(int parameter)
{
    return parameter == FG_WIDTH || parameter == FG_HEIGHT || parameter == FG_PIXELFORMAT;
}

/// Reads and writes parameters of one DMA channel of a board handle. Results are the runtime's codes.
class ChannelParameters
{
public:
    ChannelParameters(const RuntimeEntries& runtime, Fg_Struct_s* handle, unsigned int dma)
        : m_runtime(runtime),
          m_handle(handle),
          m_dma(dma)
    {}

    int read(const Description& what, Value& value) const
    {
        switch (what.type) {
        case FG_TYPE_INT32:
            return readNumber<std::int32_t, std::int64_t>(what, value);
        case FG_TYPE_UINT32:
            return readNumber<std::uint32_t, std::int64_t>(what, value);
        case FG_TYPE_INT64:
            return readNumber<std::int64_t, std::int64_t>(what, value);
        case FG_TYPE_UINT64:
            return readNumber<std::uint64_t, std::int64_t>(what, value);
        case FG_TYPE_DOUBLE:
            return readNumber<double, double>(what, value);
        case FG_TYPE_STRING:
            return readText(what, value);
        case FG_TYPE_INVALID:
            break;
        }
        return FG_INVALID_TYPE;
    }

    int write(const Description& what, const Value& value) const
    {
        switch (what.type) {
        case FG_TYPE_INT32:
            return writeNumber<std::int32_t, std::int64_t>(what, value);
        case FG_TYPE_UINT32:
            return writeNumber<std::uint32_t, std::int64_t>(what, value);
        case FG_TYPE_INT64:
            return writeNumber<std::int64_t, std::int64_t>(what, value);
        case FG_TYPE_UINT64:
            return writeNumber<std::uint64_t, std::int64_t>(what, value);
        case FG_TYPE_DOUBLE:
            return writeNumber<double, double>(what, value);
        case FG_TYPE_STRING:
            return m_runtime.Fg_setParameterWithType(m_handle, what.parameter.id,
                                                     std::get<std::string>(value).c_str(), m_dma, what.type);
        case FG_TYPE_INVALID:
            break;
        }
        return FG_INVALID_TYPE;
    }

private:
    template <class Raw, class Kept>
    int readNumber(const Description& what, Value& value) const
    {
        Raw raw{};
        const int code =
            m_runtime.Fg_getParameterWithType(m_handle, what.parameter.id, &raw, m_dma, what.type);
        if (code == FG_OK)
            value = static_cast<Kept>(raw);
        return code;
    }

    template <class Raw, class Kept>
    int writeNumber(const Description& what, const Value& value) const
    {
        const Kept kept = std::get<Kept>(value);
        const auto raw = static_cast<Raw>(kept);
        if (static_cast<Kept>(raw) != kept)
            return FG_VALUE_OUT_OF_RANGE;
        return m_runtime.Fg_setParameterWithType(m_handle, what.parameter.id, &raw, m_dma, what.type);
    }

    int readText(const Description& what, Value& value) const
    {
        char* text = nullptr;
        void* const place = static_cast<void*>(&text);
        const int code =
            m_runtime.Fg_getParameterWithType(m_handle, what.parameter.id, place, m_dma, what.type);
        if (code != FG_OK)
            return code;
        value = std::string(text ? text : "");
        m_runtime.Fg_freeParameterStringWithType(m_handle, what.parameter.id, place, m_dma, what.type);
        return FG_OK;
    }

    const RuntimeEntries& m_runtime;
    Fg_Struct_s* const m_handle;
    const unsigned int m_dma;
};

using Groups = std::set<boost::shared_ptr<FglibFrameBufferGroup>>;

/// Notifies every group, also after one has thrown: one that misses the end would stay paused. Returns the
/// first exception.
std::exception_ptr announceChange(const Groups& groups, bool begin)
{
    std::exception_ptr first;
    for (const auto& group : groups) {
        try {
            group->notifyGeometryMayHaveChangedSlot(0, 0, begin);
        } catch (...) {
            if (!first)
                first = std::current_exception();
        }
    }
    return first;
}

} // namespace

struct FgLibModel::State
{
    boost::shared_ptr<const RuntimeEntries> runtime;
    FgRegisterInfo_s* info = nullptr;
    std::string place; // for messages

    // Held during calls of the runtime: when stop() returns, no thread uses the handle.
    mutable std::mutex mutex;
    Fg_Struct_s* handle = nullptr; // null once stopped
    std::vector<Description> descriptions;
    Groups groups;

    std::optional<Description> find(const std::string& name) const;
    Groups groupsOf(unsigned int dma) const;
    int write(const Description& description, unsigned int dma, const Value& value) const;
};

std::optional<Description> FgLibModel::State::find(const std::string& name) const
{
    const std::lock_guard lock(mutex);
    for (const auto& description : descriptions)
        if (description.parameter.name == name)
            return description;
    return std::nullopt;
}

Groups FgLibModel::State::groupsOf(unsigned int dma) const
{
    const std::lock_guard lock(mutex);
    Groups chosen;
    std::copy_if(groups.begin(), groups.end(), std::inserter(chosen, chosen.end()),
                 [dma](const auto& group) { return group->dmaIndex() == dma; });
    return chosen;
}

int FgLibModel::State::write(const Description& description, unsigned int dma, const Value& value) const
{
    const std::lock_guard lock(mutex);
    if (!handle)
        return FG_INVALID_HANDLE;
    return ChannelParameters(*runtime, handle, dma).write(description, value);
}

FgLibModel::FgLibModel() : m_state(std::make_unique<State>()) {}
FgLibModel::~FgLibModel() = default;

boost::shared_ptr<FgLibModel> FgLibModel::create(Fg_Struct_s* handle, unsigned int dma,
                                                 FgRegisterInfo_s* info,
                                                 const boost::shared_ptr<HlEnvironmentBoardNode>& board,
                                                 bool noDma)
{
    probe("FgLibModel::create", "dma=", dma, " noDma=", noDma);
    const Unrecorded own;
    const auto model = reference::liveObject(new FgLibModel);
    State& state = *model->m_state;
    state.runtime = reference::requireRuntime();
    state.handle = handle;
    state.info = info;
    if (board)
        state.place = "Board " + std::to_string(board->getIndex());
    return model;
}

void FgLibModel::init()
{
    probe("FgLibModel::init", m_state->place);
    const std::lock_guard lock(m_state->mutex);
    m_state->descriptions.clear();
    if (!m_state->handle || !m_state->info)
        return;
    std::transform(m_state->info->parameters, m_state->info->parameters + m_state->info->count,
                   std::back_inserter(m_state->descriptions), describe);
}

void FgLibModel::stop()
{
    probe("FgLibModel::stop", m_state->place);
    const std::lock_guard lock(m_state->mutex);
    m_state->handle = nullptr;
    m_state->info = nullptr;
    m_state->descriptions.clear();
}

void FgLibModel::addFrameBufferGroup(const boost::shared_ptr<FglibFrameBufferGroup>& group)
{
    probe("FgLibModel::addFrameBufferGroup", m_state->place, group ? " set" : " null");
    if (!group)
        return;
    const std::lock_guard lock(m_state->mutex);
    m_state->groups.insert(group);
}

void FgLibModel::removeFrameBufferGroup(const boost::shared_ptr<FglibFrameBufferGroup>& group)
{
    probe("FgLibModel::removeFrameBufferGroup", m_state->place, group ? " set" : " null");
    const std::lock_guard lock(m_state->mutex);
    m_state->groups.erase(group); // the caller holds one more reference: nothing is destroyed here
}

std::vector<Parameter> FgLibModel::parameters(unsigned int dma) const
{
    probe("FgLibModel::parameters", m_state->place, " dma=", dma);
    std::vector<Parameter> readable;
    std::vector<std::string> failures;
    {
        const std::lock_guard lock(m_state->mutex);
        const ChannelParameters channel(*m_state->runtime, m_state->handle, dma);
        for (const auto& description : m_state->descriptions) {
            Parameter parameter = description.parameter;
            const int code = channel.read(description, parameter.value);
            if (code == FG_OK)
                readable.push_back(std::move(parameter));
            else
                failures.push_back(reference::failureText(
                    *m_state->runtime, m_state->place + ": " + parameter.name + " could not be read", code));
        }
    }
    for (const auto& failure : failures)
        reference::log(reference::LogLevel::Warning, failure);
    return readable;
}

void FgLibModel::setParameter(const std::string& name, unsigned int dma, const std::string& text)
{
    probe("FgLibModel::setParameter", m_state->place, " dma=", dma, ' ', name, '=', text);
    const Unrecorded own;
    const auto description = m_state->find(name);
    if (!description)
        throw std::invalid_argument(m_state->place + " has no parameter " + name);
    const Value value = parameters::fromText(description->parameter, text);

    const auto concerned = shapesImage(description->parameter.id) ? m_state->groupsOf(dma) : Groups();
    auto failure = announceChange(concerned, true);
    const int code = failure ? FG_OK : m_state->write(*description, dma, value);
    if (const auto later = announceChange(concerned, false); !failure)
        failure = later;
    if (failure)
        std::rethrow_exception(failure);
    if (code == FG_OK && description->parameter.id == FG_TIMEOUT_PARAMETER)
        for (const auto& group : m_state->groupsOf(dma))
            group->setTimeout(static_cast<unsigned int>(std::get<std::int64_t>(value)));
    if (code != FG_OK)
        throw std::runtime_error(reference::failureText(
            *m_state->runtime, m_state->place + ": " + name + " = " + text + " was refused", code));
}

} // namespace ovra::core::models
