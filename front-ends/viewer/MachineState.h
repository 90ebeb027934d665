// SPDX-License-Identifier: MIT
/// \file
/// The sections of the state document that describe the machine: boards and what is on them, applet files,
/// statistics.
///
/// GUI thread.
#pragma once

#include <nlohmann/json.hpp>

namespace ovra::frontend {
class EventCounter;
}

namespace ovra::viewer {

class ChannelImages;

nlohmann::json describeBoards(const ChannelImages& images);
nlohmann::json describeApplets();
nlohmann::json describeMemory();
nlohmann::json describeSettings();

nlohmann::json describeEvents(const frontend::EventCounter& events);
/// By channel number: counters, and why the image is old if it is.
nlohmann::json describeStatistics(const ChannelImages& images);

} // namespace ovra::viewer
