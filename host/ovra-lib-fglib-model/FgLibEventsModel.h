// SPDX-License-Identifier: MIT
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

/// Delivers the events of one board from its creation to its destruction, that is while the applet is loaded.
/// No slot runs after the destructor has returned. The board owns the model; a front end gets it by
/// Views::connectFglibEvents and keeps the connection, or returns it to the board, but not the model: whoever
/// holds that keeps it from ending with the applet. The runtime raises events only once somebody has
/// connected.
///
/// \code
/// boost::shared_ptr<boost::signals2::scoped_connection>
/// connectFglibEvents(boost::shared_ptr<core::models::FgLibEventsModel> events) override
/// {
///     return boost::make_shared<boost::signals2::scoped_connection>(events->connectEvent(
///         [](const std::string& name, std::uint64_t, std::int64_t frame) { count(name, frame); }));
/// }
/// \endcode
class OVRA_FGLIB_MODEL_API FgLibEventsModel
{
public:
    /// Name of the event, time in nanoseconds since the board was initialised, number of the current image
    /// (0: none). The applet defines the names, such as "FG_START_OF_FRAME_DMA0".
    using EventSignal =
        boost::signals2::signal<void(const std::string& name, std::uint64_t timestampNs, std::int64_t frame)>;

    /// For a board with a handle; without one the model has no events. A load creates it. Never null.
    /// \throws std::runtime_error  if there is no runtime
    [[nodiscard]] static boost::shared_ptr<FgLibEventsModel>
    create(const boost::shared_ptr<HlEnvironmentBoardNode>& board);
    ~FgLibEventsModel();
    FgLibEventsModel(const FgLibEventsModel&) = delete;
    FgLibEventsModel& operator=(const FgLibEventsModel&) = delete;

    /// Calls \p slot for each event, on a thread of the runtime. The slot must be quick, because other events
    /// wait; it must not unload the board or wait for a thread that may. Its exceptions are logged. If the
    /// runtime refuses events, a warning is logged and none come. Any thread.
    boost::signals2::connection connectEvent(const EventSignal::slot_type& slot);

private:
    friend class reference::BoardEvents;

    FgLibEventsModel();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::core::models
