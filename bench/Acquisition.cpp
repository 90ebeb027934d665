// SPDX-License-Identifier: MIT
// The cost of acquisition: the sweep over the resources, the size check, the way of an image to a visualizer,
// starts, stops and unloads.
//
// Unless stated otherwise, images come from a generator without a frame-rate limit. The yardstick of an image
// is a plain memcpy of its bytes from a cycle like the channel's into a ring like the channel's. Counts are
// printed after the ratios.

#include "Ratios.h"
#include "SilentViews.h"

#include "acquisition/ResourceSweep.h"

#include "fglib5/Fglib5Types.h"
#include "gui-core/EntryPoints.h"
#include "gui-core/Gui.h"
#include "gui-core/LoadAppletCommand.h"
#include "gui-core/StartAcquisitionCommand.h"
#include "gui-core/StopAcquisitionCommand.h"
#include "gui-core/UnloadAppletCommand.h"
#include "simulation/fglib5/SimulationControl.h"

#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"
#include "ovra-core/reference/RuntimeEntries.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-display/FrameBufferGroup.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <thread>
#include <vector>

namespace {

// The program's operator new also serves its shared libraries.
std::atomic<std::int64_t> allocations{0};

} // namespace

// Not inlined, because the compiler would warn of free() for a pointer from new.
[[gnu::noinline]] void* operator new(std::size_t bytes)
{
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(bytes))
        return memory;
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

using namespace ovra;
using namespace std::chrono_literals;
using gui::Gui;
using gui::commands::LoadAppletCommand;
using gui::commands::StartAcquisitionCommand;
using gui::commands::StopAcquisitionCommand;
using gui::commands::UnloadAppletCommand;
using Clock = std::chrono::steady_clock;

constexpr int ENDLESS = -1;

double secondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

// --- the installation ------------------------------------------------------------------------------------

constexpr int IMAGE_BOARD = 1;
constexpr int OTHER_BOARD = 2;

/// DMA channels of the first board, each in a process of its own.
constexpr unsigned int SMALL = 0;
constexpr unsigned int LARGE = 1;
constexpr unsigned int PACED = 2;

struct Format
{
    int width;
    int height;

    std::size_t bytes() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }
};

constexpr Format formatOf(unsigned int dma)
{
    return dma == LARGE ? Format{4096, 3072} : Format{512, 512};
}

constexpr int BUFFERS = 16;

constexpr const char* MACHINE = R"({"name": "measured machine",
    "boards": [{"model": "m", "boardType": 1, "serial": "1", "ports": 1},
               {"model": "m", "boardType": 1, "serial": "2", "ports": 8}],
    "cameras": [CAMERAS]})";

constexpr const char* CAMERA = R"({"board": 1, "port": #, "model": "c", "serial": "c#", "interface": "gige",
    "sensorWidth": 64, "sensorHeight": 48, "width": 64, "height": 48, "frameRate": 1, "scene": "bottles"})";

constexpr const char* APPLET = R"({"format": "virtual-applet-1", "name": "applet", "boardType": 1, )";

constexpr const char* IMAGES = R"("processes": [{"dmas": [0], "ports": []}, {"dmas": [1], "ports": []},
        {"dmas": [2], "ports": []}],
    "dmas": [{"index": 0, "width": 512, "height": 512,
              "generator": {"pattern": "ramp", "frameRate": 0, "enabled": true}},
             {"index": 1, "width": 4096, "height": 3072,
              "generator": {"pattern": "ramp", "frameRate": 0, "enabled": true}},
             {"index": 2, "width": 512, "height": 512,
              "generator": {"pattern": "ramp", "frameRate": 1000, "enabled": true}}]})";

constexpr const char* ONE_CHANNEL = R"("processes": [{"dmas": [0], "ports": []}],
    "dmas": [{"index": 0, "width": 512, "height": 512,
              "generator": {"pattern": "ramp", "frameRate": 0, "enabled": true}}]})";

std::string eightOf(std::string text, const std::string& separator)
{
    std::string all;
    for (char digit = '0'; digit < '8'; ++digit) {
        std::string one = text;
        std::replace(one.begin(), one.end(), '#', digit);
        all += (all.empty() ? "" : separator) + one;
    }
    return all;
}

/// Eight channels and eight ports in one process: 64 pairs of equal sizes.
std::string pairs()
{
    return R"("processes": [{"dmas": [0, 1, 2, 3, 4, 5, 6, 7], "ports": [0, 1, 2, 3, 4, 5, 6, 7]}], "dmas": [)" +
           eightOf(R"({"index": #, "width": 64, "height": 48})", ",") + "]}";
}

/// The whole product on a virtual installation, with the first board's applet loaded.
class Rig
{
public:
    static Rig& instance()
    {
        static Rig rig;
        return rig;
    }

    ~Rig()
    {
        run(UnloadAppletCommand::create(IMAGE_BOARD));
        run(UnloadAppletCommand::create(OTHER_BOARD));
        m_application->stopPlugins();
        m_application.reset();
        OvraGuiCoreDeinit();
        std::filesystem::remove_all(m_folder);
    }

    static void submit(const boost::shared_ptr<core::Command>& command)
    {
        core::HarloApplication::commandprocessor()->executeCommand(command);
    }

    void settle()
    {
        m_application->pumpUntil([this] { return m_application->idle(); }, 60s);
    }

    void run(const boost::shared_ptr<core::Command>& command)
    {
        submit(command);
        settle();
    }

    void load(int serial, const std::string& applet)
    {
        run(LoadAppletCommand::create(serial, m_applets + applet, ""));
        if (!board(serial)->getBoardHandle())
            std::abort(); // the measurement would be void
    }

    static boost::shared_ptr<core::models::HlEnvironmentBoardNode> board(int serial)
    {
        return Gui::environment()->model()->root()->getSourcesEntry("ovra")->getChild(
            static_cast<unsigned int>(serial));
    }

    static boost::shared_ptr<core::models::HlEnvironmentDmaNode> dma(int serial, unsigned int index)
    {
        for (const auto dmas = board(serial)->getDmas(); dmas->hasNext(); dmas->advance())
            if (dmas->current()->getIndex() == index)
                return dmas->current();
        std::abort();
    }

private:
    Rig()
    {
        write("machine.json", std::string(MACHINE).replace(std::string_view(MACHINE).find("CAMERAS"), 7,
                                                           eightOf(CAMERA, ",")));
        write("Hardware Applets/m/images.hap", std::string(APPLET) + IMAGES);
        write("Hardware Applets/m/one.hap", std::string(APPLET) + ONE_CHANNEL);
        write("Hardware Applets/m/pairs.hap", APPLET + pairs());
        m_applets = m_folder.generic_string() + "/Hardware Applets/m/";

        void* const runtime = dlopen(OVRA_SIMULATED_RUNTIME, RTLD_NOW | RTLD_LOCAL);
        reinterpret_cast<FgSim_setMachine_t*>(dlsym(runtime, "FgSim_setMachine"))(
            (m_folder / "machine.json").c_str());
        OvraGuiCoreInit();
        m_application = std::make_unique<reference::Application>(
            reference::ApplicationOptions{.runtimeDirectory = m_folder.generic_string(),
                                          .runtimeLibrary = OVRA_SIMULATED_RUNTIME,
                                          .configurationFile = ""});
        m_application->addPlugin(
            boost::shared_ptr<Gui>(Gui::createInstance(), &Gui::destroyInstance),
            {{"views", boost::any(boost::shared_ptr<gui::Views>(boost::make_shared<bench::SilentViews>()))}});
        m_application->startPlugins();
        settle();
        load(IMAGE_BOARD, "images.hap");
    }

    void write(const std::string& path, const std::string& content) const
    {
        std::filesystem::create_directories((m_folder / path).parent_path());
        std::ofstream(m_folder / path) << content;
    }

    const std::filesystem::path m_folder =
        std::filesystem::temp_directory_path() /
        ("ovra-bench-" + std::to_string(Clock::now().time_since_epoch().count()));
    std::string m_applets;
    std::unique_ptr<reference::Application> m_application;
};

// --- the sweep -------------------------------------------------------------------------------------------

using Resource = core::models::HlEnvironmentGlobalResourceNode;

/// Channels and ports in turn, under keys beside those of the loaded board.
class Resources
{
public:
    explicit Resources(int count) : m_root(Gui::environment()->globalResourceModel()->root())
    {
        for (int i = 0; i < count; ++i) {
            const bool dma = i % 2 == 0;
            const auto resource = Resource::create();
            resource->setType(dma ? core::Environment::ResourceDma : core::Environment::ResourceLogicalPort);
            if (dma)
                hold(resource, core::models::HlEnvironmentDmaNode::create());
            else
                hold(resource, core::models::HlEnvironmentLogicalPortNode::create());
            all.push_back(resource);
            m_keys.push_back("z" + std::to_string(10'000'000 + i));
            m_root->addChild(m_keys.back(), resource);
        }
    }
    ~Resources()
    {
        for (const auto& key : m_keys)
            m_root->removeChild(key);
    }

    std::vector<boost::shared_ptr<Resource>> all;

private:
    template <class Node>
    void hold(const boost::shared_ptr<Resource>& resource, const boost::shared_ptr<Node>& node)
    {
        node->setBoard(7);
        m_held.push_back(node);
        resource->setResource(boost::weak_ptr<core::models::GenericModelNode>(node));
    }

    boost::shared_ptr<core::models::HlEnvironmentGlobalResourceRootNode> m_root;
    std::vector<std::string> m_keys;
    std::vector<boost::shared_ptr<core::models::GenericModelNode>> m_held;
};

/// The passes of a start: all channels, then all ports.
template <int COUNT>
void sweep(benchmark::State& state)
{
    Rig::instance();
    const Resources resources(COUNT);
    unsigned int met = 0;
    const gui::acquisition::ResourceFilter filter{.board = 7, .process = std::nullopt};
    for (auto _ : state) {
        const gui::acquisition::ResourceSweep sweep;
        sweep.forEachDma(filter, [&met](const auto&) { ++met; });
        sweep.forEachLogicalPort(filter, [&met](const auto&) { ++met; });
    }
    benchmark::DoNotOptimize(met);
}

/// One pass over the same children that locks the same weak pointers and reads their objects.
template <int COUNT>
void plainWalk(benchmark::State& state)
{
    Rig::instance();
    const Resources resources(COUNT);
    for (auto _ : state) {
        const auto root = Gui::environment()->globalResourceModel()->root();
        for (const auto all = root->getChildren(); all->hasNext(); all->advance())
            if (const auto held = all->current()->getResource().lock())
                benchmark::DoNotOptimize(&held->_children());
    }
}

// --- the size check --------------------------------------------------------------------------------------

void checkOf64Pairs(benchmark::State& state)
{
    Rig& rig = Rig::instance();
    rig.load(OTHER_BOARD, "pairs.hap");
    const auto command = StartAcquisitionCommand::create(Rig::dma(OTHER_BOARD, 0), 1);
    for (auto _ : state)
        command->executeSync();
    rig.run(UnloadAppletCommand::create(OTHER_BOARD));
}

void sizesOf64Pairs(benchmark::State& state)
{
    Rig& rig = Rig::instance();
    rig.load(OTHER_BOARD, "pairs.hap");
    std::vector<boost::shared_ptr<display::DisplayScene>> scenes;
    std::vector<boost::shared_ptr<core::models::GenICamModel>> cameras;
    for (const auto dmas = Rig::board(OTHER_BOARD)->getDmas(); dmas->hasNext(); dmas->advance())
        scenes.push_back(dmas->current()->getDisplayScene());
    for (const auto ports = Rig::board(OTHER_BOARD)->getLogicalPorts(); ports->hasNext(); ports->advance())
        cameras.push_back(
            ports->current()->getMappedPortEntry()->getConnectedCameraEntry()->getGenICamModelEntry());
    if (scenes.size() * cameras.size() != 64)
        std::abort();
    for (auto _ : state)
        for (const auto& scene : scenes)
            for (const auto& camera : cameras)
                benchmark::DoNotOptimize(camera->width() + camera->height() + scene->width() +
                                         scene->height());
    rig.run(UnloadAppletCommand::create(OTHER_BOARD));
}

// --- images ----------------------------------------------------------------------------------------------

/// A visualizer that only waits for a while.
class Screen final : public display::DisplaySceneVisualizer
{
public:
    explicit Screen(std::chrono::milliseconds duration = 0ms) : m_duration(duration) {}

    void showImage(const display::Image&) override
    {
        if (m_duration > 0ms)
            std::this_thread::sleep_for(m_duration);
        const std::lock_guard lock(m_mutex);
        m_shown = true;
        m_changed.notify_all();
    }

    void awaitImage()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_shown; });
    }

private:
    const std::chrono::milliseconds m_duration;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_shown = false;
};

/// Shows a channel's images for some time and returns the statistics.
display::DisplayStatistics grab(unsigned int dma, display::DisplaySceneVisualizer& screen,
                                std::chrono::milliseconds duration)
{
    const auto scene = Rig::dma(IMAGE_BOARD, dma)->getDisplayScene();
    scene->setVisualizer(&screen);
    scene->startGrabbing(ENDLESS);
    std::this_thread::sleep_for(duration);
    const auto statistics = scene->statistics();
    scene->stopGrabbing();
    scene->setVisualizer(nullptr);
    return statistics;
}

constexpr auto RUN = 100ms;

/// Time per image that reached the scene, shown or overtaken.
template <unsigned int DMA, int MILLISECONDS_SHOWN = 0>
void captured(benchmark::State& state)
{
    Rig::instance();
    Screen screen(std::chrono::milliseconds{MILLISECONDS_SHOWN});
    for (auto _ : state) {
        const auto statistics = grab(DMA, screen, RUN);
        state.SetIterationTime(statistics.seconds / static_cast<double>(statistics.received));
    }
}

template <unsigned int DMA>
void shown(benchmark::State& state)
{
    Rig::instance();
    Screen screen;
    for (auto _ : state) {
        const auto statistics = grab(DMA, screen, RUN);
        state.SetIterationTime(statistics.seconds / static_cast<double>(statistics.shown));
    }
}

/// A cycle and a ring like those of a channel.
struct PlainRing
{
    explicit PlainRing(Format format)
        : bytes(format.bytes()),
          images(std::clamp<std::size_t>((48UL << 20U) / bytes, 1, 16)),
          cycle(images * bytes, 1),
          ring(BUFFERS * bytes, 2),
          copy(bytes)
    {}

    void write(std::size_t number)
    {
        std::memcpy(ring.data() + number % BUFFERS * bytes, cycle.data() + number % images * bytes, bytes);
    }
    void read(std::size_t number) { std::memcpy(copy.data(), ring.data() + number % BUFFERS * bytes, bytes); }

    const std::size_t bytes;
    const std::size_t images;
    std::vector<std::uint8_t> cycle;
    std::vector<std::uint8_t> ring;
    std::vector<std::uint8_t> copy;
};

/// One thread writes, none reads: the speed of memory only.
template <unsigned int DMA>
void plainWrite(benchmark::State& state)
{
    PlainRing ring(formatOf(DMA));
    for (auto _ : state) {
        const auto begin = Clock::now();
        std::size_t images = 0;
        while (Clock::now() - begin < RUN)
            ring.write(images++);
        state.SetIterationTime(secondsSince(begin) / static_cast<double>(images));
    }
}

/// One thread writes, another one copies the newest image: the speed of two cores that share a ring.
struct PlainPair
{
    double perWritten; ///< seconds
    double perCopied;
};

PlainPair runPlainPair(PlainRing& ring)
{
    std::atomic<std::size_t> newest{0};
    std::atomic<bool> ends{false};
    std::size_t copied = 0;
    std::thread reader([&] {
        for (std::size_t seen = 0; !ends;) {
            const std::size_t number = newest.load(std::memory_order_acquire);
            if (number == seen)
                continue;
            ring.read(number);
            seen = number;
            ++copied;
        }
    });
    const auto begin = Clock::now();
    std::size_t written = 0;
    while (Clock::now() - begin < RUN) {
        ring.write(++written);
        newest.store(written, std::memory_order_release);
    }
    const double seconds = secondsSince(begin);
    ends = true;
    reader.join();
    return {seconds / static_cast<double>(written),
            seconds / static_cast<double>(std::max<std::size_t>(copied, 1))};
}

template <unsigned int DMA, double PlainPair::*TIME>
void plainPair(benchmark::State& state)
{
    PlainRing ring(formatOf(DMA));
    for (auto _ : state)
        state.SetIterationTime(runPlainPair(ring).*TIME);
}

// --- start, stop, unload -----------------------------------------------------------------------------------

void startToFirstImage(benchmark::State& state)
{
    Rig& rig = Rig::instance();
    const auto dma = Rig::dma(IMAGE_BOARD, SMALL);
    for (auto _ : state) {
        Screen screen;
        dma->getDisplayScene()->setVisualizer(&screen);
        const auto begin = Clock::now();
        Rig::submit(StartAcquisitionCommand::create(dma, ENDLESS));
        screen.awaitImage();
        state.SetIterationTime(secondsSince(begin));
        rig.settle();
        rig.run(StopAcquisitionCommand::create(dma));
        dma->getDisplayScene()->setVisualizer(nullptr);
    }
}

void stopToQuiescence(benchmark::State& state)
{
    Rig& rig = Rig::instance();
    const auto dma = Rig::dma(IMAGE_BOARD, SMALL);
    for (auto _ : state) {
        Screen screen;
        dma->getDisplayScene()->setVisualizer(&screen);
        rig.run(StartAcquisitionCommand::create(dma, ENDLESS));
        screen.awaitImage();
        const auto begin = Clock::now();
        rig.run(StopAcquisitionCommand::create(dma));
        state.SetIterationTime(secondsSince(begin));
        dma->getDisplayScene()->setVisualizer(nullptr);
    }
}

template <bool ACQUIRING>
void unload(benchmark::State& state)
{
    Rig& rig = Rig::instance();
    for (auto _ : state) {
        rig.load(OTHER_BOARD, "one.hap");
        const auto dma = Rig::dma(OTHER_BOARD, 0);
        Screen screen;
        dma->getDisplayScene()->setVisualizer(&screen);
        if (ACQUIRING) {
            rig.run(StartAcquisitionCommand::create(dma, ENDLESS));
            screen.awaitImage();
        }
        const auto begin = Clock::now();
        rig.run(UnloadAppletCommand::create(OTHER_BOARD));
        state.SetIterationTime(secondsSince(begin));
    }
}

/// Like an acquisition: two threads, which start and end one after the other; each copies the image once.
void twoThreadsThatCopy(benchmark::State& state)
{
    PlainRing ring(formatOf(SMALL));
    std::size_t number = 0;
    for (auto _ : state) {
        const auto begin = Clock::now();
        std::thread([&] { ring.write(number++); }).join();
        std::thread([&] { ring.write(number++); }).join();
        state.SetIterationTime(secondsSince(begin));
    }
}

// --- counts --------------------------------------------------------------------------------------------

std::int64_t allocationsWithin(std::chrono::milliseconds duration)
{
    const auto before = allocations.load();
    std::this_thread::sleep_for(duration);
    return allocations.load() - before;
}

/// The yardstick is the same time at rest, in which the host's monitors search folders.
void countAllocations(unsigned int dma, const char* name)
{
    const auto atRest = allocationsWithin(1s);
    Screen screen;
    const auto scene = Rig::dma(IMAGE_BOARD, dma)->getDisplayScene();
    scene->setVisualizer(&screen);
    scene->startGrabbing(ENDLESS);
    screen.awaitImage();
    const auto before = scene->statistics();
    const auto during = allocationsWithin(1s);
    const auto after = scene->statistics();
    scene->stopGrabbing();
    scene->setVisualizer(nullptr);
    std::printf("%-52s %8lld   at rest %lld; in %lld images, of which %lld were shown and %lld overtaken\n",
                name, static_cast<long long>(during), static_cast<long long>(atRest),
                static_cast<long long>(after.received - before.received),
                static_cast<long long>(after.shown - before.shown),
                static_cast<long long>(after.skipped - before.skipped));
}

/// A bare thread with the same deadlines: the best that the machine can do.
double latestWakeUp(std::chrono::milliseconds duration)
{
    const auto begin = Clock::now();
    auto latest = 0ns;
    for (auto deadline = begin + 1ms; deadline < begin + duration; deadline += 1ms) {
        std::this_thread::sleep_until(deadline);
        latest = std::max<std::chrono::nanoseconds>(latest, Clock::now() - deadline);
    }
    return std::chrono::duration<double, std::milli>(latest).count();
}

void countLost()
{
    constexpr auto DURATION = 5s;
    constexpr int RING_OF_A_QUARTER_SECOND = 256; // the ring limits how far a late channel can catch up
    Rig::dma(IMAGE_BOARD, PACED)->getFrameBufferGroup()->setBufferCount(RING_OF_A_QUARTER_SECOND);
    Screen screen;
    auto latest = 0.0;
    std::thread bare([&] { latest = latestWakeUp(DURATION); });
    const auto statistics = grab(PACED, screen, DURATION);
    bare.join();
    const auto lost = reference::requireRuntime()->Fg_getStatus(Rig::board(IMAGE_BOARD)->getBoardHandle(),
                                                                FG_STATUS_LOST_IMAGES, 0, PACED);
    std::printf(
        "%-52s %8lld   of %lld at 1000 images/s; %lld overtaken; a bare thread was at most %.2f ms late\n",
        "images lost", static_cast<long long>(lost), static_cast<long long>(statistics.received),
        static_cast<long long>(statistics.skipped), latest);
}

} // namespace

RATIO("sweep over 10 resources / plain walk", sweep<10>, plainWalk<10>, 1.3);
RATIO("sweep over 1,000 resources / plain walk", sweep<1000>, plainWalk<1000>, 1.3);
RATIO("sweep over 100,000 resources / plain walk", sweep<100000>, plainWalk<100000>, 1.3);
RATIO("size check of 64 pairs / asking for the sizes", checkOf64Pairs, sizesOf64Pairs, 0);
// A limit of 0.85 of the yardstick's speed is 1.18 of its time.
RATIO("image of 512 x 512 / memcpy", captured<SMALL>, plainWrite<SMALL>, 1 / 0.85, bench::Clock::Own);
RATIO("image of 4096 x 3072 / memcpy", captured<LARGE>, plainWrite<LARGE>, 1 / 0.85, bench::Clock::Own);
RATIO("image of 512 x 512 / memcpy with a reader", captured<SMALL>,
      (plainPair<SMALL, &PlainPair::perWritten>), 1 / 0.85, bench::Clock::Own);
RATIO("image of 4096 x 3072 / memcpy with a reader", captured<LARGE>,
      (plainPair<LARGE, &PlainPair::perWritten>), 1 / 0.85, bench::Clock::Own);
RATIO("image of 512 x 512, shown / copied by that reader", shown<SMALL>,
      (plainPair<SMALL, &PlainPair::perCopied>), 1 / 0.85, bench::Clock::Own);
RATIO("image of 4096 x 3072, shown / copied by that reader", shown<LARGE>,
      (plainPair<LARGE, &PlainPair::perCopied>), 1 / 0.85, bench::Clock::Own);
RATIO("image with a slow visualizer / with a quick one", (captured<SMALL, 20>), captured<SMALL>, 1 / 0.85,
      bench::Clock::Own);
RATIO("start to first image / two threads that copy", startToFirstImage, twoThreadsThatCopy, 0,
      bench::Clock::Own);
RATIO("stop to quiescence / two threads that copy", stopToQuiescence, twoThreadsThatCopy, 0,
      bench::Clock::Own);
RATIO("unload while acquiring / unload at rest", unload<true>, unload<false>, 0, bench::Clock::Own);

int main(int argc, char** argv)
{
    const int result = bench::runRatios(argc, argv);
    countAllocations(SMALL, "allocations, 512 x 512");
    countAllocations(LARGE, "allocations, 4096 x 3072");
    countLost();
    return result;
}
