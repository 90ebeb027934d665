// SPDX-License-Identifier: MIT
// Errors, boards and versions.

#include "entries/Answers.h"
#include "entries/Entries.h"

#include <array>
#include <charconv>

namespace simulation::entries {

namespace {

std::string hexadecimal(std::uint32_t number)
{
    std::array<char, 8> digits{};
    auto* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
    return {digits.data(), end};
}

std::string information(int selector, unsigned int argument)
{
    auto& runtime = Runtime::instance();
    switch (selector) {
    case FG_INFO_NR_OF_BOARDS:
        return std::to_string(runtime.boardCount());
    case FG_INFO_BOARD_SERIAL:
        return hexadecimal(runtime.board(argument)->description().serial);
    case FG_INFO_NR_OF_PORTS:
        return std::to_string(runtime.board(argument)->description().ports);
    case FG_INFO_MACHINE_NAME:
        return runtime.machineName();
    default:
        throw Failure(FG_INVALID_ARGUMENT, "There is no system information " + std::to_string(selector));
    }
}

} // namespace

// Returns the calling thread's last error, whatever the handle.
int Fg_getLastErrorNumber(Fg_Struct*)
{
    return lastErrorNumber();
}

int getLastErrorNumber()
{
    return lastErrorNumber();
}

const char* Fg_getLastErrorDescription(Fg_Struct*)
{
    return lastErrorDescription();
}

const char* Fg_getErrorDescription(Fg_Struct*, int code)
{
    return descriptionOf(code);
}

const char* getErrorDescription(int code)
{
    return descriptionOf(code);
}

int Fg_getBoardType(int board)
{
    if (board < 0)
        throw Failure(FG_INVALID_BOARD_NUMBER, "Boards are counted from 0");
    return Runtime::instance().board(static_cast<unsigned int>(board))->description().boardType;
}

const char* Fg_getBoardNameByType(int boardType)
{
    const auto* model = Runtime::instance().modelOfType(boardType);
    if (model == nullptr)
        throw Failure(FG_INVALID_ARGUMENT, "No board has the type " + std::to_string(boardType));
    return model;
}

unsigned int Fg_getSerialNumber(Fg_Struct* grabber)
{
    return grabberOf(grabber)->serial();
}

const char* Fg_getSWVersion()
{
    return OVRA_SIMULATION_VERSION;
}

const char* Fg_getAppletId(Fg_Struct* grabber)
{
    return grabberOf(grabber)->applet().name.c_str();
}

int Fg_getSystemInformation(Fg_Struct*, int selector, unsigned int argument, char* text,
                            std::size_t* textBytes)
{
    copyTextOut(information(selector, argument), text, textBytes);
    return FG_OK;
}

} // namespace simulation::entries
