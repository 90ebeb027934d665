/// \file
/// ImageStreams: which images one client gets, and when.
#pragma once

#include "images/Channels.h"
#include "images/ImageMessage.h"
#include "server/Message.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ovra::viewer {

/// One image is under way for each channel that the client shows: the next is made when the last one was both
/// written and acknowledged, and it is then the newest there is. For one thread at a time.
class ImageStreams
{
public:
    explicit ImageStreams(const Channels& channels) : m_channels(channels) {}

    /// Changes what is shown. The newest image is sent again where it looks different; where only other
    /// values of it are wanted, they are sent alone.
    void show(const ShowView& view);
    void hide(std::uint32_t channel);
    void acknowledge(std::uint32_t channel);
    void written(std::uint32_t channel);

    struct Outgoing
    {
        // Each of them may be missing. The image is sent last, and is valid until written() for this channel.
        std::string values;
        std::shared_ptr<const std::string> histogram;
        const std::vector<std::uint8_t>* image = nullptr;
    };
    Outgoing next(std::uint32_t channel);

private:
    struct Stream
    {
        ShowView view;
        bool shown = false;
        bool awaitsAcknowledgement = false;
        bool awaitsWriting = false;
        bool valuesWanted = false; ///< those of the newest image, at once
        std::uint64_t lastSequence = 0;
        std::uint64_t lastHistogram = 0;
        std::vector<std::uint8_t> message;
    };

    const Channels& m_channels;
    std::map<std::uint32_t, Stream> m_streams;
};

} // namespace ovra::viewer
