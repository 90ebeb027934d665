// SPDX-License-Identifier: MIT
/// \file
/// BoardEvents: events together with their board, for front ends that show the events of several boards.
#pragma once

#include "ovra-lib-fglib-model/Export.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/signal.hpp>

#include <cstdint>
#include <string>

namespace ovra::core::models {
class FgLibEventsModel;
}

namespace ovra::reference {

/// An event and where it came from.
struct BoardEvent
{
    int board = -1;                ///< index of the board
    unsigned int serial = 0;       ///< its serial number
    std::string name;              ///< such as "FG_START_OF_FRAME_DMA0"
    std::uint64_t timestampNs = 0; ///< since the board was initialised
    std::int64_t frame = 0;        ///< number of the current image, 0: none
};

/// \code
/// // in Views::connectFglibEvents:
/// return boost::make_shared<boost::signals2::scoped_connection>(reference::BoardEvents::connect(
///     events, [](const reference::BoardEvent& event) { count(event.serial, event.name); }));
/// \endcode
class OVRA_FGLIB_MODEL_API BoardEvents
{
public:
    /// Calls \p slot for each event, on a thread of the runtime, until the connection is disconnected or the
    /// applet is unloaded. The slot must be quick, since no other slot gets an event until it returns. It
    /// must not unload the board or wait for a thread that may.
    static boost::signals2::connection
    connect(const boost::shared_ptr<core::models::FgLibEventsModel>& events,
            const boost::function<void(const BoardEvent&)>& slot);
};

} // namespace ovra::reference
