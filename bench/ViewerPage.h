// SPDX-License-Identifier: MIT
/// \file
/// A page that draws nothing: connects to a viewer, says hello, reads what comes.
#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/field.hpp>
#include <boost/beast/websocket/stream.hpp>

#include <string>
#include <string_view>

namespace ovra::bench {

class ViewerPage
{
public:
    /// \p address as the viewer prints it.
    explicit ViewerPage(const std::string& address) : m_stream(m_context)
    {
        namespace websocket = boost::beast::websocket;
        using boost::asio::ip::tcp;
        const std::string host = address.substr(sizeof "http://" - 1, address.find("/#") - 7);
        const auto port = static_cast<unsigned short>(std::stoi(host.substr(host.find(':') + 1)));
        m_stream.next_layer().connect({boost::asio::ip::address_v4::loopback(), port});
        m_stream.next_layer().set_option(tcp::no_delay(true));
        m_stream.read_message_max(std::size_t{64} << 20);
        m_stream.set_option(websocket::stream_base::decorator([host](websocket::request_type& request) {
            request.set(boost::beast::http::field::origin, "http://" + host);
        }));
        m_stream.handshake(host, "/socket");
        say(R"({"type":"hello","version":1,"token":")" + address.substr(address.find('=') + 1) + "\"}");
    }

    void say(const std::string& text)
    {
        m_stream.text(true);
        m_stream.write(boost::asio::buffer(text));
    }

    /// The next message; valid until the next call.
    std::string_view read()
    {
        m_input.clear();
        m_stream.read(m_input);
        return {static_cast<const char*>(m_input.data().data()), m_input.size()};
    }
    bool gotText() const { return m_stream.got_text(); }

    std::string_view readImage()
    {
        std::string_view message = read();
        while (gotText())
            message = read();
        return message;
    }

private:
    boost::asio::io_context m_context;
    boost::beast::websocket::stream<boost::asio::ip::tcp::socket> m_stream;
    boost::beast::flat_buffer m_input;
};

} // namespace ovra::bench
