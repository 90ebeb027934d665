// SPDX-License-Identifier: MIT
#include "CallGate.h"
#include "descriptions/AppletList.h"
#include "entries/Answers.h"
#include "entries/Entries.h"
#include "rehearsal/Rehearsal.h"

#include "fglib5/PathText.h"

namespace simulation::entries {

namespace {

std::string_view entryOr(const char* entry)
{
    return entry == nullptr ? std::string_view() : entry;
}

} // namespace

int FgSim_setMachine(const char* path)
{
    if (path == nullptr)
        Runtime::instance().setMachineFile({});
    else
        Runtime::instance().setMachineFile(fglib5::pathOf(path));
    return FG_OK;
}

int FgSim_addFault(const char* entry, std::uint64_t nth, int code)
{
    CallGate::instance().addFault({.entry = std::string(entryOr(entry)),
                                   .board = {},
                                   .nth = std::max<std::uint64_t>(nth, 1),
                                   .code = code,
                                   .always = nth == 0});
    return FG_OK;
}

int FgSim_clearFaults()
{
    CallGate::instance().clearFaults();
    return FG_OK;
}

int FgSim_setDelay(const char* entry, std::uint32_t microseconds)
{
    CallGate::instance().setDelay(entryOr(entry), {}, microseconds);
    return FG_OK;
}

std::int64_t FgSim_callCount(const char* entry)
{
    return CallGate::instance().calls(entryOr(entry));
}

std::int64_t FgSim_totalCalls()
{
    return CallGate::instance().totalCalls();
}

int FgSim_resetCounts()
{
    CallGate::instance().resetCounts();
    return FG_OK;
}

std::int64_t FgSim_live(int kind)
{
    switch (kind) {
    case FGSIM_BOARD_HANDLES:
        return Runtime::instance().handles();
    case FGSIM_RINGS:
        return BufferRing::liveRings();
    case FGSIM_RING_BYTES:
        return BufferRing::liveBytes();
    case FGSIM_ACQUIRING_CHANNELS:
        return DmaChannel::acquiringChannels();
    case FGSIM_APPLET_ITERATORS:
        return AppletList::live();
    default:
        throw Failure(FG_INVALID_ARGUMENT, "There is nothing to count under " + std::to_string(kind));
    }
}

int FgSim_setJournal(int on)
{
    CallGate::instance().setJournal(on != 0);
    return FG_OK;
}

int FgSim_setListener(void (*listener)(const char* line))
{
    CallGate::instance().setListener(listener);
    return FG_OK;
}

int FgSim_getJournal(char* text, std::size_t* textBytes)
{
    copyTextOut(CallGate::instance().journal(), text, textBytes);
    return FG_OK;
}

int FgSim_raiseEvent(unsigned int board, const char* event)
{
    const auto grabber = Runtime::instance().board(board)->grabber();
    if (!grabber)
        throw Failure(FG_INVALID_ARGUMENT, "The board carries no applet");
    const auto mask = grabber->events().maskOf(checkedArgument(event, "event"));
    if (mask == 0)
        throw Failure(FG_INVALID_ARGUMENT, std::string("There is no event ") + event);
    grabber->events().raise(mask, 0);
    return FG_OK;
}

int FgSim_perform(const char* step, char* answer, std::size_t answerBytes)
{
    const auto text = Rehearsal::instance().perform(readStep(checkedArgument(step, "step")));
    if (answer == nullptr || answerBytes == 0)
        return FG_OK;
    const auto bytes = std::min(text.size(), answerBytes - 1);
    std::memcpy(answer, text.data(), bytes);
    answer[bytes] = '\0';
    return FG_OK;
}

} // namespace simulation::entries
