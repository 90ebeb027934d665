// SPDX-License-Identifier: MIT
/// \file
/// Reserves a listener's port; posix/ and win32/ hold one source each.
#pragma once

#include <boost/asio/ip/tcp.hpp>

namespace ovra::viewer {

/// Call before bind. No other program can listen at the same address; the remains of a program that has
/// ended do not block it.
void takePortAlone(boost::asio::ip::tcp::acceptor& acceptor);

} // namespace ovra::viewer
