/// \file
/// What the conformance tests need of a host beyond the interface that the library uses.
///
///   HostUnderTest   makes this process an application of the host, and gives access to what hosts have in
///                   ways of their own
///   Channel         a DMA channel that receives images
///
/// A host author derives one class. Only the first three operations are pure: tests that need one of the
/// others are skipped, with the reason, where the host does not override it.
#pragma once

#include <boost/shared_ptr.hpp>

#include <functional>
#include <memory>
#include <string>

struct Fg_Struct_s;

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::display {
class DisplaySceneVisualizer;
}

namespace ovra::conformance {

/// An initialised board with an applet. The destructor gives the handle back to the runtime.
class Channel
{
public:
    virtual ~Channel() = default;

    /// The runtime's handle of the board, as HlEnvironmentBoardNode::setBoardHandle() takes it. Not null.
    virtual Fg_Struct_s* handle() const = 0;
    /// Index of the board. One camera at least is plugged into it.
    virtual int board() const = 0;
    /// Index of a DMA channel of the applet. Images arrive there, at least two a second and without end,
    /// whenever its acquisition runs.
    virtual unsigned int dma() const = 0;
};

/// One object exists in a process, for one test. All operations are called on the thread that made it, which
/// is the host's GUI thread. Exceptions end the test as failed.
class HostUnderTest
{
public:
    virtual ~HostUnderTest() = default;

    /// Name of the host, for the report. Called before startApplication() and without it.
    virtual std::string name() const = 0;

    /// Makes this process an application of the host: its libraries are started, and HarloApplication has a
    /// command processor. Called once.
    virtual void startApplication() = 0;

    /// Runs the work that is queued for the GUI thread, and returns without waiting for more.
    virtual void processEvents() = 0;

    /// Initialises the first board with an applet that has a DMA channel. Called at most once, after
    /// startApplication().
    virtual std::unique_ptr<Channel> openChannel();

    /// Has \p observer called with the new handle each time a view would be told that the handle of \p board
    /// has changed. For the rest of the process.
    virtual void observeHandle(const boost::shared_ptr<core::models::HlEnvironmentBoardNode>& board,
                               std::function<void(Fg_Struct_s*)> observer);

    /// A visualizer that calls \p showImage, on any thread, for each image that it is to show.
    virtual std::unique_ptr<display::DisplaySceneVisualizer> makeVisualizer(std::function<void()> showImage);

    /// Writes a message of the level "information" to the host's log. Any thread.
    virtual void logMessage(const std::string& text);

    /// Starts of the host library \p name, such as "ovra-core", that were not taken back.
    virtual int libraryUses(const std::string& name);
};

} // namespace ovra::conformance
