// SPDX-License-Identifier: MIT
// Commands that cause faults on a virtual installation: faults, cables, shortages, scenarios. Each command is
// a step in the syntax of scenario files; the runtime performs it.
#include "Arguments.h"
#include "CommandTable.h"
#include "Console.h"
#include "Printer.h"

#include "front-ends/shared/Rehearsal.h"
#include "front-ends/shared/RequestError.h"

#include <chrono>
#include <sstream>

namespace ovra::console {

using namespace frontend;

namespace {

constexpr std::chrono::seconds MAX_WAIT{60}; ///< longest wait for the end of a scenario

void perform(Console& console, const std::string& step)
{
    const std::string command = step.substr(0, step.find(' '));
    std::istringstream lines(rehearse(step));
    for (std::string line; std::getline(lines, line);)
        console.printer.result("rehearsal", {{"command", command}, {"text", line}}, line);
}

/// Each line of the answer is an entry and how often it was called.
void showCalls(Console& console, const Arguments& arguments)
{
    std::istringstream lines(rehearse("calls " + arguments.joined()));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string entry;
        std::int64_t count = 0;
        words >> entry >> count;
        console.printer.result("calls", {{"entry", entry}, {"count", count}}, line);
    }
}

void scenario(Console& console, const Arguments& arguments)
{
    if (arguments.count() == 0 || arguments.text(0) != "wait")
        return perform(console, "scenario " + arguments.joined());
    const auto over = [] { return rehearse("scenario").find("waits: ") == std::string::npos; };
    if (!console.waitUntil(over, MAX_WAIT))
        throw RequestError("the scenario is not over within " + std::to_string(MAX_WAIT.count()) +
                           " seconds");
    followHardware(console.application);
    perform(console, "scenario");
}

/// Performs a step that unplugs or plugs.
void pull(Console& console, const std::string& step)
{
    perform(console, step);
    followHardware(console.application);
}

/// Defines the function of a command whose step has the same name.
#define STEP(act, name) \
    [](Console& console, const Arguments& arguments) { act(console, name " " + arguments.joined()); }

} // namespace

std::vector<ConsoleCommand> rehearsalCommands()
{
    return {
        {"fault", "ENTRY [board B] [nth N] [code C] [once|always]",
         "makes a call of a runtime's entry fail, or of any entry (*); this and the commands up to scenario "
         "need a virtual installation",
         1, 8, STEP(perform, "fault")},
        {"delay", "ENTRY MS [board B]", "makes calls of an entry take longer; 0 ends that", 2, 4,
         STEP(perform, "delay")},
        {"calls", "[ENTRY] [board B]", "shows how often the runtime's entries were called", 0, 3, showCalls},
        {"faults", "", "shows the faults, delays, unplugged parts and shortages in effect", 0, 0,
         STEP(perform, "faults")},
        {"forget", "", "cancels planned faults and delays", 0, 0, STEP(perform, "forget")},
        {"unplug", "board B | camera B PORT | link B PORT",
         "unplugs a board, a camera, or only the cable of a camera port", 2, 3, STEP(pull, "unplug")},
        {"plug", "board B | camera B PORT | link B PORT",
         "plugs it in again; a board then has no applet, and a camera does not send", 2, 3,
         STEP(pull, "plug")},
        {"loosen", "BOARD PORT N lost|torn|late [seed S]",
         "loosens a camera's cable: one image in N is lost, torn or late; N 0 ends that", 3, 6,
         STEP(perform, "loosen")},
        {"busy", "THREADS", "keeps that many processors busy; 0 ends that", 1, 1, STEP(perform, "busy")},
        {"image-memory", "BYTES|free", "limits the memory that the runtime has for images", 1, 1,
         STEP(perform, "image-memory")},
        {"disk", "full|free", "simulates a full disk for files that the runtime stores; free ends that", 1, 1,
         STEP(perform, "disk")},
        {"scenario", "[FILE | wait | stop]",
         "plays the steps of a file at their images and times, waits until they are over, ends them, or "
         "shows how far they are; shipped: board-lost, camera-unplugged, loose-cable",
         0, 1, scenario},
    };
}

#undef STEP

} // namespace ovra::console
