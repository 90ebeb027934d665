// SPDX-License-Identifier: MIT
// Libraries, boards and their configuration.
//
// Entries call each other by their exported names, like the parts of the real runtime.

#include "entries/Answers.h"
#include "entries/Entries.h"
#include "hardware/McfFiles.h"

#include "fglib5/PathText.h"

namespace simulation::entries {

int Fg_InitLibraries(const char*)
{
    Runtime::instance().load();
    return FG_OK;
}

int Fg_InitLibrariesEx(const char* options, unsigned int, const char*, unsigned int)
{
    return ::Fg_InitLibraries(options);
}

void Fg_FreeLibraries()
{
    Runtime::instance().unload();
}

Fg_Struct* Fg_Init(const char* appletFile, unsigned int board)
{
    return Runtime::instance().open(fglib5::pathOf(checkedArgument(appletFile, "appletFile")), board);
}

Fg_Struct* Fg_InitEx(const char* appletFile, unsigned int board, int flags)
{
    if (flags != 0)
        throw Failure(FG_NOT_SIMULATED, "Fg_InitEx is simulated without flags only");
    return ::Fg_Init(appletFile, board);
}

Fg_Struct* Fg_InitConfig(const char* configFile, unsigned int board)
{
    const auto model = Runtime::instance().board(board)->description().model;
    const auto applet = appletOfMcf(fglib5::pathOf(checkedArgument(configFile, "configFile")),
                                    Runtime::installation(), model);
    auto* grabber = ::Fg_Init(applet.string().c_str(), board);
    if (grabber == nullptr)
        failLikeInner();
    if (::Fg_loadConfig(grabber, configFile) == FG_OK)
        return grabber;
    const Failure reason(lastErrorNumber(), lastErrorDescription());
    ::Fg_FreeGrabber(grabber);
    throw reason;
}

Fg_Struct* Fg_InitConfigEx(const char* configFile, unsigned int board, int flags)
{
    if (flags != 0)
        throw Failure(FG_NOT_SIMULATED, "Fg_InitConfigEx is simulated without flags only");
    return ::Fg_InitConfig(configFile, board);
}

int Fg_InitHandle(Fg_Struct** grabber, const char* appletFile, unsigned int board)
{
    *checkedArgument(grabber, "grabber") = ::Fg_Init(appletFile, board);
    return *grabber == nullptr ? lastErrorNumber() : FG_OK;
}

int Fg_InitHandleSlaveAware(Fg_Struct** grabber, const char* appletFile, unsigned int board, int slave)
{
    if (slave != 0)
        throw Failure(FG_NOT_SIMULATED, "Slave boards are not simulated");
    return ::Fg_InitHandle(grabber, appletFile, board);
}

int Fg_FreeGrabber(Fg_Struct* grabber)
{
    Runtime::instance().close(grabber);
    return FG_OK;
}

int Fg_saveConfig(Fg_Struct* grabber, const char* file)
{
    saveMcf(*grabberOf(grabber), fglib5::pathOf(checkedArgument(file, "file")));
    return FG_OK;
}

int Fg_loadConfig(Fg_Struct* grabber, const char* file)
{
    loadMcf(*grabberOf(grabber), fglib5::pathOf(checkedArgument(file, "file")));
    return FG_OK;
}

} // namespace simulation::entries
