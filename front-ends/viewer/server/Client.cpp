// SPDX-License-Identifier: MIT
#include "server/Client.h"

#include "server/StateDocument.h"
#include "server/Token.h"

#include <boost/asio/post.hpp>
#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/websocket/rfc6455.hpp>

#include <array>
#include <chrono>
#include <string_view>
#include <utility>

namespace ovra::viewer {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace websocket = beast::websocket;

namespace {

constexpr std::size_t MAX_HELLO_BYTES = 1024;
constexpr std::size_t MAX_MESSAGE_BYTES = std::size_t{4} << 20; // a configuration that is uploaded
constexpr std::size_t MAX_UNREAD_BYTES = std::size_t{32} << 20;
constexpr std::chrono::seconds MAX_SILENCE_BEFORE_HELLO{10};

/// Disconnects a client that does not answer a ping within the idle time.
websocket::stream_base::timeout timeouts()
{
    return {std::chrono::seconds(10), std::chrono::seconds(30), true};
}

} // namespace

Client::Client(ClientId id, beast::tcp_stream stream, std::shared_ptr<void> place, Surroundings surroundings)
    : m_id(id),
      m_stream(std::move(stream)),
      m_deadline(m_stream.get_executor()),
      m_place(std::move(place)),
      m_surroundings(std::move(surroundings)),
      m_images(m_surroundings.channels)
{}

Client::~Client() = default;

void Client::accept(Upgrade upgrade)
{
    m_upgrade = std::move(upgrade);
    beast::get_lowest_layer(m_stream).expires_never(); // the WebSocket has its own time limits
    m_stream.set_option(timeouts());
    m_stream.set_option(websocket::stream_base::decorator([this](websocket::response_type& response) {
        for (const auto& header : m_surroundings.policy.securityHeaders())
            response.set(beast::string_view(header.name.data(), header.name.size()),
                         beast::string_view(header.value.data(), header.value.size()));
    }));
    m_stream.read_message_max(MAX_HELLO_BYTES);
    m_stream.auto_fragment(false);
    m_deadline.expires_after(MAX_SILENCE_BEFORE_HELLO);
    m_deadline.async_wait([self = weak_from_this()](const boost::system::error_code& error) {
        const auto client = self.lock();
        if (!error && client && !client->m_welcome)
            client->end();
    });
    m_stream.async_accept(m_upgrade, [self = shared_from_this()](beast::error_code error) {
        if (!error)
            self->read();
    });
}

void Client::send(std::shared_ptr<const std::string> text)
{
    asio::post(m_stream.get_executor(), [self = shared_from_this(), text = std::move(text)]() mutable {
        self->enqueue(std::move(text));
    });
}

void Client::answer(std::shared_ptr<const std::string> text)
{
    asio::post(m_stream.get_executor(), [self = shared_from_this(), text = std::move(text)]() mutable {
        --self->m_unanswered;
        self->enqueue(std::move(text));
    });
}

void Client::close()
{
    asio::post(m_stream.get_executor(), [self = shared_from_this()] { self->end(); });
}

void Client::read()
{
    m_stream.async_read(
        m_input, [self = shared_from_this()](beast::error_code error, std::size_t) { self->onRead(error); });
}

void Client::onRead(beast::error_code error)
{
    if (error || m_ended)
        return end();
    const bool text = m_stream.got_text();
    const std::string message = beast::buffers_to_string(m_input.data());
    m_input.consume(m_input.size());
    try {
        if (!text)
            throw MessageError("messages are texts");
        handle(readMessage(message));
    } catch (const MessageError& wrong) {
        refuse(wrong.what());
    }
    if (!m_refused)
        read();
}

void Client::handle(const Message& message)
{
    if (const auto* hello = std::get_if<Hello>(&message); hello || !m_welcome) {
        if (!hello || m_welcome)
            throw MessageError("a page says hello first, and once");
        return welcome(*hello);
    }
    if (const auto* request = std::get_if<Request>(&message))
        return handle(*request);
    if (const auto* view = std::get_if<ShowView>(&message)) {
        m_images.show(*view);
        return enqueueImage(view->channel);
    }
    if (const auto* hidden = std::get_if<HideView>(&message))
        return m_images.hide(hidden->channel);
    const auto channel = std::get<Acknowledge>(message).channel;
    m_images.acknowledge(channel);
    enqueueImage(channel);
}

// Requests wait for the GUI thread in memory, each up to the size of a message.
void Client::handle(const Request& request)
{
    constexpr int MAX_UNANSWERED = 16;
    if (m_unanswered >= MAX_UNANSWERED)
        return enqueue(std::make_shared<const std::string>(
            jsonText({{"type", "failed"},
                      {"id", request.id},
                      {"text", "too many requests wait for their answers; try again later"},
                      {"noticed", false}})));
    ++m_unanswered;
    m_surroundings.handlers.requested(m_id, request);
}

void Client::welcome(const Hello& hello)
{
    if (hello.version != PROTOCOL_VERSION)
        throw MessageError("this program speaks version " + std::to_string(PROTOCOL_VERSION) +
                           " of the protocol; reload the page");
    if (!sameToken(hello.token, m_surroundings.token)) {
        m_surroundings.handlers.refused("A page with a wrong token was not let in.");
        throw MessageError("the token is not that of this run; open the address that ovra-viewer printed");
    }
    m_welcome = true;
    m_deadline.cancel();
    m_stream.read_message_max(MAX_MESSAGE_BYTES);
    if (!m_surroundings.enter(shared_from_this()))
        throw MessageError("too many pages are open already");
    m_surroundings.handlers.joined(m_id);
}

/// Sends the reason, then closes the connection.
void Client::refuse(const std::string& text)
{
    m_refused = true;
    enqueue(std::make_shared<const std::string>(jsonText({{"type", "refused"}, {"text", text}})));
}

void Client::enqueue(Text text)
{
    if (m_ended)
        return;
    m_outgoingBytes += text->size();
    if (m_outgoingBytes > MAX_UNREAD_BYTES)
        return end();
    m_outgoing.emplace_back(std::move(text));
    if (m_outgoing.size() == 1)
        write();
}

void Client::enqueueImage(std::uint32_t channel)
{
    if (m_ended || m_refused)
        return;
    auto next = m_images.next(channel);
    if (!next.values.empty())
        enqueue(std::make_shared<const std::string>(std::move(next.values)));
    if (next.histogram)
        enqueue(next.histogram);
    if (!next.image || m_ended)
        return;
    m_outgoing.emplace_back(channel);
    m_ready[channel] = next.image;
    if (m_outgoing.size() == 1)
        write();
}

void Client::write()
{
    const auto written = [self = shared_from_this()](beast::error_code error, std::size_t) {
        self->onWritten(error);
    };
    if (const auto* text = std::get_if<Text>(&m_outgoing.front())) {
        m_stream.text(true);
        return m_stream.async_write(asio::buffer(**text), written);
    }
    m_stream.binary(true);
    const ImageMessage& image = *m_ready[std::get<std::uint32_t>(m_outgoing.front())];
    const std::array<asio::const_buffer, 2> parts{
        asio::buffer(image.header()), asio::const_buffer(image.pixels().data(), image.pixels().size())};
    m_stream.async_write(parts, written);
}

void Client::onWritten(beast::error_code error)
{
    if (error)
        return end();
    const Outgoing sent = std::move(m_outgoing.front());
    m_outgoing.pop_front();
    if (const auto* text = std::get_if<Text>(&sent))
        m_outgoingBytes -= (*text)->size();
    if (!m_outgoing.empty())
        write();
    else if (m_refused)
        return end();
    if (const auto* channel = std::get_if<std::uint32_t>(&sent)) {
        m_images.written(*channel);
        enqueueImage(*channel);
    }
}

// No closing handshake: a client that is disconnected because it is silent would not answer it.
void Client::end()
{
    if (std::exchange(m_ended, true))
        return;
    m_deadline.cancel();
    beast::error_code ignored;
    auto& socket = beast::get_lowest_layer(m_stream).socket();
    socket.shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
    socket.close(ignored);
    m_surroundings.leave(m_id);
}

} // namespace ovra::viewer
