// SPDX-License-Identifier: MIT
/// \file
/// DisplayScene: takes images (FrameBufferGroup.h) from a frame-buffer group and passes them to a visualizer.
/// A load creates one for each DMA channel; StartAcquisitionCommand and StopAcquisitionCommand start and stop
/// it.
///
/// \code
/// struct Screen : display::DisplaySceneVisualizer
/// {
///     void showImage(const display::Image& image) override; // on the scene's thread: copy and return
/// };
/// Screen screen;
/// const auto scene = dma->getDisplayScene();
/// scene->setVisualizer(&screen);
/// ...
/// scene->setVisualizer(nullptr); // before screen is destroyed
/// \endcode
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

/// Shows images. A front end implements and owns it, and removes it from every scene before destroying it.
class OVRA_DISPLAY_API DisplaySceneVisualizer
{
public:
    virtual ~DisplaySceneVisualizer();

    /// Called on the scene's own thread. Of the images that arrive during a call, only the newest is shown.
    /// Must not start or stop the scene or change its visualizer: these functions would wait for this call to
    /// return, so they throw std::logic_error here. An exception is logged, and the image counts as shown.
    ///
    /// \param image  valid during the call
    virtual void showImage(const Image& image) = 0;
};

/// Counters since the last start.
struct DisplayStatistics
{
    std::int64_t received = 0; ///< number of the newest image seen
    std::int64_t shown = 0;    ///< images passed to the visualizer
    std::int64_t skipped = 0;  ///< images that a newer one overtook
    double seconds = 0;        ///< from the start to the newest image
};

/// Runs a thread of its own while it grabs, that is between the start and the end of an acquisition. All
/// functions may be called from any thread.
class OVRA_DISPLAY_API DisplayScene
{
public:
    [[nodiscard]] static boost::shared_ptr<DisplayScene> create();
    ~DisplayScene();
    DisplayScene(const DisplayScene&) = delete;
    DisplayScene& operator=(const DisplayScene&) = delete;

    /// The scene takes images from the group at position 0. A change there ends a running acquisition.
    void addFrameBufferGroup(int position, const boost::shared_ptr<FrameBufferGroup>& group);
    void removeFrameBufferGroup(int position);

    /// Null removes the visualizer. Waits until a running showImage of the previous visualizer has returned:
    /// then the caller may destroy it. An unload does the same with null. The scene does not own the
    /// visualizer.
    void setVisualizer(DisplaySceneVisualizer* visualizer);

    /// Starts the acquisition; restarts it if it is running. Without a group it does nothing.
    ///
    /// \param images  number of images; negative: without end
    /// \throws std::runtime_error  if the group cannot start
    void startGrabbing(int images);
    /// When it returns, the acquisition has ended and the visualizer gets no more images.
    void stopGrabbing();
    /// False also after an acquisition has ended by itself.
    bool isGrabbing() const;

    /// Size of the group's images, in pixels; 0 without a group.
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
