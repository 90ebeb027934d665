// SPDX-License-Identifier: MIT
#include "rehearsal/Rehearsal.h"

#include "CallGate.h"
#include "Failure.h"
#include "hardware/Runtime.h"
#include "hardware/Shortage.h"
#include "rehearsal/Player.h"

#include "fglib5/PathText.h"

#include <algorithm>

namespace simulation {

namespace {

constexpr std::uint64_t MICROSECONDS_PER_MILLISECOND = 1000;

void planFault(const Step& step)
{
    if (step.board)
        Runtime::instance().place(*step.board);
    CallGate::instance().addFault({step.entry, step.board, step.nth, step.code, step.always});
}

void planDelay(const Step& step)
{
    if (step.board)
        Runtime::instance().place(*step.board);
    CallGate::instance().setDelay(step.entry, step.board,
                                  static_cast<std::uint32_t>(step.number * MICROSECONDS_PER_MILLISECOND));
}

std::string callsText(const Step& step)
{
    if (step.board)
        Runtime::instance().place(*step.board);
    const auto& gate = CallGate::instance();
    if (step.entry != "*")
        return step.entry + ' ' + std::to_string(gate.calls(step.entry, step.board)) + '\n';
    std::string lines;
    for (std::size_t i = 0; i < static_cast<std::size_t>(Entry::Count); ++i) {
        const char* const name = CallGate::nameOf(static_cast<Entry>(i));
        if (const auto calls = gate.calls(name, step.board); calls > 0)
            lines += std::string(name) + ' ' + std::to_string(calls) + '\n';
    }
    return lines;
}

// Of a step that has to name a board, which its reader has seen to.
std::shared_ptr<Board> boardOf(const Step& step)
{
    return Runtime::instance().place(step.board.value_or(0));
}

void unplug(Board& board, const Step& step)
{
    if (step.part == Step::Part::Board)
        board.unplug();
    else if (step.part == Step::Part::Camera)
        board.unplugCamera(step.port);
    else
        board.unplugLink(step.port);
}

void plug(Board& board, const Step& step)
{
    if (step.part == Step::Part::Board)
        board.plug();
    else if (step.part == Step::Part::Camera)
        board.plugCamera(step.port);
    else
        board.plugLink(step.port);
}

void loosen(Board& board, const Step& step)
{
    if (step.number == 0)
        return board.setLooseLink(step.port, nullptr);
    const auto damage = static_cast<LooseLink::Damage>(step.damage);
    board.setLooseLink(step.port,
                       std::make_shared<const LooseLink>(LooseLink{damage, step.number, step.seed}));
}

// A name without a folder that is not a file in the current folder means a scenario of the installation.
std::filesystem::path scenarioFile(const std::string& name)
{
    auto file = fglib5::pathOf(name);
    std::error_code ignored;
    if (file.has_parent_path() || std::filesystem::exists(file, ignored))
        return file;
    auto shipped = Runtime::installation() / "simulation" / "scenarios" / file;
    shipped += ".scenario";
    return std::filesystem::exists(shipped, ignored) ? shipped : file;
}

std::string controlScenario(const std::string& name)
{
    auto& player = Player::instance();
    if (name.empty())
        return player.report();
    if (name == "stop") {
        player.stop();
        return {};
    }
    player.play(readScenarioFile(scenarioFile(name)));
    return {};
}

// All faults and shortages, as the steps that caused them.
std::string plansText()
{
    auto lines = CallGate::instance().plans();
    auto& runtime = Runtime::instance();
    for (unsigned int index = 0; index < runtime.boardCount(); ++index) {
        const auto cables = runtime.place(index)->cables();
        if (!cables.there)
            lines.push_back("unplug " + partText(Step::Part::Board, index, 0));
        for (const auto port : cables.camerasGone)
            lines.push_back("unplug " + partText(Step::Part::Camera, index, port));
        for (const auto port : cables.linksDown)
            lines.push_back("unplug " + partText(Step::Part::Link, index, port));
        for (const auto& [port, link] : cables.loose)
            lines.push_back("loosen " + std::to_string(index) + ' ' + std::to_string(port) + ' ' +
                            std::to_string(link->oneIn) + ' ' +
                            damageText(static_cast<Step::Damage>(link->damage)) + " seed " +
                            std::to_string(link->seed));
    }
    if (const auto bytes = Shortage::s_imageMemory.load(); bytes != Shortage::PLENTY)
        lines.push_back("image-memory " + std::to_string(bytes));
    if (Shortage::s_diskFull)
        lines.emplace_back("disk full");
    std::string text;
    for (const auto& line : lines)
        text += line + '\n';
    return text;
}

} // namespace

Rehearsal& Rehearsal::instance()
{
    static auto* rehearsal = new Rehearsal;
    return *rehearsal;
}

std::string Rehearsal::perform(const Step& step)
{
    switch (step.action) {
    case Step::Action::Fault:
        planFault(step);
        break;
    case Step::Action::Delay:
        planDelay(step);
        break;
    case Step::Action::Calls:
        return callsText(step);
    case Step::Action::Faults:
        return plansText() + busyText();
    case Step::Action::Forget:
        CallGate::instance().clearPlans();
        break;
    case Step::Action::Unplug:
        unplug(*boardOf(step), step);
        break;
    case Step::Action::Plug:
        plug(*boardOf(step), step);
        break;
    case Step::Action::Loosen:
        loosen(*boardOf(step), step);
        break;
    case Step::Action::Busy:
        keepBusy(step.number);
        break;
    case Step::Action::Memory:
        Shortage::s_imageMemory =
            step.free ? Shortage::PLENTY
                      : static_cast<std::int64_t>(std::min<std::uint64_t>(step.number, Shortage::PLENTY));
        break;
    case Step::Action::Disk:
        Shortage::s_diskFull = !step.free;
        break;
    case Step::Action::Scenario:
        return controlScenario(step.entry);
    }
    return {};
}

std::string Rehearsal::busyText()
{
    const std::lock_guard lock(m_mutex);
    return m_busy.empty() ? "" : "busy " + std::to_string(m_busy.size()) + '\n';
}

void Rehearsal::keepBusy(std::uint64_t threads)
{
    const std::lock_guard lock(m_mutex);
    m_busyEnds = true;
    for (auto& thread : m_busy)
        thread.join();
    m_busy.clear();
    m_busyEnds = false;
    for (std::uint64_t i = 0; i < threads; ++i)
        m_busy.emplace_back([this] {
            while (!m_busyEnds) {
            }
        });
}

} // namespace simulation
