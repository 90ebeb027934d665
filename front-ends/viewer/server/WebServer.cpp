// SPDX-License-Identifier: MIT
#include "server/WebServer.h"

#include "server/Client.h"
#include "server/ListenerOption.h"
#include "server/Token.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ip/v6_only.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/span_body.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>
#include <boost/beast/websocket/rfc6455.hpp>

#include <array>
#include <atomic>
#include <cstddef>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace ovra::viewer {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using asio::ip::tcp;

namespace {

constexpr int MAX_CONNECTIONS = 64;
constexpr std::size_t MAX_CLIENTS = 16;
constexpr std::size_t MAX_HEADER_BYTES = 8192;
constexpr std::chrono::seconds MAX_REQUEST_TIME{10};
constexpr std::chrono::seconds MAX_FAREWELL_TIME{1};
constexpr std::chrono::milliseconds PAUSE_AFTER_ERROR{100};

beast::string_view viewOf(std::string_view text)
{
    return {text.data(), text.size()};
}

std::string_view viewOf(beast::string_view text)
{
    return {text.data(), text.size()};
}

/// Answers the requests of a connection until it closes or becomes a WebSocket.
class HttpConnection : public std::enable_shared_from_this<HttpConnection>
{
public:
    using Upgraded = std::function<void(beast::tcp_stream, std::shared_ptr<void> place, Client::Upgrade)>;

    HttpConnection(tcp::socket socket, std::shared_ptr<void> place, const HttpPolicy& policy,
                   Upgraded upgraded)
        : m_stream(std::move(socket)),
          m_place(std::move(place)),
          m_policy(policy),
          m_upgraded(std::move(upgraded))
    {}

    void read()
    {
        m_parser = std::make_unique<Parser>();
        m_parser->header_limit(MAX_HEADER_BYTES);
        m_stream.expires_after(MAX_REQUEST_TIME);
        http::async_read_header(
            m_stream, m_input, *m_parser,
            [self = shared_from_this()](beast::error_code error, std::size_t) { self->onHeader(error); });
    }

private:
    using Parser = http::request_parser<http::empty_body>;

    void onHeader(beast::error_code error)
    {
        if (error == http::error::header_limit)
            return refuse(431, "the request is too long", true);
        if (error == http::error::body_limit)
            return refuse(413, "a request has no body here", true);
        if (error && error.category() == http::make_error_code(http::error::bad_method).category() &&
            error != http::error::end_of_stream && error != http::error::partial_message)
            return refuse(400, "the request cannot be read", true);
        if (error)
            return;
        answer();
    }

    HttpRequest describe() const
    {
        const auto& request = m_parser->get();
        HttpRequest description;
        description.method = viewOf(request.method_string());
        description.target = viewOf(request.target());
        description.host = viewOf(request[http::field::host]);
        description.origin = viewOf(request[http::field::origin]);
        description.upgrade = beast::websocket::is_upgrade(request);
        description.hasBody = m_parser->chunked() || m_parser->content_length().value_or(0) > 0;
        description.repeatedHeader =
            request.count(http::field::host) > 1 || request.count(http::field::origin) > 1;
        return description;
    }

    void answer()
    {
        const HttpRequest request = describe();
        const HttpAnswer answer = m_policy.answer(request);
        if (answer.kind == HttpAnswer::Kind::WebSocket)
            return m_upgraded(std::move(m_stream), m_place, m_parser->release());
        if (answer.kind == HttpAnswer::Kind::File)
            return sendFile(*answer.file);
        // The rest of a body would be read as the next request.
        refuse(answer.status, answer.reason, request.hasBody);
    }

    template <class Body>
    http::response<Body> response(unsigned status, std::string_view type)
    {
        http::response<Body> response;
        response.version(11);
        response.result(status);
        for (const auto& header : m_policy.securityHeaders())
            response.set(viewOf(header.name), viewOf(header.value));
        response.set(http::field::content_type, viewOf(type));
        return response;
    }

    void sendFile(const PageFile& file)
    {
        auto response = this->response<http::span_body<const char>>(200, file.type);
        response.body() = {file.content.data(), file.content.size()};
        send(std::move(response), !m_parser->keep_alive());
    }

    void refuse(unsigned status, std::string_view reason, bool last)
    {
        auto response = this->response<http::string_body>(status, "text/plain; charset=utf-8");
        if (m_parser->get().method() != http::verb::head) // whose answer has no body
            response.body() = std::string(reason) + "\n";
        if (status == 405)
            response.set(http::field::allow, "GET");
        send(std::move(response), last || !m_parser->keep_alive());
    }

    template <class Response>
    void send(Response&& response, bool last)
    {
        auto shared = std::make_shared<std::decay_t<Response>>(std::forward<Response>(response));
        shared->keep_alive(!last);
        shared->prepare_payload();
        http::async_write(m_stream, *shared,
                          [self = shared_from_this(), shared, last](beast::error_code error, std::size_t) {
                              if (error)
                                  return;
                              if (last)
                                  self->sayFarewell();
                              else
                                  self->read();
                          });
    }

    /// Closing a socket that has unread input can drop the answer before the client gets it.
    void sayFarewell()
    {
        beast::error_code ignored;
        m_stream.socket().shutdown(tcp::socket::shutdown_send, ignored);
        m_stream.expires_after(MAX_FAREWELL_TIME);
        discard();
    }

    void discard()
    {
        m_stream.async_read_some(asio::buffer(m_discarded),
                                 [self = shared_from_this()](beast::error_code error, std::size_t) {
                                     if (!error)
                                         self->discardMore();
                                 });
    }

    void discardMore()
    {
        constexpr int MAX_READS = 1024;
        if (++m_discards < MAX_READS)
            discard();
    }

    beast::tcp_stream m_stream;
    const std::shared_ptr<void> m_place;
    const HttpPolicy& m_policy;
    const Upgraded m_upgraded;
    beast::flat_buffer m_input{2 * MAX_HEADER_BYTES};
    std::unique_ptr<Parser> m_parser; ///< one for each request
    std::array<char, 4096> m_discarded{};
    int m_discards = 0;
};

using Accepted = std::function<void(tcp::socket)>;

/// Accepts connections at one address until the context stops.
class Listener
{
public:
    Listener(asio::io_context& context, const tcp::endpoint& endpoint, Accepted accepted)
        : m_acceptor(context, endpoint.protocol()),
          m_pause(context),
          m_accepted(std::move(accepted))
    {
        if (endpoint.address().is_v6())
            m_acceptor.set_option(asio::ip::v6_only(true));
        takePortAlone(m_acceptor);
        m_acceptor.bind(endpoint);
        m_acceptor.listen();
    }

    unsigned short port() const { return m_acceptor.local_endpoint().port(); }

    void accept()
    {
        m_acceptor.async_accept([this](beast::error_code error, tcp::socket socket) {
            if (error == asio::error::operation_aborted)
                return;
            if (error)
                return acceptLater();
            m_accepted(std::move(socket));
            accept();
        });
    }

private:
    /// While the process has no descriptors left, each attempt fails at once.
    void acceptLater()
    {
        m_pause.expires_after(PAUSE_AFTER_ERROR);
        m_pause.async_wait([this](beast::error_code error) {
            if (!error)
                accept();
        });
    }

    tcp::acceptor m_acceptor;
    asio::steady_timer m_pause;
    const Accepted m_accepted;
};

/// Memory for the queued news handler, of which there is one at most, so that showImage never allocates.
template <class Type>
class NewsMemory
{
public:
    using value_type = Type;
    using Place = std::array<std::byte, 256>;

    explicit NewsMemory(Place& place) : m_place(&place) {}
    template <class Other>
    explicit(false) NewsMemory(const NewsMemory<Other>& other) : m_place(&other.place())
    {}

    Type* allocate(std::size_t)
    {
        static_assert(sizeof(Type) <= sizeof(Place) && alignof(Type) <= alignof(std::max_align_t));
        return static_cast<Type*>(static_cast<void*>(m_place->data()));
    }
    void deallocate(Type*, std::size_t) {}
    Place& place() const { return *m_place; }
    friend bool operator==(const NewsMemory& left, const NewsMemory& right)
    {
        return left.m_place == right.m_place;
    }

private:
    Place* m_place;
};

} // namespace

struct WebServer::State
{
    State(ImageFeeds& images, Handlers calls)
        : channels(images),
          handlers(std::move(calls)),
          token(makeToken())
    {}

    /// Runs on the network thread.
    struct SpreadNews
    {
        using allocator_type = NewsMemory<void>;
        allocator_type get_allocator() const { return allocator_type(state->newsPlace); }
        void operator()() const { state->spreadNews(); }

        State* state;
    };

    void listen(unsigned short port);
    bool tryPort(unsigned short port);
    void accepted(tcp::socket socket);
    void upgraded(beast::tcp_stream stream, std::shared_ptr<void> place, Client::Upgrade upgrade);
    bool enter(const std::shared_ptr<Client>& client);
    void leave(ClientId id);
    std::shared_ptr<Client> find(ClientId id) const;
    std::vector<std::shared_ptr<Client>> all() const;
    void queueNews();
    void spreadNews();

    alignas(std::max_align_t) NewsMemory<void>::Place newsPlace{}; ///< outlives the context's handlers
    std::atomic<bool> newsQueued{false};
    asio::io_context context{1}; ///< runs on one thread: a second would be woken for each piece of an image
    ImageFeeds& channels;
    const Handlers handlers;
    const std::string token;
    std::unique_ptr<const HttpPolicy> policy;
    std::vector<std::unique_ptr<Listener>> listeners;
    std::shared_ptr<std::atomic<int>> connections = std::make_shared<std::atomic<int>>(0);
    mutable std::mutex mutex;
    std::map<ClientId, std::shared_ptr<Client>> clients; ///< that were let in
    std::atomic<ClientId> lastId{0};
    std::thread thread;
};

bool WebServer::State::tryPort(unsigned short port)
{
    const auto accept = [this](tcp::socket socket) { accepted(std::move(socket)); };
    listeners.clear();
    try {
        listeners.push_back(std::make_unique<Listener>(
            context, tcp::endpoint(asio::ip::address_v4::loopback(), port), accept));
    } catch (const boost::system::system_error& error) {
        if (error.code() == asio::error::address_in_use || error.code() == asio::error::access_denied)
            return false;
        throw;
    }
    try {
        const tcp::endpoint endpoint(asio::ip::address_v6::loopback(), listeners.front()->port());
        listeners.push_back(std::make_unique<Listener>(context, endpoint, accept));
    } catch (const boost::system::system_error& error) {
        // A machine without IPv6 has no clients there.
        return error.code() != asio::error::address_in_use;
    }
    return true;
}

void WebServer::State::listen(unsigned short port)
{
    constexpr int MAX_ATTEMPTS = 16;
    bool listening = tryPort(port);
    for (int i = 0; !listening && i < MAX_ATTEMPTS; ++i)
        listening = tryPort(0);
    if (!listening)
        throw std::runtime_error("no port to listen on is free");
    policy = std::make_unique<const HttpPolicy>(listeners.front()->port());
    for (const auto& listener : listeners)
        listener->accept();
}

void WebServer::State::accepted(tcp::socket socket)
{
    ++*connections;
    const std::shared_ptr<void> place(nullptr, [count = connections](void*) { --*count; });
    if (*connections > MAX_CONNECTIONS)
        return; // the socket is closed
    beast::error_code ignored;
    socket.set_option(tcp::no_delay(true), ignored);
    const auto upgrade = [this](beast::tcp_stream stream, std::shared_ptr<void> itsPlace,
                                Client::Upgrade request) {
        upgraded(std::move(stream), std::move(itsPlace), std::move(request));
    };
    const auto executor = socket.get_executor();
    const auto connection = std::make_shared<HttpConnection>(std::move(socket), place, *policy, upgrade);
    asio::post(executor, [connection] { connection->read(); });
}

void WebServer::State::upgraded(beast::tcp_stream stream, std::shared_ptr<void> place,
                                Client::Upgrade upgrade)
{
    Client::Surroundings surroundings{token,
                                      *policy,
                                      channels,
                                      handlers,
                                      [this](const std::shared_ptr<Client>& client) { return enter(client); },
                                      [this](ClientId id) { leave(id); }};
    std::make_shared<Client>(++lastId, std::move(stream), std::move(place), std::move(surroundings))
        ->accept(std::move(upgrade));
}

bool WebServer::State::enter(const std::shared_ptr<Client>& client)
{
    const std::lock_guard lock(mutex);
    if (clients.size() >= MAX_CLIENTS)
        return false;
    clients[client->id()] = client;
    return true;
}

void WebServer::State::leave(ClientId id)
{
    std::shared_ptr<Client> gone; // destroyed after the lock is released
    const std::lock_guard lock(mutex);
    const auto found = clients.find(id);
    if (found == clients.end())
        return;
    gone = found->second;
    clients.erase(found);
}

std::shared_ptr<Client> WebServer::State::find(ClientId id) const
{
    const std::lock_guard lock(mutex);
    const auto found = clients.find(id);
    return found == clients.end() ? nullptr : found->second;
}

std::vector<std::shared_ptr<Client>> WebServer::State::all() const
{
    std::vector<std::shared_ptr<Client>> list;
    const std::lock_guard lock(mutex);
    for (const auto& [id, client] : clients)
        list.push_back(client);
    return list;
}

// Runs on a scene's thread. The handler's memory is free again when the handler begins to run.
void WebServer::State::queueNews()
{
    if (!newsQueued.exchange(true))
        asio::post(context, SpreadNews{this});
}

void WebServer::State::spreadNews()
{
    newsQueued = false;
    const auto fresh = channels.takeNews();
    for (const auto& client : all())
        for (const auto channel : fresh)
            client->offer(channel);
}

WebServer::WebServer(unsigned short port, ImageFeeds& channels, Handlers handlers)
    : m_state(std::make_unique<State>(channels, std::move(handlers)))
{
    m_state->listen(port);
    m_state->thread = std::thread([this] { m_state->context.run(); });
    channels.setListener([this] { m_state->queueNews(); });
}

WebServer::~WebServer()
{
    m_state->channels.setListener({});
    m_state->context.stop();
    m_state->thread.join();
    m_state->clients.clear();
}

unsigned short WebServer::port() const
{
    return m_state->listeners.front()->port();
}

std::string WebServer::address() const
{
    return "http://127.0.0.1:" + std::to_string(port()) + "/#token=" + m_state->token;
}

void WebServer::subscribe(ClientId client, std::string first)
{
    const auto found = m_state->find(client);
    if (!found)
        return;
    found->send(std::make_shared<const std::string>(std::move(first)));
    found->subscribe();
}

void WebServer::answer(ClientId client, std::string text)
{
    if (const auto found = m_state->find(client))
        found->answer(std::make_shared<const std::string>(std::move(text)));
}

void WebServer::publish(std::string text)
{
    const auto shared = std::make_shared<const std::string>(std::move(text));
    for (const auto& client : m_state->all())
        if (client->isSubscribed())
            client->send(shared);
}

std::size_t WebServer::clientCount() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->clients.size();
}

} // namespace ovra::viewer
