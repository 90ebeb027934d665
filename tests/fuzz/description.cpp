// Descriptions that people write by hand: whatever stands in the file, it is read, or refused in one line
// that names it.
//
// READ is the function that reads a file with the given ENDING and refuses it with status CODE.

#include "Applet.h"
#include "Failure.h"
#include "MachineDescription.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

namespace {

const std::filesystem::path& scratchFile()
{
    static const auto file =
        std::filesystem::temp_directory_path() / ("ovra-fuzz-" + std::to_string(getpid()) + ENDING);
    return file;
}

[[maybe_unused]] const bool removedAtTheEnd =
    std::atexit([] { std::filesystem::remove(scratchFile()); }) == 0;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::ofstream(scratchFile(), std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    try {
        simulation::READ(scratchFile());
    } catch (const simulation::Failure& failure) {
        const std::string line = failure.what();
        if (failure.code() != CODE || line.find('\n') != std::string::npos ||
            line.find(scratchFile().filename()) == std::string::npos) {
            std::fprintf(stderr, "Expected one line that names the file, and code %d: %d, %s\n", CODE,
                         failure.code(), line.c_str());
            std::abort();
        }
    }
    return 0;
}
