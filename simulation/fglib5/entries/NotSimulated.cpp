// SPDX-License-Identifier: MIT
// Entries that are not simulated. They return FG_NOT_SIMULATED, and the error text names the entry.

#include "Failure.h"
#include "entries/Entries.h"

namespace simulation::entries {

namespace {

[[noreturn]] void notSimulated(const char* entry)
{
    throw Failure(FG_NOT_SIMULATED, std::string(entry) + " has no behaviour in a virtual installation");
}

} // namespace

void Fg_InitLibrariesStartNextSlave()
{
    notSimulated("Fg_InitLibrariesStartNextSlave");
}

void Fg_AbortInitLibraries()
{
    notSimulated("Fg_AbortInitLibraries");
}

Fg_Struct* Fg_InitTrampoline(const char*, unsigned int, const char*)
{
    notSimulated("Fg_InitTrampoline");
}

void* Fg_NumaAllocDmaBuffer(Fg_Struct*, std::size_t)
{
    notSimulated("Fg_NumaAllocDmaBuffer");
}

int Fg_NumaFreeDmaBuffer(Fg_Struct*, void*)
{
    notSimulated("Fg_NumaFreeDmaBuffer");
}

int Fg_NumaPinThread(Fg_Struct*)
{
    notSimulated("Fg_NumaPinThread");
}

int Fg_getParameterInfoXML(Fg_Struct*, int, char*, std::size_t*)
{
    notSimulated("Fg_getParameterInfoXML");
}

int Fg_saveFieldParameterToFile(Fg_Struct*, int, unsigned int, const char*)
{
    notSimulated("Fg_saveFieldParameterToFile");
}

int Fg_loadFieldParameterFromFile(Fg_Struct*, int, unsigned int, const char*)
{
    notSimulated("Fg_loadFieldParameterFromFile");
}

int Fg_sendImage(Fg_Struct*, FgFrameIndex, FgFrameIndex, unsigned int)
{
    notSimulated("Fg_sendImage");
}

int Fg_sendImageEx(Fg_Struct*, FgFrameIndex, FgFrameIndex, unsigned int, FgBufferRing*)
{
    notSimulated("Fg_sendImageEx");
}

int Fg_readUserDataArea(Fg_Struct*, unsigned int, unsigned int, void*, std::size_t)
{
    notSimulated("Fg_readUserDataArea");
}

int Fg_writeUserDataArea(Fg_Struct*, unsigned int, unsigned int, const void*, std::size_t)
{
    notSimulated("Fg_writeUserDataArea");
}

int Fg_setStatus(Fg_Struct*, int, FgFrameIndex, unsigned int)
{
    notSimulated("Fg_setStatus");
}

int Fg_setStatusEx(Fg_Struct*, int, FgFrameIndex, unsigned int, FgBufferRing*)
{
    notSimulated("Fg_setStatusEx");
}

int Fg_getEventPayload(Fg_Struct*, std::uint64_t, void*, std::size_t*)
{
    notSimulated("Fg_getEventPayload");
}

int Fg_setExsync(Fg_Struct*, int, unsigned int)
{
    notSimulated("Fg_setExsync");
}

int Fg_setFlash(Fg_Struct*, int, unsigned int)
{
    notSimulated("Fg_setFlash");
}

int Fg_AllocShading(Fg_Struct*, int, unsigned int)
{
    notSimulated("Fg_AllocShading");
}

int Fg_FreeShading(Fg_Struct*, unsigned int)
{
    notSimulated("Fg_FreeShading");
}

FgShadingMaster* Shad_GetAccess(Fg_Struct*, unsigned int)
{
    notSimulated("Shad_GetAccess");
}

int Shad_FreeAccess(Fg_Struct*, FgShadingMaster*)
{
    notSimulated("Shad_FreeAccess");
}

int Shad_GetMaxLine(Fg_Struct*, FgShadingMaster*)
{
    notSimulated("Shad_GetMaxLine");
}

int Shad_SetSubValueLine(FgShadingMaster*, int, int, double)
{
    notSimulated("Shad_SetSubValueLine");
}

int Shad_SetMultValueLine(FgShadingMaster*, int, int, double)
{
    notSimulated("Shad_SetMultValueLine");
}

int Shad_SetFixedPatternNoiseLine(FgShadingMaster*, int, int)
{
    notSimulated("Shad_SetFixedPatternNoiseLine");
}

int Shad_WriteActLine(Fg_Struct*, FgShadingMaster*, int)
{
    notSimulated("Shad_WriteActLine");
}

} // namespace simulation::entries
