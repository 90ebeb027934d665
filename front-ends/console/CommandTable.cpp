#include "CommandTable.h"

#include "Arguments.h"

#include <algorithm>

namespace ovra::console {

namespace {

std::vector<CommandEntry> allCommands()
{
    std::vector<CommandEntry> all;
    for (const auto& topic : {resourceCommands(), appletCommands(), configurationCommands(),
                              channelCommands(), acquisitionCommands(), sessionCommands()})
        all.insert(all.end(), topic.begin(), topic.end());
    return all;
}

} // namespace

const std::vector<CommandEntry>& commandTable()
{
    static const std::vector<CommandEntry> table = allCommands();
    return table;
}

std::string usageOf(const CommandEntry& command)
{
    const std::string arguments = command.arguments;
    return command.name + (arguments.empty() ? "" : " " + arguments);
}

const CommandEntry& findCommand(const std::string& name)
{
    const auto& table = commandTable();
    const auto found =
        std::find_if(table.begin(), table.end(), [&](const auto& entry) { return name == entry.name; });
    if (found == table.end())
        throw CommandError("unknown command '" + name + "'; help lists the commands");
    return *found;
}

void runCommand(Console& console, const std::vector<std::string>& words)
{
    const CommandEntry& command = findCommand(words.front());
    const Arguments arguments({words.begin() + 1, words.end()});
    if (arguments.count() < command.fewest || arguments.count() > command.most)
        throw CommandError("usage: " + usageOf(command));
    command.run(console, arguments);
}

} // namespace ovra::console
