// SPDX-License-Identifier: MIT
/// \file
/// The state of acquisitions, for front ends: running or why it ended, counters and rates.
///
///   AcquisitionState     the states of an acquisition
///   AcquisitionStatus    a state with its reason, its board and its channel
///   AcquisitionFigures   counters since the start and since the applet was loaded, rates of the last second
///   AcquisitionObserver  reads both from a display scene, and signals when its acquisition ends by itself
#pragma once

#include "ovra-lib-display/Export.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/signal.hpp>

#include <cstdint>
#include <string>

namespace ovra::display {
class DisplayScene;
}

namespace ovra::reference {

enum class AcquisitionState : int
{
    Stopped,           ///< never started, or ended by a client
    Running,           ///< images arrive
    WaitingForTrigger, ///< started; the next image waits for a trigger
    NoSignal,          ///< started; no source sends images: no camera, or a stopped one
    CountReached,      ///< ended: all requested images have arrived
    TimedOut,          ///< ended: no image came within the channel's timeout
    DeviceLost,        ///< ended: the board was unplugged
    Failed,            ///< ended by any other failure
};

/// "running", "waiting for trigger", "stopped", "count reached", "timed out", "no signal", "device lost",
/// "failed".
OVRA_DISPLAY_API const char* textOf(AcquisitionState state);

struct AcquisitionStatus
{
    AcquisitionState state = AcquisitionState::Stopped;
    int board = -1; ///< index of the board, -1: unknown
    int dma = -1;   ///< index of the DMA channel, -1: no channel
    /// Why it ended, in one line that names board and channel; "" unless it ended by itself.
    std::string reason;
};

/// Counters only grow until their starting point comes again.
struct AcquisitionCounters
{
    std::int64_t received = 0; ///< images that arrived, shown or not
    std::int64_t shown = 0;    ///< images passed to the visualizer
    std::int64_t skipped = 0;  ///< images that a newer one overtook
    std::int64_t lost = 0;     ///< images that the source sent and the channel could not take
};

struct AcquisitionFigures
{
    AcquisitionCounters sinceStart; ///< since the last start of the acquisition
    /// Since the board's applet was loaded: all acquisitions of the scene, including the current one.
    AcquisitionCounters sinceBoardStart;
    double imagesPerSecond = 0; ///< over the last second; 0 if none has arrived for a second
    double bytesPerSecond = 0;
    double newestAgeSeconds = -1; ///< age of the newest image since the last start; negative: no image yet
};

/// \code
/// const auto connection = reference::AcquisitionObserver::connect(
///     dma->getDisplayScene(), [&application](const reference::AcquisitionStatus& status) {
///         application.post([status] { std::cout << textOf(status.state) << ": " << status.reason << '\n';
///         });
///     });
/// \endcode
class OVRA_DISPLAY_API AcquisitionObserver
{
public:
    using Signal = boost::signals2::signal<void(const AcquisitionStatus&)>;

    /// Calls \p slot when the scene's acquisition ends by itself, not when a client stops it: on the scene's
    /// own thread, after isGrabbing() has become false.
    ///
    /// The slot may read status and figures. It must not wait for a thread that may start or stop the scene,
    /// such as the GUI thread; if it does so itself, startGrabbing and stopGrabbing throw std::logic_error.
    /// Exceptions from the slot are logged. The slot may still run after disconnect() has returned: let it
    /// track or share the objects that it uses.
    static boost::signals2::connection connect(const boost::shared_ptr<display::DisplayScene>& scene,
                                               const Signal::slot_type& slot);

    /// Any thread. May wait for a running start or stop of the channel.
    static AcquisitionStatus status(const display::DisplayScene& scene);
    static AcquisitionFigures figures(const display::DisplayScene& scene);
};

} // namespace ovra::reference
