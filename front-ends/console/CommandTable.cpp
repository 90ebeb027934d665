// SPDX-License-Identifier: MIT
#include "CommandTable.h"

#include "Arguments.h"
#include "Console.h"

#include "front-ends/shared/RequestError.h"

#include <algorithm>

namespace ovra::console {

using namespace frontend;

namespace {

std::vector<ConsoleCommand> allCommands()
{
    std::vector<ConsoleCommand> all;
    for (const auto& topic : {resourceCommands(), appletCommands(), configurationCommands(),
                              channelCommands(), cameraCommands(), acquisitionCommands(), imageCommands(),
                              statisticsCommands(), rehearsalCommands(), sessionCommands()})
        all.insert(all.end(), topic.begin(), topic.end());
    return all;
}

} // namespace

const std::vector<ConsoleCommand>& commandTable()
{
    static const std::vector<ConsoleCommand> TABLE = allCommands();
    return TABLE;
}

std::string usageOf(const ConsoleCommand& command)
{
    const std::string arguments = command.arguments;
    return command.name + (arguments.empty() ? "" : " " + arguments);
}

const ConsoleCommand& findCommand(const std::string& name)
{
    const auto& table = commandTable();
    const auto found =
        std::find_if(table.begin(), table.end(), [&](const auto& command) { return name == command.name; });
    if (found == table.end())
        throw RequestError("unknown command '" + name + "'; help lists the commands");
    return *found;
}

void runCommand(Console& console, const std::vector<std::string>& words)
{
    const ConsoleCommand& command = findCommand(words.front());
    const Arguments arguments({words.begin() + 1, words.end()});
    if (arguments.count() < command.minArguments || arguments.count() > command.maxArguments)
        throw RequestError("usage: " + usageOf(command));
    if (arguments.count() >= command.changesFrom)
        console.requireIdle();
    command.run(console, arguments);
}

} // namespace ovra::console
