/// \file
/// What makes a listener's port its own; posix/ and win32/ hold one source each.
#pragma once

#include <boost/asio/ip/tcp.hpp>

namespace ovra::viewer {

/// Before it is bound. No other program can listen at the same address, and one that has just ended is in
/// nobody's way.
void takePortAlone(boost::asio::ip::tcp::acceptor& acceptor);

} // namespace ovra::viewer
