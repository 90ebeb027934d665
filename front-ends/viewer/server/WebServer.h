/// \file
/// WebServer: serves the page and its WebSocket to browsers on this machine.
///
/// Threads: two of its own do the network's work, a third tells them of new images. Handlers are called on
/// any of them, and must not block.
#pragma once

#include "images/Channels.h"
#include "server/HttpPolicy.h"
#include "server/Message.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace ovra::viewer {

using ClientId = std::uint64_t;

/// Any thread.
class WebServer
{
public:
    struct Handlers
    {
        std::function<void(ClientId)> joined; ///< a page was let in
        std::function<void(ClientId)> left;   ///< and is gone
        std::function<void(ClientId, const Request&)> requested;
        std::function<void(const std::string&)> refused; ///< somebody was not let in: what to log
    };

    /// Listens on 127.0.0.1 and, where there is one, ::1. Takes any free port when \p port is taken or 0.
    /// Throws std::runtime_error when it cannot listen at all.
    WebServer(unsigned short port, Channels& channels, Handlers handlers);
    /// Ends all connections and threads; no handler runs afterwards.
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    unsigned short port() const;
    /// What a browser is to open: the token is behind the '#', which no browser sends.
    std::string address() const;

    /// Sends \p first, then lets the client get what is published from now on.
    void subscribe(ClientId client, std::string first);
    void send(ClientId client, std::string text);
    void publish(std::string text);
    /// Pages that were let in.
    std::size_t clientCount() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::viewer
