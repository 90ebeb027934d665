// SPDX-License-Identifier: MIT
/// \file
/// WebServer: serves the page and its WebSocket to browsers on this machine.
///
/// One thread of its own does the network's work. Handlers are called on it, and must not block.
#pragma once

#include "images/ImageFeeds.h"
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
        std::function<void(ClientId)> joined; ///< a page was admitted
        std::function<void(ClientId, const Request&)> requested;
        std::function<void(const std::string&)> refused; ///< a page was rejected; the text is for the log
    };

    /// Listens on 127.0.0.1 and, if the machine has it, ::1. Uses any free port if \p port is in use or 0.
    /// Throws std::runtime_error if it cannot listen.
    WebServer(unsigned short port, ImageFeeds& channels, Handlers handlers);
    /// Closes all connections and joins the thread. No handler runs afterwards.
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    unsigned short port() const;
    /// The address for the browser. The token follows the '#', a part that browsers do not send.
    std::string address() const;

    /// Sends \p first; from then on the client gets everything that is published.
    void subscribe(ClientId client, std::string first);
    /// Sends the answer to a request. Call once for each request: a client may have only a few unanswered.
    void answer(ClientId client, std::string text);
    void publish(std::string text);
    /// Number of admitted pages.
    std::size_t clientCount() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ovra::viewer
