#pragma once

#include "emulator/http/answer.h"
#include "emulator/server/budget.h"
#include "emulator/server/hub.h"
#include "emulator/server/limits.h"

#include <boost/asio/awaitable.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/ssl.hpp>

namespace emulator {

using TcpStream = boost::beast::tcp_stream;
using TlsStream = boost::beast::ssl_stream<boost::beast::tcp_stream>;

/// State that all connections share.
struct SharedState
{
    Handler handler;
    Limits limits;
    Budget budget{limits};
    Hub hub{limits.followers};
};

/// Answers the requests of a connection one after the other until it ends. The arguments are borrowed.
boost::asio::awaitable<void> serve(TcpStream& stream, SharedState& shared, Budget::Account& account);
boost::asio::awaitable<void> serve(TlsStream& stream, SharedState& shared, Budget::Account& account);

} // namespace emulator
