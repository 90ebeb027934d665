/// \file
/// FgLibEventsModel: the events of a board.
#pragma once

#include "ovra-lib-fglib-model/Export.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/signal.hpp>

#include <cstdint>
#include <memory>
#include <string>

namespace ovra::reference {
class BoardEvents;
}

namespace ovra::core::models {

class HlEnvironmentBoardNode;

/// Events arrive from the runtime while the model lives; it ends their delivery before it is destroyed.
class OVRA_FGLIB_MODEL_API FgLibEventsModel
{
public:
    /// Name of the event, time in nanoseconds since the board was initialised, number of the image that was
    /// running.
    using EventSignal =
        boost::signals2::signal<void(const std::string& name, std::uint64_t timestampNs, std::int64_t frame)>;

    static boost::shared_ptr<FgLibEventsModel> create(const boost::shared_ptr<HlEnvironmentBoardNode>& board);
    ~FgLibEventsModel();
    FgLibEventsModel(const FgLibEventsModel&) = delete;
    FgLibEventsModel& operator=(const FgLibEventsModel&) = delete;

    /// Calls \p slot on a thread of the runtime for each event.
    boost::signals2::connection connectEvent(const EventSignal::slot_type& slot);

private:
    friend class reference::BoardEvents;

    FgLibEventsModel();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::core::models
