/// \file
/// The commands a session understands.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ovra::console {

class Arguments;
struct Console;

struct CommandEntry
{
    const char* name;
    const char* arguments; ///< as the help shows them: CAPITALS stand for values, [] for what may be left out
    const char* help;
    std::size_t fewest; ///< number of arguments
    std::size_t most;
    void (*run)(Console&, const Arguments&); ///< throws CommandError, or what the host throws
};

/// Name and arguments, as the help shows them.
std::string usageOf(const CommandEntry& command);

/// Any number of arguments.
inline constexpr std::size_t anyNumber = static_cast<std::size_t>(-1);

// By topic, each in a source of its own.
std::vector<CommandEntry> resourceCommands();
std::vector<CommandEntry> appletCommands();
std::vector<CommandEntry> configurationCommands();
std::vector<CommandEntry> channelCommands();
std::vector<CommandEntry> acquisitionCommands();
std::vector<CommandEntry> sessionCommands();

/// All of them, in the order of the help.
const std::vector<CommandEntry>& commandTable();

/// Throws CommandError when there is no such command.
const CommandEntry& findCommand(const std::string& name);

/// Carries out a line. \p words begins with the command's name. Throws CommandError.
void runCommand(Console& console, const std::vector<std::string>& words);

} // namespace ovra::console
