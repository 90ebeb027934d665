// SPDX-License-Identifier: MIT
#include "Failure.h"

#include "fglib5/Fglib5Types.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace simulation {

namespace {

// Without a destructor: one would keep the module loaded until the thread ends.
struct LastError
{
    int number;
    std::array<char, 1024> text;
};

constinit thread_local LastError lastError{};

} // namespace

const char* descriptionOf(int code) noexcept
{
    switch (code) {
    case FG_OK:
        return "No error";
    case FG_INIT_ERROR:
        return "The board could not be initialised";
    case FG_ALREADY_INITIALISED:
        return "The board carries an applet already";
    case FG_APPLET_NOT_FOUND:
        return "There is no applet file under this path";
    case FG_INVALID_APPLET_FILE:
        return "The applet file is broken";
    case FG_INVALID_ARGUMENT:
        return "An argument is missing or makes no sense";
    case FG_INVALID_HANDLE:
        return "This is not a board handle";
    case FG_INVALID_BOARD_NUMBER:
        return "There is no board with this index";
    case FG_INVALID_PARAMETER:
        return "Unknown parameter";
    case FG_VALUE_OUT_OF_RANGE:
        return "The value is outside the parameter's range";
    case FG_INVALID_TYPE:
        return "The value's type does not fit the parameter";
    case FG_NOT_WRITABLE:
        return "The parameter cannot be written now";
    case FG_INVALID_DMA:
        return "There is no such DMA channel";
    case FG_NO_MEMORY:
        return "The memory could not be allocated";
    case FG_INVALID_MEMORY:
        return "There is no such buffer or ring";
    case FG_ACQUISITION_RUNNING:
        return "This is not possible while images are acquired";
    case FG_NOT_ACQUIRING:
        return "No images are being acquired";
    case FG_TIMEOUT:
        return "Nothing arrived in time";
    case FG_FILE_ERROR:
        return "The file could not be read or written";
    case FG_INVALID_CONFIGURATION:
        return "The configuration file does not fit the applet";
    case FG_MACHINE_DESCRIPTION:
        return "The machine description is missing or broken";
    case FG_APPLET_BOARD_MISMATCH:
        return "The applet is made for another board model";
    case FG_DEVICE_LOST:
        return "The board is not there any more";
    case FG_NOT_SIMULATED:
        return "A virtual installation has no behaviour for this";
    case FG_RUNTIME_UNAVAILABLE:
        return "The runtime or one of its entries is missing";
    default:
        return nullptr;
    }
}

int lastErrorNumber() noexcept
{
    return lastError.number;
}

const char* lastErrorDescription() noexcept
{
    return lastError.text.data();
}

void setLastError(int code, const char* line) noexcept
{
    const auto length = std::min(std::strlen(line), lastError.text.size() - 1);
    lastError.number = code;
    std::memcpy(lastError.text.data(), line, length);
    lastError.text[length] = '\0';
}

} // namespace simulation
