// SPDX-License-Identifier: MIT
#include "server/ImageStreams.h"

#include "server/StateDocument.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace ovra::viewer {

namespace {

constexpr std::size_t MAX_STREAMS = 64;

/// The samples from one end of a line to the other, one for each pixel along its longer side.
nlohmann::json samplesAlong(const Frame& frame, const std::array<int, 4>& line)
{
    constexpr int MAX_SAMPLES = 1024;
    const int dx = line[2] - line[0];
    const int dy = line[3] - line[1];
    const int steps = std::clamp(std::max(std::abs(dx), std::abs(dy)), 1, MAX_SAMPLES - 1);
    auto samples = nlohmann::json::array();
    for (int i = 0; i <= steps; ++i) {
        const double share = static_cast<double>(i) / steps;
        samples.push_back(pixelAt(frame, static_cast<int>(std::lround(line[0] + share * dx)),
                                  static_cast<int>(std::lround(line[1] + share * dy))));
    }
    return samples;
}

bool looksLike(const ShowView& left, const ShowView& right)
{
    return left.region == right.region && left.screenWidth == right.screenWidth &&
           left.screenHeight == right.screenHeight;
}

std::string valuesMessage(const ShowView& view, const Frame& frame)
{
    if (!view.pixel && !view.line)
        return {};
    nlohmann::json message = {{"type", "values"}, {"channel", view.channel}, {"image", frame.number}};
    if (view.pixel) {
        message["at"] = *view.pixel;
        message["pixel"] = pixelAt(frame, (*view.pixel)[0], (*view.pixel)[1]);
    }
    if (view.line) {
        message["ends"] = *view.line;
        message["line"] = samplesAlong(frame, *view.line);
    }
    return jsonText(message);
}

/// Null if the client already has it.
std::shared_ptr<const std::string> newHistogram(ImageFeed& channel, const Frame& frame, std::uint64_t& last)
{
    std::uint64_t sequence = 0;
    const auto message = channel.histogramMessage(frame, sequence);
    return std::exchange(last, sequence) == sequence ? nullptr : message;
}

} // namespace

void ImageStreams::show(const ShowView& view)
{
    if (m_streams.size() >= MAX_STREAMS && !m_streams.contains(view.channel))
        std::erase_if(m_streams,
                      [](const auto& entry) { return !entry.second.shown && !entry.second.awaitsWriting; });
    if (m_streams.size() >= MAX_STREAMS && !m_streams.contains(view.channel))
        return;
    Stream& stream = m_streams[view.channel];
    const bool looksEqual = stream.shown && looksLike(stream.view, view);
    stream.view = view;
    stream.shown = true;
    stream.valuesWanted = true;
    if (!looksEqual)
        stream.lastSequence = 0;
}

void ImageStreams::hide(std::uint32_t channel)
{
    const auto found = m_streams.find(channel);
    if (found == m_streams.end())
        return;
    found->second.shown = false;
    found->second.awaitsAcknowledgement = false; // it will not be drawn
}

void ImageStreams::acknowledge(std::uint32_t channel)
{
    const auto found = m_streams.find(channel);
    if (found != m_streams.end())
        found->second.awaitsAcknowledgement = false;
}

void ImageStreams::written(std::uint32_t channel)
{
    const auto found = m_streams.find(channel);
    if (found == m_streams.end())
        return;
    found->second.awaitsWriting = false;
    found->second.message.release();
}

ImageStreams::Outgoing ImageStreams::next(std::uint32_t id)
{
    const auto found = m_streams.find(id);
    if (found == m_streams.end() || !found->second.shown)
        return {};
    Stream& stream = found->second;
    const auto channel = m_channels.find(id);
    const auto frame = channel ? channel->mailbox().newest() : nullptr;
    if (!frame)
        return {};
    const bool imageWanted =
        !stream.awaitsAcknowledgement && !stream.awaitsWriting && frame->sequence != stream.lastSequence;

    Outgoing outgoing;
    if (imageWanted || stream.valuesWanted)
        outgoing.values = valuesMessage(stream.view, *frame);
    stream.valuesWanted = false;
    if (!imageWanted)
        return outgoing;

    const ShowView& wanted = stream.view;
    const ImageView view =
        fitView(wanted.region, wanted.screenWidth, wanted.screenHeight, frame->width, frame->height);
    stream.message.write(id, wanted.view, frame, view);
    stream.lastSequence = frame->sequence;
    stream.awaitsAcknowledgement = true;
    stream.awaitsWriting = true;
    outgoing.image = &stream.message;
    if (wanted.histogram)
        outgoing.histogram = newHistogram(*channel, *frame, stream.lastHistogram);
    return outgoing;
}

} // namespace ovra::viewer
