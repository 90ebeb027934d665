// SPDX-License-Identifier: MIT
// Runs the console's demo and some lines more, again and again. Each time another call or allocation fails, and
// a clean run follows.
//
//   product-sweep runtime|host|allocation SAMPLES [SHARD SHARDS]
//
//   runtime       the n-th call of the frame-grabber runtime fails
//   host          the n-th call of the host throws
//   allocation    the n-th allocation of ovra-lib-gui-core fails
//
// SAMPLES is the number of points, spread evenly; 0 for every n. SHARD counts from 0. After each session
// nothing may be left: no host object, nothing in the runtime, no leak. The session must report the failure,
// except for calls of the runtime, since some queries may fail without a message.

#include "LibraryAllocations.h"

#include "Interrupts.h"
#include "Printer.h"
#include "Session.h"

#include "fglib5/Fglib5Types.h"
#include "simulation/fglib5/SimulationControl.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LibraryUse.h"
#include "ovra_log/reference/LiveObjects.h"

#include <boost/dll/shared_library.hpp>
#include <nlohmann/json.hpp>
#include <sanitizer/asan_interface.h>
#include <sanitizer/common_interface_defs.h>
#include <sanitizer/lsan_interface.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <utility>

#include <unistd.h>

using namespace ovra;
using reference::Journal;
using tests::LibraryAllocations;

namespace {

namespace fs = std::filesystem;

constexpr unsigned int MAX_SESSION_SECONDS = 180;
constexpr int FAST_FRAMES_PER_SECOND = 200;

/// What the demo lacks: recordings, plugs, formats, triggers. No line may forget the fault that the sweep has
/// planned. The recording comes first: with a trigger it would wait without end.
constexpr const char* LATER_LINES = R"(load 0 SingleAreaGray.hap
start 0 dma 0
record 0 0 2 recorded
unplug camera 0 0
plug camera 0 0
stop 0 dma 0
set 0 FG_PIXELFORMAT Mono12Packed
set 0 TRIGGER_MODE 1
start 0 dma 0
trigger 0 0
wait 1 images 0 0
stop 0 dma 0
store-mcf 0 deep.mcf
load-mcf 0 deep.mcf
start 0 dma 0
trigger 0 0
wait 1 images 0 0
stop 0 dma 0
unplug board 1
plug board 1
boards
unload 0
)";

std::string contentOf(const fs::path& file)
{
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
}

/// The demo without its end and without steps that take time and concern the console only.
std::string shortened(const std::string& script)
{
    std::istringstream lines(script);
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        const auto images = line.find(" images");
        if (line.starts_with("wait ") && images != std::string::npos)
            line = "wait 1" + line.substr(images);
        if (!line.starts_with("save-image") && line != "quit")
            result += line + "\n";
    }
    return result;
}

/// A folder and a script for the sessions.
class Stage
{
public:
    Stage() : m_folder(fs::temp_directory_path() / ("ovra-sweep-" + std::to_string(getpid())))
    {
        fs::create_directories(m_folder);
        auto machine = nlohmann::json::parse(contentOf(OVRA_STAGE_DIR "/simulation/default-machine.json"));
        for (auto& camera : machine["cameras"])
            camera["frameRate"] = FAST_FRAMES_PER_SECOND;
        m_options.session.machine = m_folder / "machine.json";
        std::ofstream(m_options.session.machine) << machine;
        m_options.session.outputFolder = m_folder;
        m_options.session.runtimeFolder = OVRA_STAGE_DIR;
    }
    ~Stage() { fs::remove_all(m_folder); }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    /// Runs a session and returns its output; \p good: there was no error.
    std::string runSession(bool& good) const
    {
        // What a session stores, the next one stores anew.
        fs::remove_all(m_folder / "recorded");
        fs::remove(m_folder / "deep.mcf");
        // Short, because a channel whose camera does not start waits for it; a busy machine still draws an image.
        const fs::path configuration = m_folder / "configuration";
        std::ofstream(configuration) << "gui.preferences.acq.default.timeout=3\n";
        console::Options options = m_options;
        options.session.configurationFile = configuration;

        std::istringstream input(m_script);
        const auto nextLine = [&input](std::string& line) { return bool(std::getline(input, line)); };
        std::ostringstream output;
        console::Printer printer(output, output, console::Printer::Target::Lines);
        try {
            console::Interrupts interrupts(false);
            console::runSession(options, printer,
                                {std::make_shared<console::FunctionSource>(nextLine), nullptr}, interrupts);
        } catch (const std::exception& error) {
            printer.error(error.what());
        }
        good = printer.errorCount() == 0;
        return output.str();
    }

private:
    const fs::path m_folder;
    const std::string m_script = shortened(contentOf(OVRA_DEMO_SCRIPT)) + LATER_LINES;
    console::Options m_options;
};

/// A kind of failure.
struct Kind
{
    std::string name;
    bool alwaysTold;
    void (*failAt)(std::uint64_t n); ///< 0: only counts
    std::uint64_t (*stop)();         ///< calls since failAt
    void (*printPlace)() = nullptr;  ///< of the last failure
};

boost::dll::shared_library& runtime()
{
    static auto* opened = new boost::dll::shared_library(OVRA_RUNTIME);
    return *opened;
}

const Kind KINDS[] = {
    {"runtime", false,
     [](std::uint64_t n) {
         runtime().get<FgSim_resetCounts_t>("FgSim_resetCounts")();
         if (n > 0)
             runtime().get<FgSim_addFault_t>("FgSim_addFault")("*", n, FG_INIT_ERROR);
     },
     [] {
         runtime().get<FgSim_clearFaults_t>("FgSim_clearFaults")();
         return static_cast<std::uint64_t>(runtime().get<FgSim_totalCalls_t>("FgSim_totalCalls")());
     }},
    {"host", true,
     [](std::uint64_t n) {
         Journal::start();
         Journal::throwAt(n);
     },
     [] {
         Journal::stop();
         return static_cast<std::uint64_t>(Journal::calls());
     }},
    {"allocation", true, &LibraryAllocations::failAt,
     [] {
         LibraryAllocations::stop();
         return LibraryAllocations::count();
     },
     &LibraryAllocations::printPlace},
};

std::string remains()
{
    std::string found;
    for (const auto& [name, count] : reference::allLiveObjects())
        if (count != 0)
            found += "; " + std::to_string(count) + " of " + name;
    for (const char* library : {"ovra-core", "ovra-lib-environment", "ovra-lib-parameters",
                                "ovra-lib-display", "ovra-lib-display-fglib", "ovra-lib-fglib-model"})
        if (reference::libraryUses(library) != 0)
            found += std::string("; ") + library + " is still started";
    for (const int kind : {FGSIM_BOARD_HANDLES, FGSIM_RINGS, FGSIM_RING_BYTES, FGSIM_ACQUIRING_CHANNELS,
                           FGSIM_APPLET_ITERATORS})
        if (const auto count = runtime().get<FgSim_live_t>("FgSim_live")(kind); count != 0)
            found += "; the runtime holds " + std::to_string(count) + " of kind " + std::to_string(kind);
    if (__lsan_do_recoverable_leak_check() != 0)
        found += "; a leak";
    return found;
}

/// Printed when the process dies.
char point[100] = "the first session";

void tellPoint()
{
    std::fprintf(stderr, "\nproduct-sweep: it happened in %s\n", point);
}

void watchForDeath()
{
    __sanitizer_set_death_callback(&tellPoint);
    std::signal(SIGALRM, [](int) {
        tellPoint();
        std::abort();
    });
    std::set_terminate([] {
        tellPoint();
        __sanitizer_print_stack_trace();
        std::abort();
    });
}

class Sweep
{
public:
    explicit Sweep(const Kind& kind) : m_kind(kind) {}

    /// Runs a session whose \p n-th call fails, and a clean one. False if there was no such call.
    bool visit(std::uint64_t n)
    {
        std::snprintf(point, sizeof point, "%s %llu", m_kind.name.c_str(),
                      static_cast<unsigned long long>(n));
        bool good = false;
        m_kind.failAt(n);
        const std::string told = session(good);
        const bool struck = m_kind.stop() >= n;
        if (!struck && good)
            return false;
        ++m_points;

        std::string complaint = newRemains();
        if (!struck)
            complaint += "; the session failed before it came to that";
        if (good && m_kind.alwaysTold)
            complaint += "; nobody was told";
        std::string followUp = session(good);
        if (!good)
            complaint += "; the next session failed";
        else
            followUp.clear();
        complaint += newRemains();
        if (complaint.empty())
            ++m_survived;
        else
            complain(complaint + "\n" + told + followUp);
        return true;
    }

    /// Number of calls in a clean session.
    std::uint64_t calls()
    {
        bool good = false;
        std::string told = session(good); // after it, one-time initialisations are done
        m_kind.failAt(0);
        told += session(good);
        m_calls = m_kind.stop();
        if (!good || !remains().empty())
            throw std::runtime_error("The clean session fails: " + remains() + "\n" + told);
        return m_calls;
    }

    bool report() const
    {
        std::cout << m_kind.name << ": " << m_points << " points swept, " << m_survived
                  << " survived (a clean session has " << m_calls << ")" << std::endl;
        return m_points > 0 && m_survived == m_points;
    }

private:
    /// Remains that no earlier point has reported.
    std::string newRemains()
    {
        const std::string before = std::exchange(m_remains, remains());
        return m_remains == before ? "" : m_remains;
    }

    void complain(const std::string& text) const
    {
        std::cout << point << text << std::endl;
        if (m_kind.printPlace)
            m_kind.printPlace();
    }

    std::string session(bool& good) const
    {
        alarm(MAX_SESSION_SECONDS);
        auto told = m_stage.runSession(good);
        alarm(0);
        return told;
    }

    const Kind& m_kind;
    const Stage m_stage;
    std::string m_remains;
    std::uint64_t m_calls = 0;
    std::uint64_t m_points = 0;
    std::uint64_t m_survived = 0;
};

bool sweep(const Kind& kind, std::uint64_t samples, std::uint64_t shard, std::uint64_t shards)
{
    Sweep sweep(kind);
    const auto calls = sweep.calls();
    const auto distance = samples > 0 ? std::max<std::uint64_t>(calls / samples, 1) : 1;
    for (auto n = 1 + shard * distance; sweep.visit(n) || n < calls; n += shards * distance) {
    }
    return sweep.report();
}

} // namespace

int main(int argumentCount, char** arguments)
{
    watchForDeath();
    const auto number = [&](int position, std::uint64_t otherwise) {
        return argumentCount > position ? std::stoull(arguments[position]) : otherwise;
    };
    try {
        for (const Kind& kind : KINDS)
            if (argumentCount > 2 && kind.name == arguments[1])
                return sweep(kind, number(2, 0), number(3, 0), number(4, 1)) ? EXIT_SUCCESS : EXIT_FAILURE;
        std::cerr << "usage: product-sweep runtime|host|allocation SAMPLES [SHARD SHARDS]\n";
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return EXIT_FAILURE;
}
