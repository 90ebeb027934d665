/// \file
/// DisplayScene: takes images out of a frame-buffer group and hands them to a visualizer.
#pragma once

#include "ovra-lib-display/Export.h"
#include "ovra-lib-display/FrameBufferGroup.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <memory>

namespace ovra::reference {
class AcquisitionObserver;
}

namespace ovra::display {

/// Shows images. Implemented by a front end, owned by it, and taken off every scene before it is destroyed.
class OVRA_DISPLAY_API DisplaySceneVisualizer
{
public:
    virtual ~DisplaySceneVisualizer();

    /// Called on the scene's own thread. Images that arrive during a call are skipped but for the newest.
    /// Must not stop the scene or change its visualizer.
    virtual void showImage(const Image& image) = 0;
};

/// Counts since the last start.
struct DisplayStatistics
{
    std::int64_t received = 0; ///< number of the newest image seen
    std::int64_t shown = 0;    ///< images handed to the visualizer
    std::int64_t skipped = 0;  ///< images that a newer one overtook
    double seconds = 0;        ///< from the start to the newest image
};

/// Safe from any thread.
class OVRA_DISPLAY_API DisplayScene
{
public:
    static boost::shared_ptr<DisplayScene> create();
    ~DisplayScene();
    DisplayScene(const DisplayScene&) = delete;
    DisplayScene& operator=(const DisplayScene&) = delete;

    /// The images come from the group at position 0.
    void addFrameBufferGroup(int position, const boost::shared_ptr<FrameBufferGroup>& group);
    void removeFrameBufferGroup(int position);

    /// Null takes the visualizer off; when the call returns, it is not being called any more.
    void setVisualizer(DisplaySceneVisualizer* visualizer);

    /// Starts to take \p images images, without end when negative. A scene that grabs is started anew.
    /// Without a group nothing happens. Throws std::runtime_error when the group cannot start.
    void startGrabbing(int images);
    /// When it returns, the acquisition has ended and no image is handed on.
    void stopGrabbing();
    bool isGrabbing() const;

    /// Size of the images of the group, in pixels; 0 without one.
    int width() const;
    int height() const;

    DisplayStatistics statistics() const;

private:
    friend class reference::AcquisitionObserver;

    DisplayScene();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::display
