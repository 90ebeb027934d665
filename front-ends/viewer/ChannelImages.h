/// \file
/// ChannelImages: gives each DMA channel of the loaded boards a mailbox for its images.
#pragma once

#include "images/Channels.h"

#include "front-ends/shared/Lookup.h"

#include <boost/weak_ptr.hpp>

#include <map>
#include <memory>

namespace ovra::display {
class DisplayScene;
}

namespace ovra::viewer {

/// GUI thread.
class ChannelImages
{
public:
    explicit ChannelImages(Channels& channels) : m_channels(channels) {}
    ~ChannelImages();
    ChannelImages(const ChannelImages&) = delete;
    ChannelImages& operator=(const ChannelImages&) = delete;

    /// After each load: the board's channels are new.
    void attach(const frontend::BoardNode& board);
    /// Takes the mailboxes off boards without an applet.
    void dropUnloaded();
    void dropAll();

    /// Null for a channel that has none.
    std::shared_ptr<Channel> find(unsigned int serial, unsigned int dma) const;

private:
    struct Attached
    {
        boost::weak_ptr<display::DisplayScene> scene;
        std::shared_ptr<Channel> channel;
    };
    struct Board
    {
        boost::weak_ptr<core::models::HlEnvironmentBoardNode> node;
        std::map<unsigned int, Attached> dmas; ///< by index
    };

    void detach(Board& board);

    Channels& m_channels;
    std::map<unsigned int, Board> m_boards; ///< by serial
};

} // namespace ovra::viewer
