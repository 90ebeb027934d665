// The cost of the viewer: an image from the scene into the mailbox, from there into a message, and the whole
// way to a client.
//
// Yardsticks: a memcpy of the same bytes; for the way to a client, a bare loopback connection that carries
// them.

#include "Ratios.h"

#include "images/Channels.h"
#include "images/ImageMessage.h"
#include "server/WebServer.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/field.hpp>
#include <boost/beast/websocket/stream.hpp>

#include <array>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
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

void writeMessages(benchmark::State& state, const Source& source, int screenWidth, int screenHeight)
{
    Frame frame;
    copyImage(source.image, frame);
    const auto view =
        fitView({0, 0, frame.width, frame.height}, screenWidth, screenHeight, frame.width, frame.height);
    std::vector<std::uint8_t> message;
    for (auto each : state) {
        writeImageMessage(1, 1, frame, view, message);
        benchmark::DoNotOptimize(message.data());
    }
}

void writeWhole(benchmark::State& state)
{
    writeMessages(state, cameraImage(), 1024, 768);
}

void writeBinned(benchmark::State& state)
{
    writeMessages(state, largeImage(), 1280, 960);
}

/// A page that draws nothing.
class Page
{
public:
    explicit Page(const WebServer& server) : m_stream(m_context)
    {
        const std::string host = "127.0.0.1:" + std::to_string(server.port());
        m_stream.next_layer().connect({asio::ip::address_v4::loopback(), server.port()});
        m_stream.next_layer().set_option(tcp::no_delay(true));
        m_stream.set_option(
            beast::websocket::stream_base::decorator([host](beast::websocket::request_type& request) {
                request.set(beast::http::field::origin, "http://" + host);
            }));
        m_stream.handshake(host, "/socket");
        const std::string address = server.address();
        say(R"({"type":"hello","version":1,"token":")" + address.substr(address.find('=') + 1) + "\"}");
        say(R"({"type":"show","channel":1,"view":1,"region":[0,0,1024,768],"screen":[1024,768],"histogram":false})");
    }

    void say(const std::string& text)
    {
        m_stream.text(true);
        m_stream.write(asio::buffer(text));
    }

    void readImage()
    {
        do {
            m_input.clear();
            m_stream.read(m_input);
        } while (m_stream.got_text());
    }

private:
    asio::io_context m_context;
    beast::websocket::stream<tcp::socket> m_stream;
    beast::flat_buffer m_input;
};

void sendThroughServer(benchmark::State& state)
{
    Channels channels;
    const auto channel = channels.add();
    WebServer server(0, channels,
                     {.joined = [](ClientId) {},
                      .left = [](ClientId) {},
                      .requested = [](ClientId, const Request&) {},
                      .refused = [](const std::string&) {}});
    Page page(server);
    for (auto each : state) {
        channel->mailbox().showImage(cameraImage().image);
        page.readImage();
        page.say(R"({"type":"shown","channel":1})");
    }
}

/// Another thread, woken as the server's are, writes to a connection that this one reads.
void sendBare(benchmark::State& state)
{
    asio::io_context context;
    tcp::acceptor acceptor(context, {asio::ip::address_v4::loopback(), 0});
    tcp::socket receiver(context);
    tcp::socket sender(context);
    receiver.connect(acceptor.local_endpoint());
    acceptor.accept(sender);
    sender.set_option(tcp::no_delay(true));

    const auto& pixels = cameraImage().pixels;
    std::mutex mutex;
    std::condition_variable changed;
    bool wanted = false;
    bool ended = false;
    std::thread writer([&] {
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [&] { return wanted || ended; });
            if (ended)
                return;
            wanted = false;
            asio::write(sender, asio::buffer(pixels));
        }
    });
    std::vector<std::uint8_t> received(pixels.size());
    for (auto each : state) {
        {
            const std::lock_guard lock(mutex);
            wanted = true;
        }
        changed.notify_one();
        asio::read(receiver, asio::buffer(received));
    }
    {
        const std::lock_guard lock(mutex);
        ended = true;
    }
    changed.notify_one();
    writer.join();
}

RATIO("viewer: image into the mailbox / memcpy", showInMailbox, copyCameraImage, 1.5);
RATIO("viewer: message of all pixels / memcpy of them", writeWhole, copyCameraImage, 1.5);
RATIO("viewer: 4096 x 3072 of 12 bits for 1280 x 960 / memcpy of the image", writeBinned, copyLargeImage, 0);
RATIO("viewer: showImage to receipt / bare loopback", sendThroughServer, sendBare, 1.5);

} // namespace

int main(int argc, char** argv)
{
    return ovra::bench::runRatios(argc, argv);
}
