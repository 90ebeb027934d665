/// \file
/// The sections of the state document that describe the machine: boards and what is on them, applet files,
/// statistics.
///
/// GUI thread.
#pragma once

#include <nlohmann/json.hpp>

namespace ovra::viewer {

class ChannelImages;

nlohmann::json describeBoards(const ChannelImages& images);
nlohmann::json describeApplets();
nlohmann::json describeMemory();
nlohmann::json describeSettings();

/// The counters of all channels, by the number of the channel, and why an image is not a new one.
nlohmann::json describeStatistics(const ChannelImages& images);

} // namespace ovra::viewer
