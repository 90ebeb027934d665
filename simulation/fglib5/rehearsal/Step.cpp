// SPDX-License-Identifier: MIT
#include "rehearsal/Step.h"

#include "CallGate.h"
#include "rehearsal/Words.h"

#include <array>
#include <set>
#include <string_view>
#include <utility>

namespace simulation {

namespace {

constexpr std::uint64_t MAX_DELAY_MS = 3'600'000;
constexpr std::uint64_t MAX_THREADS = 64;

std::string entryOf(Words& words)
{
    const auto name = words.take("an entry of the runtime or *");
    if (!CallGate::isEntry(name))
        throw Failure(FG_INVALID_ARGUMENT, "The runtime has no entry '" + std::string(name) + "'");
    return std::string(name);
}

unsigned int boardOf(Words& words)
{
    return words.number("a board", 0U, Step::MAX_INDEX);
}

unsigned int portOf(Words& words)
{
    return words.number("a port", 0U, Step::MAX_INDEX);
}

// A fault's options may come in any order.
void readFault(Words& words, Step& step)
{
    step.entry = entryOf(words);
    step.code = FG_INIT_ERROR;
    std::set<std::string_view> taken;
    while (!words.atEnd()) {
        const auto option = words.take("an option");
        if (!taken.insert(option == "once" ? "always" : option).second)
            throw Failure(FG_INVALID_ARGUMENT,
                          "'" + std::string(option) + "' repeats or contradicts an option before it");
        if (option == "board")
            step.board = boardOf(words);
        else if (option == "nth")
            step.nth = words.number("a number of calls from 1", std::uint64_t{1});
        else if (option == "code")
            step.code = words.number("a code below 0", std::numeric_limits<int>::min(), -1);
        else if (option == "always" || option == "once")
            step.always = option == "always";
        else
            Words::refuse(option, "board, nth, code, once or always");
    }
}

void readDelay(Words& words, Step& step)
{
    step.entry = entryOf(words);
    step.number = words.number("milliseconds, an hour at most", std::uint64_t{0}, MAX_DELAY_MS);
    if (words.takeIf("board"))
        step.board = boardOf(words);
}

void readCalls(Words& words, Step& step)
{
    step.entry = words.atEnd() || words.peek() == "board" ? "*" : entryOf(words);
    if (words.takeIf("board"))
        step.board = boardOf(words);
}

void readPart(Words& words, Step& step)
{
    const auto part = words.take("board, camera or link");
    step.board = boardOf(words);
    if (part == "board")
        return;
    step.part = part == "camera" ? Step::Part::Camera : Step::Part::Link;
    if (part != "camera" && part != "link")
        Words::refuse(part, "board, camera or link");
    step.port = portOf(words);
}

void readLoosen(Words& words, Step& step)
{
    step.board = boardOf(words);
    step.port = portOf(words);
    step.number = words.number<std::uint64_t>("a number N, one image in which suffers");
    if (step.number == 0)
        return;
    const auto damage = words.take("lost, torn or late");
    if (damage == "torn")
        step.damage = Step::Damage::Torn;
    else if (damage == "late")
        step.damage = Step::Damage::Late;
    else if (damage != "lost")
        Words::refuse(damage, "lost, torn or late");
    step.seeded = words.takeIf("seed");
    if (step.seeded)
        step.seed = words.number<std::uint64_t>("a seed");
}

void readBusy(Words& words, Step& step)
{
    step.number = words.number("0 to 64 threads", std::uint64_t{0}, MAX_THREADS);
}

void readMemory(Words& words, Step& step)
{
    step.free = words.takeIf("free");
    if (!step.free)
        step.number = words.number<std::uint64_t>("a number of bytes, or free");
}

void readDisk(Words& words, Step& step)
{
    const auto state = words.take("full or free");
    step.free = state == "free";
    if (!step.free && state != "full")
        Words::refuse(state, "full or free");
}

// A file's name may contain blanks.
void readScenarioName(Words& words, Step& step)
{
    step.entry = words.takeRest();
}

void readNothing(Words&, Step&) {}

struct Form
{
    const char* word;
    Step::Action action;
    void (*read)(Words&, Step&);
};

constexpr std::array FORMS = {
    Form{"fault", Step::Action::Fault, readFault},
    Form{"delay", Step::Action::Delay, readDelay},
    Form{"calls", Step::Action::Calls, readCalls},
    Form{"faults", Step::Action::Faults, readNothing},
    Form{"forget", Step::Action::Forget, readNothing},
    Form{"unplug", Step::Action::Unplug, readPart},
    Form{"plug", Step::Action::Plug, readPart},
    Form{"loosen", Step::Action::Loosen, readLoosen},
    Form{"busy", Step::Action::Busy, readBusy},
    Form{"image-memory", Step::Action::Memory, readMemory},
    Form{"disk", Step::Action::Disk, readDisk},
    Form{"scenario", Step::Action::Scenario, readScenarioName},
};

} // namespace

Step readStep(std::string_view line)
{
    Words words(line);
    const auto verb = words.take("a step");
    for (const auto& form : FORMS) {
        if (verb != form.word)
            continue;
        Step step;
        step.action = form.action;
        form.read(words, step);
        words.expectEnd();
        return step;
    }
    throw Failure(FG_INVALID_ARGUMENT, "There is no step '" + std::string(verb) + "'");
}

std::string partText(Step::Part part, unsigned int board, unsigned int port)
{
    if (part == Step::Part::Board)
        return "board " + std::to_string(board);
    return (part == Step::Part::Camera ? "camera " : "link ") + std::to_string(board) + ' ' +
           std::to_string(port);
}

const char* damageText(Step::Damage damage)
{
    constexpr std::array TEXTS = {"lost", "torn", "late"};
    return TEXTS[static_cast<std::size_t>(damage)];
}

} // namespace simulation
