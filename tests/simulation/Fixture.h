// SPDX-License-Identifier: MIT
/// \file
/// The simulated runtime, opened at run time like a client does, and a temporary folder for each test.
#pragma once

#include "fglib5/CameraControl.h"
#include "fglib5/Fglib5.h"
#include "simulation/fglib5/SimulationControl.h"
#include "tests/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace simulation::tests {

/// All functions of the runtime by their names.
struct RuntimeFunctions
{
    RuntimeFunctions();

#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) result(*name) parameters;
#include "fglib5/Fglib5Entries.inc"
#define FGCAM_ENTRY(result, name, parameters, arguments) name##_t* name;
#include "fglib5/CameraControl.inc"
#define FGSIM_ENTRY(result, name, parameters, arguments) name##_t* name;
#include "simulation/fglib5/SimulationControl.inc"
};

/// A symbol of a library, which stays open; null if it has none.
void* symbolOf(const char* library, const char* name);

/// One board of type 7 with a camera of 40 x 30 pixels at 200 images a second on port 0 and one of 32 x 8,
/// unpaced, on port 1; a second board of type 8 without cameras.
extern const char* const SMALL_MACHINE;

/// An applet for the first board: two processes with the DMA channels 0 and 1 (40 x 30, with a generator), 4
/// (no generator).
extern const char* const SMALL_APPLET;

class SimulationTest : public testing::Test
{
protected:
    SimulationTest();
    ~SimulationTest() override;

    /// Writes a file into the test's folder and returns its path.
    std::string write(const std::string& name, const std::string& content) const
    {
        return m_folder.write(name, content).string();
    }
    std::string path(const std::string& name) const { return m_folder.path(name).string(); }
    static std::string read(const std::string& file);

    int useMachine(const std::string& content) const;
    /// Loads an applet with \p content on board 0; freed at the end of the test.
    Fg_Struct* open(const std::string& content = SMALL_APPLET);
    void free(Fg_Struct*& grabber);
    std::string lastLine() const { return runtime.Fg_getLastErrorDescription(nullptr); }

    const RuntimeFunctions& runtime;

private:
    const TemporaryFolder m_folder;
    std::vector<Fg_Struct*> m_open;
};

/// A description with one error, and the message of its refusal.
struct Broken
{
    const char* from;
    const char* to;
    const char* expected;
};

/// Replaces the only occurrence of \p from.
std::string with(std::string text, const std::string& from, const std::string& to);

} // namespace simulation::tests
