// SPDX-License-Identifier: MIT
// The cost of the viewer: an image from the scene into the mailbox, from there into a message, and the whole
// way to a client.
//
// Yardsticks: a memcpy of the same bytes; for the way to a client, a bare loopback connection that carries
// them. How long an image takes is told by its percentiles, behind the ratios.

#include "Ratios.h"
#include "ViewerPage.h"

#include "images/ImageFeeds.h"
#include "images/ImageMessage.h"
#include "server/WebServer.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <mutex>
#include <semaphore>
#include <thread>

namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using namespace ovra::viewer;
using ovra::display::PixelFormat;

struct Source
{
    Source(int width, int height, PixelFormat format)
    {
        image.width = width;
        image.height = height;
        image.format = format;
        image.bytesPerLine = ovra::display::bytesPerLine(format, width);
        pixels.resize(image.bytes(), 5);
        image.pixels = pixels.data();
    }
    std::vector<std::uint8_t> pixels;
    ovra::display::Image image;
};

Source& cameraImage()
{
    static Source source(1024, 768, PixelFormat::Mono8);
    return source;
}

Source& largeImage()
{
    static Source source(4096, 3072, PixelFormat::Mono12);
    return source;
}

void copyBytes(benchmark::State& state, const Source& source)
{
    std::vector<std::uint8_t> target(source.pixels.size());
    for (auto each : state) {
        std::memcpy(target.data(), source.pixels.data(), source.pixels.size());
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
}

void copyCameraImage(benchmark::State& state)
{
    copyBytes(state, cameraImage());
}

void copyLargeImage(benchmark::State& state)
{
    copyBytes(state, largeImage());
}

void showInMailbox(benchmark::State& state)
{
    ImageMailbox mailbox([] {});
    for (auto each : state)
        mailbox.showImage(cameraImage().image);
}

void writeMessages(benchmark::State& state, const Source& source, int left, int screenWidth, int screenHeight)
{
    const auto frame = std::make_shared<Frame>();
    copyImage(source.image, *frame);
    const auto view = fitView({left, 0, frame->width - left, frame->height}, screenWidth, screenHeight,
                              frame->width, frame->height);
    ImageMessage message;
    for (auto each : state) {
        message.write(1, 1, frame, view);
        benchmark::DoNotOptimize(message.pixels().data());
    }
}

// Whole lines would not be copied.
void writeCropped(benchmark::State& state)
{
    writeMessages(state, cameraImage(), 1, 1024, 768);
}

void writeBinned(benchmark::State& state)
{
    writeMessages(state, largeImage(), 0, 1280, 960);
}

constexpr const char* SHOW_ALL =
    R"({"type":"show","channel":1,"view":1,"region":[0,0,1024,768],"screen":[1024,768],"histogram":false})";
constexpr const char* SHOWN = R"({"type":"shown","channel":1})";

/// The way of an image from the scene's thread to a reader on another one.
class Way
{
public:
    virtual ~Way() = default;
    virtual void send() = 0;
    virtual void receive() = 0;
};

/// Through mailbox, server and WebSocket.
class ViewerWay final : public Way
{
public:
    ViewerWay() { m_page.say(SHOW_ALL); }

    void send() override { m_channel->mailbox().showImage(cameraImage().image); }
    void receive() override
    {
        m_page.readImage();
        m_page.say(SHOWN);
    }

private:
    ImageFeeds m_channels;
    std::shared_ptr<ImageFeed> m_channel = m_channels.add();
    WebServer m_server{0,
                       m_channels,
                       {.joined = [](ClientId) {},
                        .requested = [](ClientId, const Request&) {},
                        .refused = [](const std::string&) {}}};
    ovra::bench::ViewerPage m_page{m_server.address()};
};

/// Through a bare connection: another thread, woken as the server's are, sends.
class BareWay final : public Way
{
public:
    BareWay()
    {
        tcp::acceptor acceptor(m_context, {asio::ip::address_v4::loopback(), 0});
        m_receiver.connect(acceptor.local_endpoint());
        acceptor.accept(m_sender);
        m_sender.set_option(tcp::no_delay(true));
        m_writer = std::thread([this] { write(); });
    }
    ~BareWay() override
    {
        ask(m_ended);
        m_writer.join();
    }

    void send() override { ask(m_wanted); }
    void receive() override { asio::read(m_receiver, asio::buffer(m_received)); }

private:
    void ask(bool& what)
    {
        {
            const std::lock_guard lock(m_mutex);
            what = true;
        }
        m_changed.notify_one();
    }

    void write()
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_changed.wait(lock, [&] { return m_wanted || m_ended; });
            if (m_ended)
                return;
            m_wanted = false;
            asio::write(m_sender, asio::buffer(cameraImage().pixels));
        }
    }

    asio::io_context m_context;
    tcp::socket m_receiver{m_context};
    tcp::socket m_sender{m_context};
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_wanted = false;
    bool m_ended = false;
    std::vector<std::uint8_t> m_received = std::vector<std::uint8_t>(cameraImage().pixels.size());
    std::thread m_writer;
};

/// The least that a server can do: one copy, because the source's buffer is soon another image, and one send.
class CopyingWay final : public Way
{
public:
    CopyingWay()
    {
        tcp::acceptor acceptor(m_context, {asio::ip::address_v4::loopback(), 0});
        m_receiver.connect(acceptor.local_endpoint());
        acceptor.accept(m_sender);
    }

    void send() override
    {
        const auto& pixels = cameraImage().pixels;
        std::memcpy(m_copy.data(), pixels.data(), pixels.size());
        asio::write(m_sender, asio::buffer(m_copy));
    }
    void receive() override { asio::read(m_receiver, asio::buffer(m_received)); }

private:
    asio::io_context m_context;
    tcp::socket m_receiver{m_context};
    tcp::socket m_sender{m_context};
    std::vector<std::uint8_t> m_copy = std::vector<std::uint8_t>(cameraImage().pixels.size());
    std::vector<std::uint8_t> m_received = m_copy;
};

double secondsOf(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Processor time of an image, of all threads but the reader's.
template <class Measured>
void spendProcessorTime(benchmark::State& state)
{
    constexpr int IMAGES = 50;
    Measured way;
    for (auto each : state) {
        std::binary_semaphore arrived{0};
        double readers = 0;
        const double before = secondsOf(CLOCK_PROCESS_CPUTIME_ID);
        std::thread reader([&] {
            for (int i = 0; i < IMAGES; ++i) {
                way.receive();
                arrived.release();
            }
            readers = secondsOf(CLOCK_THREAD_CPUTIME_ID);
        });
        for (int i = 0; i < IMAGES; ++i) {
            way.send();
            arrived.acquire();
        }
        reader.join();
        state.SetIterationTime((secondsOf(CLOCK_PROCESS_CPUTIME_ID) - before - readers) / IMAGES);
    }
}

double percentile(std::vector<double>& values, double share)
{
    const auto place =
        values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

void addDelays(Way& way, int count, std::vector<double>& delays)
{
    using Clock = std::chrono::steady_clock;
    for (int i = 0; i < count; ++i) {
        const auto begin = Clock::now();
        way.send();
        way.receive();
        delays.push_back(std::chrono::duration<double, std::micro>(Clock::now() - begin).count());
    }
}

/// False when the median's goal is not kept.
bool compareDelays()
{
    constexpr int ROUNDS = 40;
    constexpr int IMAGES = 50;
    constexpr double GOAL = 1.5;
    ViewerWay viewer;
    BareWay bare;
    std::vector<double> measured;
    std::vector<double> yardstick;
    std::vector<double> warmUp;
    addDelays(viewer, IMAGES, warmUp);
    addDelays(bare, IMAGES, warmUp);
    for (int i = 0; i < ROUNDS; ++i) {
        addDelays(viewer, IMAGES, measured);
        addDelays(bare, IMAGES, yardstick);
    }
    bool kept = true;
    for (const double share : {0.5, 0.99}) {
        const double ours = percentile(measured, share);
        const double theirs = percentile(yardstick, share);
        const bool promised = share == 0.5;
        const bool exceeded = promised && ours > GOAL * theirs;
        kept = kept && !exceeded;
        std::printf(
            "viewer: showImage to receipt / bare loopback, p%-6.0f %8.3f   %12.0f us / %12.0f us   %s%s\n",
            share * 100, ours / theirs, ours, theirs, promised ? "limit 1.50" : "reported",
            exceeded ? "  EXCEEDED" : "");
    }
    return kept;
}

RATIO("viewer: image into the mailbox / memcpy", showInMailbox, copyCameraImage, 1.5);
RATIO("viewer: message of all columns but one / memcpy of them", writeCropped, copyCameraImage, 1.5);
RATIO("viewer: 4096 x 3072 of 12 bits for 1280 x 960 / memcpy of the image", writeBinned, copyLargeImage, 0);
RATIO("viewer: processor time of an image / memcpy and send", spendProcessorTime<ViewerWay>,
      spendProcessorTime<CopyingWay>, 1.5, ovra::bench::Clock::Own);

} // namespace

int main(int argc, char** argv)
{
    const bool strict = argc > 1 && std::strcmp(argv[argc - 1], "--strict") == 0;
    const int outcome = ovra::bench::runRatios(argc, argv);
    const bool kept = compareDelays();
    return outcome == 0 && strict && !kept ? 1 : outcome;
}
