// SPDX-License-Identifier: MIT
/// \file
/// Client: a browser's WebSocket, from the upgrade to its end.
#pragma once

#include "server/ImageStreams.h"
#include "server/Message.h"
#include "server/WebServer.h"

#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/websocket/stream.hpp>

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <variant>

namespace ovra::viewer {

/// Runs on the network thread, except functions marked "any thread".
class Client : public std::enable_shared_from_this<Client>
{
public:
    using Upgrade = boost::beast::http::request<boost::beast::http::empty_body>;

    struct Surroundings
    {
        const std::string& token;
        const HttpPolicy& policy;
        const ImageFeeds& channels;
        const WebServer::Handlers& handlers;
        /// Adds the client to the server's list. False if the list is full.
        std::function<bool(const std::shared_ptr<Client>&)> enter;
        std::function<void(ClientId)> leave;
    };

    Client(ClientId id, boost::beast::tcp_stream stream, std::shared_ptr<void> place,
           Surroundings surroundings);
    ~Client();

    void accept(Upgrade upgrade);

    ClientId id() const { return m_id; }
    /// Any thread. Queues a text. A client that leaves too much unread is disconnected.
    void send(std::shared_ptr<const std::string> text);
    /// The same, for the answer to a request.
    void answer(std::shared_ptr<const std::string> text);
    /// The channel may have a new image.
    void offer(std::uint32_t channel) { enqueueImage(channel); }
    /// Any thread. From now on the client gets everything that is published.
    void subscribe() { m_subscribed = true; }
    bool isSubscribed() const { return m_subscribed; }
    /// Any thread.
    void close();

private:
    using Text = std::shared_ptr<const std::string>;
    using Outgoing = std::variant<Text, std::uint32_t>; ///< a text, or a channel with an image message

    void read();
    void onRead(boost::beast::error_code error);
    void handle(const Message& message);
    void handle(const Request& request);
    void welcome(const Hello& hello);
    void refuse(const std::string& text);
    void enqueue(Text text);
    void enqueueImage(std::uint32_t channel);
    void write();
    void onWritten(boost::beast::error_code error);
    void end();

    const ClientId m_id;
    boost::beast::websocket::stream<boost::beast::tcp_stream> m_stream;
    boost::asio::steady_timer m_deadline;
    const std::shared_ptr<void> m_place; ///< counts as one of the server's connections
    const Surroundings m_surroundings;
    Upgrade m_upgrade;
    boost::beast::flat_buffer m_input;
    std::deque<Outgoing> m_outgoing;
    std::size_t m_outgoingBytes = 0; ///< of texts
    int m_unanswered = 0;            ///< requests
    ImageStreams m_images;
    std::map<std::uint32_t, const ImageMessage*> m_ready; ///< being written or waiting
    bool m_welcome = false;                               ///< sent the right token
    bool m_refused = false;
    bool m_ended = false;
    std::atomic<bool> m_subscribed{false};
};

} // namespace ovra::viewer
