// SPDX-License-Identifier: MIT
/// \file
/// Runtime: the state of the whole runtime: the machine, and the board handles that clients hold.
#pragma once

#include "descriptions/MachineDescription.h"
#include "hardware/Board.h"
#include "hardware/Grabber.h"

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>
#include <vector>

namespace simulation {

class Runtime
{
public:
    static Runtime& instance();

    /// The parent of this module's folder.
    static const std::filesystem::path& installation();

    /// Reads the machine description, unless it is unchanged since the last time or a board is in use. Throws
    /// FG_MACHINE_DESCRIPTION; then there is no machine.
    void load();
    /// Drops the machine, unless a board is in use.
    void unload();
    /// Sets the file that the next load reads; none: the default (environment variable, then installation).
    void setMachineFile(std::optional<std::filesystem::path> file);

    // These load the machine first if necessary, and throw like load.
    std::string machineName();
    unsigned int boardCount();
    /// Throws FG_INVALID_BOARD_NUMBER, and FG_DEVICE_LOST while the board is unplugged.
    std::shared_ptr<Board> board(unsigned int index);
    /// Like board, but also while the board is unplugged.
    std::shared_ptr<Board> place(unsigned int index);
    /// Null if no board has this type.
    const char* modelOfType(int boardType);

    Fg_Struct* open(const std::filesystem::path& applet, unsigned int board);
    /// Frees the handle. Throws FG_DEVICE_LOST, after that, if the board was unplugged.
    void close(Fg_Struct* handle);
    /// Throws FG_INVALID_HANDLE, and FG_DEVICE_LOST if the board was unplugged since the handle was created.
    std::shared_ptr<Grabber> grabber(Fg_Struct* handle) const;
    /// Like grabber, but also for a board that was unplugged, so that clients can release what they hold.
    std::shared_ptr<Grabber> held(Fg_Struct* handle) const;
    /// Index of the handle's board, -1 for any other pointer.
    int indexOf(Fg_Struct* handle) const;
    std::int64_t handles() const;

    /// A copy of \p text that is kept until the process ends.
    const char* kept(const std::string& text);

private:
    struct Stamp
    {
        std::filesystem::path file;
        std::filesystem::file_time_type time;
        std::uintmax_t size = 0;
        bool operator==(const Stamp&) const = default;
    };

    struct Machine
    {
        MachineDescription description;
        Stamp stamp;
        std::vector<std::shared_ptr<Board>> boards;
    };

    struct OpenBoard
    {
        std::shared_ptr<Grabber> grabber;
        std::shared_ptr<Board> board;
    };

    std::filesystem::path machineFile() const;
    std::shared_ptr<const Machine> machine();
    void loadLocked();
    static std::shared_ptr<const Machine> build(const Stamp& stamp);
    bool inUse() const;

    std::mutex m_loading; ///< guards m_machine, m_machineFile, m_kept
    std::optional<std::filesystem::path> m_machineFile;
    std::shared_ptr<const Machine> m_machine;
    std::map<std::string, std::unique_ptr<std::string>> m_kept;

    mutable std::shared_mutex m_handles; ///< guards m_open
    std::map<Fg_Struct*, OpenBoard> m_open;
};

} // namespace simulation
