#include "Console.h"

#include "Arguments.h"
#include "Interrupts.h"

#include "front-ends/shared/Paths.h"
#include "front-ends/shared/RequestError.h"

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
    core::HarloApplication::commandprocessor()->executeCommand(command);
    if (!application.pumpUntil([this] { return application.idle(); }, MAX_COMMAND_TIME))
        throw RequestError("the application is still busy after 60 seconds");
}

std::filesystem::path Console::outputFile(const std::string& name) const
{
    const auto file = outputFolder / pathOf(name);
    std::error_code ignored;
    if (file.has_parent_path())
        std::filesystem::create_directories(file.parent_path(), ignored);
    return file;
}

std::filesystem::path Console::inputFile(const std::string& name) const
{
    const auto stored = outputFolder / pathOf(name);
    std::error_code none; // a file that cannot be looked at is not meant
    return std::filesystem::exists(stored, none) ? stored : pathOf(name);
}

bool Console::waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    const bool holds = application.pumpUntil([&] { return interrupted() || condition(); }, limit);
    if (interrupted())
        throw RequestError("interrupted");
    return holds;
}

} // namespace ovra::console
