#include "Console.h"

#include "Arguments.h"

#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"

namespace ovra::console {

namespace {

constexpr std::chrono::seconds longestCommand{60};

} // namespace

void Console::run(const boost::shared_ptr<core::Command>& command)
{
    core::HarloApplication::commandprocessor()->executeCommand(command);
    if (!waitUntil([this] { return application.idle(); }, longestCommand))
        throw CommandError("the application is still busy after 60 seconds");
}

bool Console::waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    return application.pumpUntil(condition, limit);
}

} // namespace ovra::console
