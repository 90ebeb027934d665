/// \file
/// How acquisitions stand, for front ends: why one ended, and how much of it there was.
///
///   AcquisitionState     the states of an acquisition
///   AcquisitionStatus    a state with its reason, its board and its channel
///   AcquisitionFigures   counters since the start and since the board's start, rates of the last second
///   AcquisitionObserver  asks a display scene for both, and tells when its acquisition ends by itself
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
    Running,           ///< images are taken as they come
    WaitingForTrigger, ///< started; the next image waits for a trigger
    NoSignal,          ///< started; nothing sends images: no camera, or one that is not started
    CountReached,      ///< ended: all images that were asked for have arrived
    TimedOut,          ///< ended: no image came within the channel's timeout
    DeviceLost,        ///< ended: the board is not there any more
    Failed,            ///< ended by any other failure
};

/// "running", "waiting for trigger", "stopped", "count reached", "timed out", "no signal", "device lost",
/// "failed".
OVRA_DISPLAY_API const char* textOf(AcquisitionState state);

struct AcquisitionStatus
{
    AcquisitionState state = AcquisitionState::Stopped;
    int board = -1; ///< index of the board, -1 where it is not known
    int dma = -1;   ///< index of the DMA channel, -1 without a channel
    /// Why it ended, one line that names board and channel; "" while it has not ended by itself.
    std::string reason;
};

/// Never fall during the time that they count.
struct AcquisitionCounters
{
    std::int64_t received = 0; ///< images that arrived, shown or not
    std::int64_t shown = 0;    ///< images handed to the visualizer
    std::int64_t skipped = 0;  ///< images that a newer one overtook
    std::int64_t lost = 0;     ///< images that the source sent and the channel could not take
};

struct AcquisitionFigures
{
    AcquisitionCounters sinceStart; ///< since the last start of the acquisition
    /// Since the board's applet was loaded: all acquisitions of the scene, the present one included.
    AcquisitionCounters sinceBoardStart;
    double imagesPerSecond = 0; ///< over the last second; 0 once none has arrived for a second
    double bytesPerSecond = 0;
    double newestAgeSeconds = -1; ///< since the newest image of the last start arrived; negative without one
};

class OVRA_DISPLAY_API AcquisitionObserver
{
public:
    using Signal = boost::signals2::signal<void(const AcquisitionStatus&)>;

    /// Calls \p slot when the scene's acquisition ends by itself, not when a client stops it. On the scene's
    /// own thread, when isGrabbing() is false already. The slot may ask for status and figures. It must not
    /// wait for a thread that may start or stop the scene, such as the GUI thread, and its own attempt to do
    /// so is refused with std::logic_error. What it throws is logged. It may still be running when the
    /// connection has just been cut: track what it uses.
    static boost::signals2::connection connect(const boost::shared_ptr<display::DisplayScene>& scene,
                                               const Signal::slot_type& slot);

    /// Any thread; may wait for a start or stop of the channel that is under way.
    static AcquisitionStatus status(const display::DisplayScene& scene);
    static AcquisitionFigures figures(const display::DisplayScene& scene);
};

} // namespace ovra::reference
