// SPDX-License-Identifier: MIT
/// \file
/// ChannelImages: gives each DMA channel of the loaded boards a mailbox for its images and a tap for
/// recordings.
#pragma once

#include "images/ImageFeeds.h"

#include "front-ends/shared/ImageTap.h"
#include "front-ends/shared/Lookup.h"

#include <boost/weak_ptr.hpp>

#include <map>
#include <memory>
#include <utility>

namespace ovra::viewer {

/// Receives the images of a channel's scene.
class ChannelVisualizer final : public display::DisplaySceneVisualizer
{
public:
    explicit ChannelVisualizer(std::shared_ptr<ImageFeed> channel) : m_channel(std::move(channel)) {}

    void showImage(const display::Image& image) override
    {
        m_channel->mailbox().showImage(image);
        m_tap.pass(image);
    }

    const std::shared_ptr<ImageFeed>& channel() const { return m_channel; }
    frontend::ImageTap& tap() { return m_tap; }

private:
    const std::shared_ptr<ImageFeed> m_channel;
    frontend::ImageTap m_tap;
};

/// GUI thread.
class ChannelImages
{
public:
    explicit ChannelImages(ImageFeeds& channels) : m_channels(channels) {}
    ~ChannelImages();
    ChannelImages(const ChannelImages&) = delete;
    ChannelImages& operator=(const ChannelImages&) = delete;

    /// Call after each load: the board's channels are new.
    void attach(const frontend::BoardNode& board);
    /// Removes the mailboxes of boards without an applet.
    void dropUnloaded();
    void dropAll();

    /// Null for a channel that has none.
    std::shared_ptr<ImageFeed> find(unsigned int serial, unsigned int dma) const;
    /// Null for a channel without images. It gets no more images after the board is unloaded.
    std::shared_ptr<ChannelVisualizer> findVisualizer(unsigned int serial, unsigned int dma) const;

private:
    struct Attached
    {
        boost::weak_ptr<display::DisplayScene> scene;
        std::shared_ptr<ChannelVisualizer> visualizer;
    };
    struct Board
    {
        boost::weak_ptr<core::models::HlEnvironmentBoardNode> node;
        std::map<unsigned int, Attached> dmas; ///< by index
    };

    void detach(Board& board);

    ImageFeeds& m_channels;
    std::map<unsigned int, Board> m_boards; ///< by serial
};

} // namespace ovra::viewer
