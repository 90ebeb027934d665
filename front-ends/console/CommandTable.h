// SPDX-License-Identifier: MIT
/// \file
/// ConsoleCommand: a command of the console; the table of all commands.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ovra::console {

class Arguments;
struct Console;

/// Any number of arguments; more than a command can have.
inline constexpr std::size_t ANY_NUMBER = static_cast<std::size_t>(-1);

struct ConsoleCommand
{
    const char* name;
    const char* arguments; ///< as shown in the help: CAPITALS stand for values, [] for optional arguments
    const char* help;
    std::size_t minArguments; ///< number of arguments
    std::size_t maxArguments;
    void (*run)(Console&, const Arguments&); ///< throws RequestError, or an exception of the host
    /// With so many arguments or more it changes boards, and is refused while an earlier command is running.
    std::size_t changesFrom = ANY_NUMBER;
};

/// Name and arguments, as shown in the help.
std::string usageOf(const ConsoleCommand& command);

// Each topic has its own source.
std::vector<ConsoleCommand> resourceCommands();
std::vector<ConsoleCommand> appletCommands();
std::vector<ConsoleCommand> configurationCommands();
std::vector<ConsoleCommand> channelCommands();
std::vector<ConsoleCommand> cameraCommands();
std::vector<ConsoleCommand> acquisitionCommands();
std::vector<ConsoleCommand> imageCommands();
std::vector<ConsoleCommand> statisticsCommands();
std::vector<ConsoleCommand> rehearsalCommands();
std::vector<ConsoleCommand> sessionCommands();

/// All commands, in the order of the help.
const std::vector<ConsoleCommand>& commandTable();

/// Throws RequestError if there is no such command.
const ConsoleCommand& findCommand(const std::string& name);

/// Executes a line. \p words begins with the command's name. Throws RequestError.
void runCommand(Console& console, const std::vector<std::string>& words);

} // namespace ovra::console
