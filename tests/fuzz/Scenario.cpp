// SPDX-License-Identifier: MIT
// Fuzzer for scenario files. Each is either refused in one line that names file and line, or gives steps
// within their limits whose texts read again as the same steps.

#include "Require.h"

#include "Failure.h"
#include "rehearsal/Scenario.h"

#include <algorithm>

using namespace simulation;

namespace {

void requireOneLine(const std::string& text)
{
    require(std::ranges::none_of(text, [](unsigned char letter) { return letter < ' '; }), "one line");
}

void requireRefusal(const Failure& failure, std::string_view content)
{
    const std::string text = failure.what(), start = "scenario x: line ";
    require(text.starts_with(start), "a refusal that names the file");
    requireOneLine(text);
    const auto line = std::strtoull(text.c_str() + start.size(), nullptr, 10);
    require(line <= static_cast<std::size_t>(std::ranges::count(content, '\n')) + 1, "a line of the file");
}

void requireSense(const TimedStep& timed)
{
    requireOneLine(timed.text);
    require(timed.time.count() >= 0 && timed.time <= std::chrono::hours(24), "a time up to a day");
    require(timed.moment != TimedStep::Moment::Image || timed.image >= 1, "an image from 1");
    require(timed.step.code <= 0 && timed.step.nth >= 1, "a code that fails, a call from 1");
    require(timed.step.port <= Step::MAX_INDEX && timed.step.board.value_or(0) <= Step::MAX_INDEX, "indexes");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string content(data, data + size);
    Scenario scenario;
    try {
        scenario = readScenario("x", content);
    } catch (const Failure& failure) {
        requireRefusal(failure, content);
        return 0;
    }
    require(!scenario.steps.empty(), "a step");
    std::string again;
    for (const auto& timed : scenario.steps) {
        requireSense(timed);
        again += timed.text + '\n';
    }
    const auto second = readScenario("x", again);
    require(second.steps.size() == scenario.steps.size(), "as many steps");
    for (std::size_t i = 0; i < second.steps.size(); ++i) {
        require(second.steps[i].text == scenario.steps[i].text, "the same texts");
        require(second.steps[i].step.number == scenario.steps[i].step.number, "the same numbers");
    }
    return 0;
}
