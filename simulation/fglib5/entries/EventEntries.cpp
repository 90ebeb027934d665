// SPDX-License-Identifier: MIT
#include "entries/Answers.h"
#include "entries/Entries.h"
#include "hardware/Notifier.h"

namespace simulation::entries {

std::uint64_t Fg_getEventMask(Fg_Struct* grabber, const char* event)
{
    const auto owner = grabberOf(grabber);
    const auto mask = owner->events().maskOf(checkedArgument(event, "event"));
    if (mask == 0)
        throw Failure(FG_INVALID_ARGUMENT, std::string("There is no event ") + event);
    return mask;
}

const char* Fg_getEventName(Fg_Struct* grabber, std::uint64_t mask)
{
    const auto owner = grabberOf(grabber);
    const auto* name = owner->events().nameOf(mask);
    if (name == nullptr)
        throw Failure(FG_INVALID_ARGUMENT, "There is no event with the mask " + std::to_string(mask));
    return name;
}

int Fg_getEventCount(Fg_Struct* grabber)
{
    return grabberOf(grabber)->events().count();
}

int Fg_activateEvents(Fg_Struct* grabber, std::uint64_t mask, int enable)
{
    grabberOf(grabber)->events().activate(mask, enable != 0);
    return FG_OK;
}

int Fg_clearEvents(Fg_Struct* grabber, std::uint64_t mask)
{
    grabberOf(grabber)->events().clear(mask);
    return FG_OK;
}

std::uint64_t Fg_eventWait(Fg_Struct* grabber, std::uint64_t mask, unsigned int timeoutMs, int,
                           FgEventInfo* info)
{
    const auto owner = grabberOf(grabber);
    return owner->events().wait(mask, std::chrono::milliseconds(timeoutMs), info);
}

int Fg_registerEventCallback(Fg_Struct* grabber, std::uint64_t mask, FgEventCallback callback, void* userData,
                             int, FgEventInfo*)
{
    const auto owner = grabberOf(grabber);
    owner->events().setCallback(mask, callback, userData);
    return FG_OK;
}

// Notifies of all boards, whatever the handle: an unplugged board has none.
int Fg_registerAsyncNotifyCallback(Fg_Struct*, FgNotifyCallback callback, void* userData)
{
    Notifier::instance().add(callback, userData);
    return FG_OK;
}

int Fg_unregisterAsyncNotifyCallback(Fg_Struct*, FgNotifyCallback callback, void* userData)
{
    Notifier::instance().remove(callback, userData);
    return FG_OK;
}

} // namespace simulation::entries
