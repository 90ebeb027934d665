#include "server/ListenerOption.h"

namespace ovra::viewer {

// Here the option only lets a port be used again whose old connections have not quite ended.
void takePortAlone(boost::asio::ip::tcp::acceptor& acceptor)
{
    acceptor.set_option(boost::asio::ip::tcp::acceptor::reuse_address(true));
}

} // namespace ovra::viewer
