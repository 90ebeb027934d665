// SPDX-License-Identifier: MIT
#include "ovra-lib-fglib-model/FgLibEventsModel.h"

#include "ovra-core/reference/RuntimeEntries.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-fglib-model/reference/BoardEvents.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"
#include "ovra_log/reference/Log.h"

#include <atomic>
#include <exception>
#include <map>
#include <mutex>
#include <utility>

namespace ovra::core::models {

using reference::log;
using reference::LogLevel;
using reference::probe;
using reference::RuntimeEntries;
using reference::Unrecorded;

namespace {

/// The target of a model's events. The runtime gets a number for it instead of a pointer: if a registration
/// could not be removed and calls after the model's end, the look-up of the number finds nothing.
struct Delivery
{
    FgLibEventsModel::EventSignal signal;
    std::map<std::uint64_t, std::string> names; // by bit
};

class Deliveries
{
public:
    static Deliveries& instance()
    {
        // Never destroyed, because at the end of the process models may outlive static objects.
        static auto* deliveries = new Deliveries;
        return *deliveries;
    }

    std::uintptr_t add(const std::shared_ptr<Delivery>& delivery)
    {
        const std::lock_guard lock(m_mutex);
        m_byNumber[++m_last] = delivery;
        return m_last;
    }

    void remove(std::uintptr_t number)
    {
        const std::lock_guard lock(m_mutex);
        m_byNumber.erase(number);
    }

    std::shared_ptr<Delivery> find(std::uintptr_t number)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_byNumber.find(number);
        return found == m_byNumber.end() ? nullptr : found->second.lock();
    }

private:
    std::mutex m_mutex;
    std::uintptr_t m_last = 0;
    std::map<std::uintptr_t, std::weak_ptr<Delivery>> m_byNumber;
};

void deliver(const Delivery& delivery, std::uint64_t events, const FgEventInfo& info)
{
    for (const auto& [bit, name] : delivery.names)
        if (events & bit)
            delivery.signal(name, info.timestampNs, info.frame);
}

extern "C" int onEvents(std::uint64_t events, void* userData, const FgEventInfo* info)
{
    const auto delivery = Deliveries::instance().find(reinterpret_cast<std::uintptr_t>(userData));
    if (!delivery)
        return 0;
    try {
        deliver(*delivery, events, info ? *info : FgEventInfo{});
    } catch (const std::exception& error) {
        log(LogLevel::Error, std::string("An event could not be delivered: ") + error.what());
    } catch (...) {
        // The caller is the runtime, a C library: no exception may reach it.
        log(LogLevel::Error, "An event could not be delivered");
    }
    return 0;
}

std::map<std::uint64_t, std::string> eventNames(const RuntimeEntries& runtime, Fg_Struct_s* handle)
{
    std::map<std::uint64_t, std::string> names;
    const int count = runtime.Fg_getEventCount(handle);
    for (int position = 0; position < count && position < 64; ++position) {
        const std::uint64_t bit = std::uint64_t{1} << position;
        if (const char* const name = runtime.Fg_getEventName(handle, bit))
            names[bit] = name;
    }
    return names;
}

} // namespace

struct FgLibEventsModel::State
{
    const std::shared_ptr<Delivery> delivery = std::make_shared<Delivery>();
    boost::shared_ptr<const RuntimeEntries> runtime;
    boost::weak_ptr<HlEnvironmentBoardNode> board;
    int boardIndex = -1;
    unsigned int boardSerial = 0;
    Fg_Struct_s* handle = nullptr; // null: not registered
    std::uint64_t mask = 0;
    std::uintptr_t number = 0;

    std::atomic<bool> active{false};

    void registerAll();
    void activate();
    void unregister();
    bool registered() const;
    void check(int code) const;
};

void FgLibEventsModel::State::registerAll()
{
    delivery->names = eventNames(*runtime, handle);
    for (const auto& [bit, name] : delivery->names)
        mask |= bit;
    number = Deliveries::instance().add(delivery);
    if (mask == 0)
        return;
    auto* const userData =
        reinterpret_cast<void*>(number); // NOLINT(performance-no-int-to-ptr): comes back as it is
    check(runtime->Fg_registerEventCallback(handle, mask, onEvents, userData, 0, nullptr));
}

// Called for the first listener: until then the runtime raises no events, which saves time for each image.
void FgLibEventsModel::State::activate()
{
    if (registered() && !active.exchange(true))
        check(runtime->Fg_activateEvents(handle, mask, 1));
}

// Freeing a handle removes its registrations, and the runtime may reuse the handle's address.
bool FgLibEventsModel::State::registered() const
{
    const auto present = board.lock();
    return mask != 0 && present && present->getBoardHandle() == handle;
}

void FgLibEventsModel::State::check(int code) const
{
    if (code != FG_OK)
        log(LogLevel::Warning,
            reference::failureText(*runtime, "The board's events are not available", code));
}

void FgLibEventsModel::State::unregister()
{
    Deliveries::instance().remove(number);
    delivery->signal.disconnect_all_slots();
    if (!registered())
        return;
    runtime->Fg_activateEvents(handle, mask, 0);
    const int code = runtime->Fg_registerEventCallback(handle, mask, nullptr, nullptr, 0, nullptr);
    if (code != FG_OK && code != FG_DEVICE_LOST)
        log(LogLevel::Warning,
            reference::failureText(*runtime, "The board's events could not be ended", code));
}

FgLibEventsModel::FgLibEventsModel() : m_state(std::make_unique<State>()) {}

FgLibEventsModel::~FgLibEventsModel()
{
    const Unrecorded own;
    if (m_state->handle)
        m_state->unregister();
}

boost::shared_ptr<FgLibEventsModel>
FgLibEventsModel::create(const boost::shared_ptr<HlEnvironmentBoardNode>& board)
{
    probe("FgLibEventsModel::create");
    const Unrecorded own;
    const auto model = reference::liveObject(new FgLibEventsModel);
    State& state = *model->m_state;
    Fg_Struct_s* const handle = board->getBoardHandle();
    if (!handle)
        return model;
    state.runtime = reference::requireRuntime();
    state.board = board;
    state.boardIndex = board->getIndex();
    state.boardSerial = board->getSerial();
    state.handle = handle;
    state.registerAll();
    return model;
}

boost::signals2::connection FgLibEventsModel::connectEvent(const EventSignal::slot_type& slot)
{
    probe("FgLibEventsModel::connectEvent");
    const Unrecorded own;
    auto connection = m_state->delivery->signal.connect(slot);
    m_state->activate();
    return connection;
}

} // namespace ovra::core::models

boost::signals2::connection
ovra::reference::BoardEvents::connect(const boost::shared_ptr<core::models::FgLibEventsModel>& events,
                                      const boost::function<void(const BoardEvent&)>& slot)
{
    const auto& state = *events->m_state;
    return events->connectEvent([slot, board = state.boardIndex, serial = state.boardSerial](
                                    const std::string& name, std::uint64_t timestampNs, std::int64_t frame) {
        slot({board, serial, name, timestampNs, frame});
    });
}
