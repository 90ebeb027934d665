// SPDX-License-Identifier: MIT
#include "Console.h"

#include "Interrupts.h"
#include "Printer.h"

#include "front-ends/shared/Paths.h"
#include "front-ends/shared/RequestError.h"
#include "front-ends/shared/SessionOptions.h"

#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"

#include <system_error>

namespace ovra::console {

using namespace frontend;

namespace {

constexpr std::chrono::seconds MAX_COMMAND_TIME{60};

} // namespace

void Console::run(const boost::shared_ptr<core::Command>& command)
{
    requireIdle();
    core::HarloApplication::commandprocessor()->executeCommand(command);
    const auto idle = [this] { return application.idle(); };
    const bool ended =
        application.pumpUntil([&] { return idle() || interrupts.commandEnds(); }, MAX_COMMAND_TIME);
    if (!ended)
        throw RequestError("the application is still busy after 60 seconds");
    if (!idle())
        throw RequestError("interrupted; what the command began goes on");
}

void Console::requireIdle() const
{
    if (!application.idle())
        throw RequestError("an earlier command is still under way; try again when it has ended");
}

std::filesystem::path Console::outputFile(const std::string& name) const
{
    const auto file = pathOf(options.outputFolder) / pathOf(name);
    const auto folder = file.parent_path();
    std::error_code error;
    if (folder.empty() || std::filesystem::is_directory(folder, error))
        return file;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw RequestError("cannot make the folder " + textOf(folder) + ": " + error.message());
    printer.line("Made the folder " + textOf(folder) + ".");
    return file;
}

std::filesystem::path Console::inputFile(const std::string& name) const
{
    std::error_code none; // ignored: a file that cannot be accessed counts as missing
    for (const auto& file : {pathOf(options.outputFolder) / pathOf(name), pathOf(name)})
        if (std::filesystem::exists(file, none))
            return file;
    throw RequestError("there is no file " + name);
}

bool Console::waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    const bool holds = application.pumpUntil([&] { return interrupts.commandEnds() || condition(); }, limit);
    if (interrupts.commandEnds())
        throw RequestError("interrupted");
    return holds;
}

} // namespace ovra::console
