// SPDX-License-Identifier: MIT
// What a page gets of the whole program while it acquires, and what that costs: ovra-viewer on a virtual
// installation of its own, with a page that acknowledges each image as soon as it has it.
//
//     bench-viewer-session [--minutes N]      N minutes of four channels for the memory; 1 without it
//
// Images come from generators that are paced. "lost" is the acquisition's own count. Processor time is that
// of the program, of an image with a page that shows it less that of an image without; its yardstick is a
// thread that copies and sends the same bytes.

#include "ViewerPage.h"

#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using nlohmann::json;
using ovra::bench::ViewerPage;

double secondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

constexpr const char* MACHINE = R"({"name": "measured machine",
    "boards": [{"model": "m", "boardType": 1, "serial": "1", "ports": 4}], "cameras": []})";

std::string applet(int channels, int width, int height, const std::string& format, int rate)
{
    json description = {{"format", "virtual-applet-1"}, {"name", "measured"}, {"boardType", 1}};
    for (int i = 0; i < channels; ++i) {
        description["processes"].push_back({{"dmas", {i}}, {"ports", json::array()}});
        description["dmas"].push_back(
            {{"index", i},
             {"width", width},
             {"height", height},
             {"formats", {format}},
             {"generator", {{"pattern", "ramp"}, {"frameRate", rate}, {"enabled", true}}}});
    }
    return description.dump();
}

/// A folder that is an installation with the measured applets.
class Installation
{
public:
    Installation()
    {
        fs::create_directories(m_folder);
        fs::create_directory_symlink(fs::path(OVRA_VIEWER).parent_path(), m_folder / "bin");
        write("machine.json", MACHINE);
        write("Hardware Applets/m/four.hap", applet(4, 1024, 768, "Mono8", 60));
        write("Hardware Applets/m/large.hap", applet(1, 4096, 3072, "Mono12", 30));
        write("Hardware Applets/m/fast.hap", applet(1, 512, 512, "Mono8", 1000));
    }
    ~Installation()
    {
        std::error_code ignored;
        fs::remove_all(m_folder, ignored);
    }
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;

    const fs::path& folder() const { return m_folder; }

private:
    void write(const std::string& path, const std::string& content) const
    {
        fs::create_directories((m_folder / path).parent_path());
        std::ofstream(m_folder / path) << content;
    }

    const fs::path m_folder = fs::temp_directory_path() / ("ovra-bench-viewer-" + std::to_string(getpid()));
};

/// The program, from its start to its end.
class Program
{
public:
    explicit Program(const Installation& installation)
    {
        const auto folder = installation.folder().string();
        std::vector<std::string> words{
            OVRA_VIEWER,     "--no-browser", "--port",       "0",    "--machine", folder + "/machine.json",
            "--runtime-dir", folder,         "--output-dir", folder, "--config",  folder + "/entries.cfg"};
        std::vector<char*> arguments;
        for (auto& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);

        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        const int error = posix_spawn(&m_process, OVRA_VIEWER, &actions, nullptr, arguments.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        if (error != 0)
            throw std::runtime_error("cannot start " OVRA_VIEWER);
        m_output = ends[0];
        readAddress();
    }
    ~Program()
    {
        kill(m_process, SIGTERM);
        waitpid(m_process, nullptr, 0);
        close(m_output);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    const std::string& address() const { return m_address; }

    /// Processor time of all its threads, in seconds.
    double processorTime() const
    {
        std::string text = contentOf("stat");
        std::istringstream fields(text.substr(text.rfind(')') + 2));
        std::string skipped;
        constexpr int FIELDS_BEFORE_TIMES = 11;
        for (int i = 0; i < FIELDS_BEFORE_TIMES; ++i)
            fields >> skipped;
        double user = 0;
        double system = 0;
        fields >> user >> system;
        return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
    }

    double memoryInMebibytes() const
    {
        std::istringstream fields(contentOf("statm"));
        double size = 0;
        double resident = 0;
        fields >> size >> resident;
        return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
    }

private:
    void readAddress()
    {
        std::string text;
        char character = 0;
        while (read(m_output, &character, 1) == 1 && character != '\n')
            text += character;
        m_address = text.substr(std::min(text.find("http"), text.size()));
    }

    std::string contentOf(const char* file) const
    {
        std::ifstream stream("/proc/" + std::to_string(m_process) + "/" + file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    pid_t m_process = 0;
    int m_output = -1;
    std::string m_address;
};

/// A page that follows the state, and shows channels.
class Observer
{
public:
    explicit Observer(const Program& program) : m_page(program.address())
    {
        waitFor([this] { return m_state.contains("program") && m_state["program"]["ready"] == true; });
    }

    template <class Condition>
    void waitFor(const Condition& condition)
    {
        const auto begin = Clock::now();
        while (!condition()) {
            if (secondsSince(begin) > 60)
                throw std::runtime_error("the program does not answer as it should");
            take();
        }
    }

    void load(const std::string& name)
    {
        if (!board()["applet"].is_null())
            request("unload", {{"board", "1"}});
        for (const auto& each : m_state["applets"])
            if (each["name"] == name)
                request("load", {{"board", "1"}, {"applet", each["path"]}});
        waitFor([&] { return board()["applet"] == name && !m_state["load"]["active"].get<bool>(); });
    }

    json channels()
    {
        json all = json::array();
        for (const auto& process : board()["processes"])
            for (const auto& channel : process["channels"])
                all.push_back(channel);
        return all;
    }

    void start()
    {
        request("set-sync-mode", {{"mode", 2}});
        request("start", {{"board", "1"}, {"kind", "dma"}, {"index", 0}});
    }
    void stop() { request("stop", {{"board", "1"}, {"kind", "dma"}, {"index", 0}}); }

    void show(int width, int height)
    {
        for (const auto& channel : channels())
            m_page.say(json{
                {"type", "show"},
                {"channel", channel["id"]},
                {"view", 1},
                {"region", {0, 0, channel["width"], channel["height"]}},
                {"screen", {width, height}},
                {"histogram",
                 true}}.dump());
    }
    void hide()
    {
        for (const auto& channel : channels())
            m_page.say(json{{"type", "hide"}, {"channel", channel["id"]}}.dump());
    }

    void takeFor(double seconds)
    {
        for (const auto begin = Clock::now(); secondsSince(begin) < seconds;)
            take();
    }

    /// Of all channels since their start.
    std::int64_t sum(const char* figure)
    {
        // What the state says is up to a quarter of a second old: the next one is new.
        const auto before = m_statistics;
        waitFor([&] { return m_statistics > before; });
        std::int64_t total = 0;
        for (const auto& each : m_state["statistics"])
            total += each[figure].get<std::int64_t>();
        return total;
    }

    std::int64_t images() const { return m_images; }
    std::size_t imageBytes() const { return m_imageBytes; }

private:
    json& board() { return m_state["boards"][0]; }

    void request(const std::string& name, const json& arguments)
    {
        const int id = ++m_lastId;
        m_page.say(json{{"type", "request"}, {"id", id}, {"name", name}, {"arguments", arguments}}.dump());
        waitFor([&] { return m_answered.contains(id); });
    }

    void take()
    {
        const auto message = m_page.read();
        if (m_page.gotText())
            return takeText(json::parse(message));
        std::uint32_t channel = 0;
        std::memcpy(&channel, message.data() + 8, sizeof channel);
        ++m_images;
        m_imageBytes = message.size();
        m_page.say(R"({"type":"shown","channel":)" + std::to_string(channel) + "}");
    }

    void takeText(const json& message)
    {
        const std::string type = message["type"];
        if (type == "welcome")
            m_state = message["state"];
        else if (type == "changed")
            m_state[message["section"].get<std::string>()] = message["value"];
        else if (type == "done")
            m_answered.insert(message["id"].get<int>());
        else if (type == "failed" || type == "refused")
            throw std::runtime_error(message["text"].get<std::string>());
        if (type == "changed" && message["section"] == "statistics")
            ++m_statistics;
    }

    ViewerPage m_page;
    json m_state;
    std::set<int> m_answered;
    int m_lastId = 0;
    std::int64_t m_images = 0;
    std::int64_t m_statistics = 0;
    std::size_t m_imageBytes = 0;
};

/// Processor seconds of a thread that copies and sends an image of so many bytes, so many a second. Like the
/// program it takes each image from another place, so that none comes from the caches.
double costOfCopyAndSend(std::size_t bytes, double perSecond)
{
    namespace asio = boost::asio;
    using asio::ip::tcp;
    constexpr double SECONDS = 3;
    constexpr std::size_t SOURCE_BYTES = std::size_t{64} << 20;
    const int images = std::max(1, static_cast<int>(SECONDS * perSecond));
    asio::io_context context;
    tcp::acceptor acceptor(context, {asio::ip::address_v4::loopback(), 0});
    tcp::socket receiver(context);
    tcp::socket sender(context);
    receiver.connect(acceptor.local_endpoint());
    acceptor.accept(sender);
    const std::vector<char> source(std::max(SOURCE_BYTES, bytes), 5);
    std::vector<char> copy(bytes);
    std::thread reader([&] {
        std::vector<char> received(bytes);
        for (int i = 0; i < images; ++i)
            asio::read(receiver, asio::buffer(received));
    });
    const auto threadTime = [] {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    };
    const double before = threadTime();
    const auto begin = Clock::now();
    for (int i = 0; i < images; ++i) {
        const std::size_t place = static_cast<std::size_t>(i) * bytes % (source.size() - bytes + 1);
        std::memcpy(copy.data(), source.data() + place, bytes);
        asio::write(sender, asio::buffer(copy));
        std::this_thread::sleep_until(begin + std::chrono::duration_cast<Clock::duration>(
                                                  std::chrono::duration<double>(i / perSecond)));
    }
    const double cost = (threadTime() - before) / images;
    reader.join();
    return cost;
}

struct Window
{
    double seconds;
    double processor; ///< of the program
    std::int64_t arrived, sent, lost;
};

Window watch(const Program& program, Observer& observer, double seconds)
{
    const auto arrived = observer.sum("received");
    const auto lost = observer.sum("lost");
    const auto begin = Clock::now();
    const double processor = program.processorTime();
    const auto images = observer.images();
    observer.takeFor(seconds);
    const double took = secondsSince(begin);
    const double spent = program.processorTime() - processor;
    const auto sent = observer.images() - images;
    return {took, spent, observer.sum("received") - arrived, sent, observer.sum("lost") - lost};
}

void measure(const Program& program, Observer& observer, const char* applet, const char* title,
             std::array<int, 2> screen)
{
    constexpr double SECONDS = 10;
    observer.load(applet);
    const auto channels = static_cast<double>(observer.channels().size());
    observer.start();
    observer.takeFor(1);
    const Window alone = watch(program, observer, SECONDS);
    observer.show(screen[0], screen[1]);
    observer.takeFor(1);
    const Window viewed = watch(program, observer, SECONDS);
    observer.hide();
    observer.stop();

    const auto perImage = [](double cost, std::int64_t images) {
        return cost / static_cast<double>(std::max<std::int64_t>(images, 1)) * 1e6;
    };
    const double unseen = alone.processor / alone.seconds * viewed.seconds;
    const double cost = perImage(viewed.processor - unseen, viewed.sent);
    const double yardstick =
        costOfCopyAndSend(observer.imageBytes(), static_cast<double>(viewed.sent) / viewed.seconds) * 1e6;
    std::printf("%-44s a channel: %.1f/s arrive, %.1f/s are shown; %lld lost\n", title,
                static_cast<double>(viewed.arrived) / viewed.seconds / channels,
                static_cast<double>(viewed.sent) / viewed.seconds / channels,
                static_cast<long long>(alone.lost + viewed.lost));
    std::printf("%-44s %.0f us an image shown (%zu bytes) / memcpy and send %.0f us = %.2f\n",
                "  processor time that showing adds", cost, observer.imageBytes(), yardstick,
                cost / yardstick);
}

void watchMemory(const Program& program, Observer& observer, double minutes)
{
    constexpr int PARTS = 6;
    observer.load("four.hap");
    observer.start();
    observer.show(1024, 768);
    observer.takeFor(5);
    std::printf("memory with four channels shown, MiB, over %.1f minutes:", minutes);
    std::printf(" %.1f", program.memoryInMebibytes());
    for (int i = 0; i < PARTS; ++i) {
        observer.takeFor(minutes * 60 / PARTS);
        std::printf(" %.1f", program.memoryInMebibytes());
        std::fflush(stdout);
    }
    std::printf("; %lld lost\n", static_cast<long long>(observer.sum("lost")));
    observer.stop();
}

void run(double minutes)
{
    const Installation installation;
    const auto begin = Clock::now();
    const Program program(installation);
    Observer observer(program);
    const double ready = secondsSince(begin);
    observer.load("four.hap");
    observer.show(1024, 768);
    const auto asked = Clock::now();
    observer.start();
    observer.waitFor([&] { return observer.images() > 0; });
    std::printf(
        "from the program's start: ready after %.2f s; from pressing start to the first picture: %.1f ms\n",
        ready, secondsSince(asked) * 1e3);
    observer.stop();

    measure(program, observer, "four.hap", "four channels of 1024 x 768 at 60/s", {1024, 768});
    measure(program, observer, "large.hap", "4096 x 3072 of 12 bits at 30/s in 1280 x 960", {1280, 960});
    measure(program, observer, "fast.hap", "512 x 512 at 1,000/s", {512, 512});
    watchMemory(program, observer, minutes);
}

} // namespace

int main(int argc, char** argv)
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0); // each figure is seen when it is known
    double minutes = 1;
    if (argc == 3 && std::strcmp(argv[1], "--minutes") == 0)
        minutes = std::atof(argv[2]);
    try {
        run(minutes);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
