// SPDX-License-Identifier: MIT
#include "hardware/Runtime.h"

#include "CallGate.h"
#include "Failure.h"
#include "Platform.h"

#include "fglib5/PathText.h"

#include <algorithm>
#include <cstdlib>

namespace simulation {

Runtime& Runtime::instance()
{
    // Never destroyed: acquisition threads of boards that were not freed run until the process ends.
    static auto* runtime = new Runtime;
    return *runtime;
}

const std::filesystem::path& Runtime::installation()
{
    static const auto* folder = new std::filesystem::path(platform::ownModule().parent_path().parent_path());
    return *folder;
}

void Runtime::load()
{
    const std::lock_guard lock(m_loading);
    loadLocked();
}

void Runtime::unload()
{
    const std::lock_guard lock(m_loading);
    if (!inUse())
        m_machine.reset();
}

void Runtime::setMachineFile(std::optional<std::filesystem::path> file)
{
    const std::lock_guard lock(m_loading);
    m_machineFile = std::move(file);
}

std::filesystem::path Runtime::machineFile() const
{
    if (m_machineFile)
        return *m_machineFile;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): set before the runtime is opened
    const char* file = std::getenv("OVRA_MACHINE");
    if (file != nullptr && *file != '\0')
        return fglib5::pathOf(file);
    return installation() / "simulation" / "default-machine.json";
}

void Runtime::loadLocked()
{
    if (m_machine && inUse())
        return;
    Stamp stamp{.file = machineFile(), .time = {}, .size = 0};
    std::error_code ignored; // reading reports a missing file
    stamp.time = std::filesystem::last_write_time(stamp.file, ignored);
    stamp.size = std::filesystem::file_size(stamp.file, ignored);
    if (m_machine && m_machine->stamp == stamp)
        return;
    m_machine.reset();
    m_machine = build(stamp);
    auto& gate = CallGate::instance();
    gate.clearPlansOf(CallGate::Origin::Machine);
    for (const auto& fault : m_machine->description.faults)
        gate.addFault({fault.entry, {}, std::max<std::uint64_t>(fault.nth, 1), fault.code, fault.nth == 0},
                      CallGate::Origin::Machine);
    for (const auto& delay : m_machine->description.delays)
        gate.setDelay(delay.entry, {}, delay.microseconds, CallGate::Origin::Machine);
}

std::shared_ptr<const Runtime::Machine> Runtime::build(const Stamp& stamp)
{
    auto machine = std::make_shared<Machine>();
    machine->description = readMachineDescription(stamp.file);
    machine->stamp = stamp;
    for (const auto& board : machine->description.boards)
        machine->boards.push_back(
            std::make_shared<Board>(board, static_cast<unsigned int>(machine->boards.size())));
    for (const auto& camera : machine->description.cameras)
        machine->boards[camera.board]->plugIn(camera);
    return machine;
}

bool Runtime::inUse() const
{
    return m_machine &&
           std::ranges::any_of(m_machine->boards, [](const auto& board) { return board->occupied(); });
}

std::shared_ptr<const Runtime::Machine> Runtime::machine()
{
    const std::lock_guard lock(m_loading);
    if (!m_machine)
        loadLocked();
    return m_machine;
}

std::string Runtime::machineName()
{
    return machine()->description.name;
}

unsigned int Runtime::boardCount()
{
    return static_cast<unsigned int>(machine()->boards.size());
}

std::shared_ptr<Board> Runtime::board(unsigned int index)
{
    auto found = place(index);
    found->requireThere();
    return found;
}

std::shared_ptr<Board> Runtime::place(unsigned int index)
{
    const auto present = machine();
    if (index >= present->boards.size())
        throw Failure(FG_INVALID_BOARD_NUMBER, "The machine has no board " + std::to_string(index));
    return present->boards[index];
}

const char* Runtime::modelOfType(int boardType)
{
    const auto present = machine();
    for (const auto& board : present->description.boards)
        if (board.boardType == boardType)
            return kept(board.model);
    return nullptr;
}

Fg_Struct* Runtime::open(const std::filesystem::path& file, unsigned int index)
{
    const auto place = board(index);
    const auto& hardware = place->description();
    auto applet = readApplet(file);
    if (applet.legacy)
        askLegacyChannels(applet);
    if (applet.boardType && *applet.boardType != hardware.boardType)
        throw Failure(FG_APPLET_BOARD_MISMATCH, "applet file " + file.string() + ": made for board type " +
                                                    std::to_string(*applet.boardType) + ", the board is a '" +
                                                    hardware.model + "' of type " +
                                                    std::to_string(hardware.boardType));
    const auto grabber = std::make_shared<Grabber>(std::move(applet), hardware.model, hardware.serial);
    // Drawn now, so that the first image of an acquisition does not wait for it.
    place->drawAhead();
    place->occupy(grabber);
    const std::lock_guard lock(m_handles);
    m_open.emplace(grabber->handle(), OpenBoard{grabber, place});
    return grabber->handle();
}

void Runtime::close(Fg_Struct* handle)
{
    const auto closing = held(handle);
    // Throws on a thread of the board itself; then the handle stays valid.
    closing->close();
    std::shared_ptr<Board> place;
    {
        const std::lock_guard lock(m_handles);
        const auto found = m_open.find(handle);
        if (found == m_open.end())
            throw Failure(FG_INVALID_HANDLE, "The board was freed by another thread");
        place = found->second.board;
        m_open.erase(found);
    }
    place->vacate(*closing);
    closing->requireThere();
}

std::shared_ptr<Grabber> Runtime::grabber(Fg_Struct* handle) const
{
    auto found = held(handle);
    found->requireThere();
    return found;
}

int Runtime::indexOf(Fg_Struct* handle) const
{
    const std::shared_lock lock(m_handles);
    const auto found = m_open.find(handle);
    return found == m_open.end() ? -1 : static_cast<int>(found->second.board->index());
}

std::shared_ptr<Grabber> Runtime::held(Fg_Struct* handle) const
{
    const std::shared_lock lock(m_handles);
    const auto found = m_open.find(handle);
    if (found == m_open.end())
        throw Failure(FG_INVALID_HANDLE, "This is not the handle of a board");
    return found->second.grabber;
}

std::int64_t Runtime::handles() const
{
    const std::shared_lock lock(m_handles);
    return static_cast<std::int64_t>(m_open.size());
}

const char* Runtime::kept(const std::string& text)
{
    const std::lock_guard lock(m_loading);
    auto& copy = m_kept[text];
    if (!copy)
        copy = std::make_unique<std::string>(text);
    return copy->c_str();
}

} // namespace simulation
