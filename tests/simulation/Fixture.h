/// \file
/// The simulated runtime, opened at run time as its clients open it, and a throw-away folder for each test.
#pragma once

#include "fglib5/CameraControl.h"
#include "fglib5/Fglib5Types.h"
#include "simulation/fglib5/SimulationControl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace simulation::tests {

/// All functions of the runtime by their names.
struct Runtime
{
    Runtime();

#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) result(*name) parameters;
#include "fglib5/Fglib5Entries.inc"
#define OVRA_BESIDE(X)   \
    X(FgCam_getCount)    \
    X(FgCam_getPort)     \
    X(FgCam_getString)   \
    X(FgCam_getInteger)  \
    X(FgCam_setInteger)  \
    X(FgCam_start)       \
    X(FgCam_stop)        \
    X(FgSim_setMachine)  \
    X(FgSim_addFault)    \
    X(FgSim_clearFaults) \
    X(FgSim_setDelay)    \
    X(FgSim_callCount)   \
    X(FgSim_totalCalls)  \
    X(FgSim_resetCounts) \
    X(FgSim_live)        \
    X(FgSim_setJournal)  \
    X(FgSim_getJournal)  \
    X(FgSim_raiseEvent)
#define OVRA_MEMBER(name) name##_t* name;
    OVRA_BESIDE(OVRA_MEMBER)
#undef OVRA_MEMBER
};

/// A symbol of a library that stays open; null where it has none.
void* symbolOf(const char* library, const char* name);

/// One board of type 7 with a camera of 40 x 30 pixels at 200 images a second on port 0 and one of 32 x 8,
/// unpaced, on port 1; a second board of type 8 without cameras.
extern const char* const smallMachine;

/// An applet for the first board: two processes with the DMA channels 0 and 1 (40 x 30, with a generator), 4
/// (no generator).
extern const char* const smallApplet;

class SimulationTest : public testing::Test
{
protected:
    SimulationTest();
    ~SimulationTest() override;

    /// Writes a file into the test's folder and gives its path.
    std::string write(const std::string& name, const std::string& content) const;
    static std::string read(const std::string& file);
    std::string path(const std::string& name) const { return (folder_ / name).string(); }

    int useMachine(const std::string& content) const;
    /// \p content on board 0, freed with the test.
    Fg_Struct* open(const std::string& content = smallApplet);
    void free(Fg_Struct*& grabber);
    std::string lastLine() const { return runtime.Fg_getLastErrorDescription(nullptr); }

    const Runtime& runtime;

private:
    std::filesystem::path folder_;
    std::vector<Fg_Struct*> open_;
};

/// Names a case of a table after the line of its row.
template <class Row>
std::string rowName(const testing::TestParamInfo<Row>& info)
{
    return "Line" + std::to_string(info.param.line);
}

/// Replaces the one occurrence of \p from.
std::string with(std::string text, const std::string& from, const std::string& to);

} // namespace simulation::tests
