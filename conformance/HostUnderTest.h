// SPDX-License-Identifier: MIT
/// \file
/// HostUnderTest: the functions of a host that the conformance tests need beyond the interface that the
/// library uses.
///
///   HostUnderTest      makes this process an application, and provides what each host does in its own way
///   ChannelUnderTest   a DMA channel that receives images
///
/// A host author derives one class from HostUnderTest. Only the first three operations are pure. If the host
/// does not override one of the others, the tests that need it are skipped, with the reason.
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

/// An initialised board with an applet. The destructor frees the handle.
class ChannelUnderTest
{
public:
    virtual ~ChannelUnderTest() = default;

    /// The runtime's handle of the board, for HlEnvironmentBoardNode::setBoardHandle(). Not null.
    virtual Fg_Struct_s* handle() const = 0;
    /// Index of the board. One camera at least is plugged into it.
    virtual int board() const = 0;
    /// Index of a DMA channel of the applet. While its acquisition runs, it must receive at least 20
    /// images a second, without end: some tests look on for LOOK_ON and expect that no image comes.
    virtual unsigned int dma() const = 0;
};

/// A process has one object, for one test. All operations are called on the thread that constructed it, the
/// host's GUI thread. An exception makes the test fail.
class HostUnderTest
{
public:
    virtual ~HostUnderTest() = default;

    /// Name of the host, for the report. Possibly called before startApplication(), or without it.
    virtual std::string name() const = 0;

    /// Makes this process an application of the host: starts the host's libraries, and makes HarloApplication
    /// return a command processor. Called once.
    virtual void startApplication() = 0;

    /// Runs the work that is queued for the GUI thread. Returns without waiting for more.
    virtual void processEvents() = 0;

    /// Initialises the first board with an applet that has a DMA channel. Called at most once, after
    /// startApplication().
    virtual std::unique_ptr<ChannelUnderTest> openChannel();

    /// Calls \p observer with the new handle each time the host would notify a view that the handle of \p
    /// board has changed, for the rest of the process.
    virtual void observeHandle(const boost::shared_ptr<core::models::HlEnvironmentBoardNode>& board,
                               std::function<void(Fg_Struct_s*)> observer);

    /// Returns a visualizer that calls \p showImage, on any thread, for each image that it shows.
    virtual std::unique_ptr<display::DisplaySceneVisualizer> makeVisualizer(std::function<void()> showImage);

    /// Writes a message of the level "information" to the host's log. Any thread.
    virtual void logMessage(const std::string& text);

    /// Number of starts minus number of shut-downs of the host library \p name, such as "ovra-core".
    virtual int libraryUses(const std::string& name);
};

} // namespace ovra::conformance
