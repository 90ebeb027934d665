// SPDX-License-Identifier: MIT
#include "server/ListenerOption.h"

namespace ovra::viewer {

// On POSIX this option only allows a port whose old connections are still closing.
void takePortAlone(boost::asio::ip::tcp::acceptor& acceptor)
{
    acceptor.set_option(boost::asio::ip::tcp::acceptor::reuse_address(true));
}

} // namespace ovra::viewer
