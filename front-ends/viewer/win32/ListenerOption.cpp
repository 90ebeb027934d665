// SPDX-License-Identifier: MIT
#include "server/ListenerOption.h"

namespace ovra::viewer {

// Without it, another program can take over the port with SO_REUSEADDR.
void takePortAlone(boost::asio::ip::tcp::acceptor& acceptor)
{
    using Exclusive = boost::asio::detail::socket_option::boolean<SOL_SOCKET, SO_EXCLUSIVEADDRUSE>;
    acceptor.set_option(Exclusive(true));
}

} // namespace ovra::viewer
