// SPDX-License-Identifier: MIT
/// \file
/// ImageStreams: which images one client gets, and when.
#pragma once

#include "images/ImageFeeds.h"
#include "images/ImageMessage.h"
#include "server/Message.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace ovra::viewer {

/// At most one image per shown channel is in flight. When it has been written and acknowledged, the newest
/// image follows. Not thread-safe.
class ImageStreams
{
public:
    explicit ImageStreams(const ImageFeeds& channels) : m_channels(channels) {}

    /// Changes the view. Sends the newest image again if it looks different; otherwise only the values that
    /// were asked for.
    void show(const ShowView& view);
    void hide(std::uint32_t channel);
    void acknowledge(std::uint32_t channel);
    void written(std::uint32_t channel);

    struct Outgoing
    {
        // Each may be missing. The image is sent last, and is valid until written() is called for the
        // channel.
        std::string values;
        std::shared_ptr<const std::string> histogram;
        const ImageMessage* image = nullptr;
    };
    Outgoing next(std::uint32_t channel);

private:
    struct Stream
    {
        ShowView view;
        bool shown = false;
        bool awaitsAcknowledgement = false;
        bool awaitsWriting = false;
        bool valuesWanted = false; ///< send the newest image's values now
        std::uint64_t lastSequence = 0;
        std::uint64_t lastHistogram = 0;
        ImageMessage message;
    };

    const ImageFeeds& m_channels;
    std::map<std::uint32_t, Stream> m_streams;
};

} // namespace ovra::viewer
