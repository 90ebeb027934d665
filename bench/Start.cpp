// SPDX-License-Identifier: MIT
// The cost of an application's start with few and with many applet files, and its growth.

#include "Ratios.h"
#include "SilentViews.h"

#include "gui-core/EntryPoints.h"
#include "gui-core/Gui.h"

#include "ovra-core/reference/Application.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"

#include <boost/make_shared.hpp>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace ovra;

/// A front end that notes when the application is ready.
struct WaitedForViews final : bench::SilentViews
{
    std::function<void()> ready;
    void onInitializationDone() override { ready(); }
};

[[noreturn]] void giveUp(const std::string& reason)
{
    std::fprintf(stderr, "bench-start: %s\n", reason.c_str());
    std::abort();
}

/// An installation with a number of applet files, in a temporary folder.
class Installation
{
public:
    explicit Installation(int files)
        : m_folder(fs::temp_directory_path() /
                   ("ovra-bench-" + std::to_string(getpid()) + "-" + std::to_string(files)))
    {
        const fs::path applets = m_folder / "Hardware Applets" / "ovra-quad-cl";
        fs::create_directories(applets);
        for (int i = 0; i < files; ++i)
            fs::copy_file(OVRA_BENCH_APPLET, applets / ("Applet" + std::to_string(i) + ".hap"));
    }

    ~Installation() { fs::remove_all(m_folder); }
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;

    const fs::path& folder() const { return m_folder; }

private:
    fs::path m_folder;
};

template <int FILES>
const fs::path& installation()
{
    static const Installation MADE(FILES);
    return MADE.folder();
}

reference::ApplicationOptions optionsFor(const fs::path& folder)
{
    return {
        .runtimeDirectory = folder.string(), .runtimeLibrary = OVRA_BENCH_RUNTIME, .configurationFile = ""};
}

/// From the start of the plug-ins to the message that the application is ready.
void startOnce(const fs::path& folder, benchmark::State& state)
{
    OvraGuiCoreInit();
    {
        reference::Application application(optionsFor(folder));
        application.setErrorHandler([](const reference::PhaseFailure& failure) { giveUp(failure.message); });
        const auto views = boost::make_shared<WaitedForViews>();
        views->ready = [&application] { application.quit(); };
        const boost::shared_ptr<gui::Gui> plugin(gui::Gui::createInstance(), gui::Gui::destroyInstance);
        application.addPlugin(plugin, {{"views", boost::any(boost::shared_ptr<gui::Views>(views))}});

        state.ResumeTiming();
        application.startPlugins();
        application.exec();
        state.PauseTiming();
        application.stopPlugins();
    }
    OvraGuiCoreDeinit();
}

/// The host's share of the start, called directly.
void discoverAndScanOnce(const fs::path& folder, benchmark::State& state)
{
    const reference::Application application(optionsFor(folder));
    const auto environment = core::Environment::create();
    const auto collection = environment->model()->root()->getFilesEntryNode();
    state.ResumeTiming();
    environment->discoverResourcesOnce();
    environment->discoverResources();
    for (const auto files = collection->getAllFiles(); files->hasNext(); files->advance())
        files->current()->scan();
    state.PauseTiming();
}

/// A walk over the folders that reads every file.
void readOnce(const fs::path& folder, benchmark::State& state)
{
    state.ResumeTiming();
    std::string content;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file())
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        content.resize(entry.file_size());
        file.read(content.data(), static_cast<std::streamsize>(content.size()));
        benchmark::DoNotOptimize(content.data());
    }
    state.PauseTiming();
}

template <int FILES, void (*ONCE)(const fs::path&, benchmark::State&)>
void timed(benchmark::State& state)
{
    const fs::path& folder = installation<FILES>();
    for (auto _ : state) {
        state.PauseTiming();
        ONCE(folder, state);
        state.ResumeTiming();
    }
}

} // namespace

RATIO("start, 10 files / the host's part alone", (timed<10, startOnce>), (timed<10, discoverAndScanOnce>), 0);
RATIO("start, 1,000 files / the host's part alone", (timed<1000, startOnce>),
      (timed<1000, discoverAndScanOnce>), 0);
RATIO("start, 10,000 files / the host's part alone", (timed<10000, startOnce>),
      (timed<10000, discoverAndScanOnce>), 0);
RATIO("start, 10,000 files / reading the files", (timed<10000, startOnce>), (timed<10000, readOnce>), 0);
RATIO("start, 10,000 files / 1,000 files", (timed<10000, startOnce>), (timed<1000, startOnce>), 12);

int main(int argc, char** argv)
{
    setenv("OVRA_MACHINE", OVRA_BENCH_MACHINE, 1);
    return ovra::bench::runRatios(argc, argv);
}
