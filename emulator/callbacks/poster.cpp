#include "emulator/callbacks/poster.h"

#include <boost/asio.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>

#include <sstream>
#include <stdexcept>

namespace emulator {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using boost::system::error_code;
using Endpoints = std::vector<asio::ip::tcp::endpoint>;

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);
// What a program says to a callback is short.
constexpr std::uint64_t longestAnswer = 16 * 1024;

Endpoints endpointsOf(const LoopbackUrl& url)
{
    Endpoints all;
    for (const std::string& text : url.addresses) {
        const auto address = asio::ip::make_address(text);
        if (!address.is_loopback())
            throw std::logic_error("not an address of this machine");
        all.emplace_back(address, url.port);
    }
    return all;
}

http::request<http::string_body> requestTo(const LoopbackUrl& url, std::string body)
{
    constexpr unsigned version = 11;
    http::request<http::string_body> request(http::verb::post, url.target, version);
    request.set(http::field::host, url.authority);
    request.set(http::field::user_agent, "fremulator");
    request.set(http::field::content_type, "application/json; charset=utf-8");
    request.set(http::field::connection, "close");
    request.body() = std::move(body);
    request.prepare_payload();
    return request;
}

template <class Message>
std::string textOf(const Message& message)
{
    std::ostringstream text;
    text << message;
    return text.str();
}

std::string describe(const error_code& error, std::chrono::milliseconds patience)
{
    if (error == beast::error::timeout)
        return "no answer within " + std::to_string(patience.count()) + " ms";
    return error.message();
}

} // namespace

asio::awaitable<Delivery> post(LoopbackUrl url, std::string body, std::chrono::milliseconds patience)
{
    const auto request = requestTo(url, std::move(body));
    Delivery delivery{.request = textOf(request)};
    const Endpoints endpoints = endpointsOf(url);
    beast::tcp_stream stream(co_await asio::this_coro::executor);
    stream.expires_after(patience);

    const auto [refused, where] = co_await stream.async_connect(endpoints, asTuple);
    if (refused) {
        delivery.failure = "cannot connect: " + describe(refused, patience);
        co_return delivery;
    }
    const auto [unsent, sent] = co_await http::async_write(stream, request, asTuple);
    if (unsent) {
        delivery.failure = "cannot send: " + describe(unsent, patience);
        co_return delivery;
    }
    beast::flat_buffer buffer;
    http::response_parser<http::string_body> parser;
    parser.body_limit(longestAnswer);
    const auto [unread, received] = co_await http::async_read(stream, buffer, parser, asTuple);
    if (unread) {
        delivery.failure = "no valid answer: " + describe(unread, patience);
        co_return delivery;
    }
    delivery.status = static_cast<int>(parser.get().result_int());
    delivery.answer = textOf(parser.get());
    co_return delivery;
}

} // namespace emulator
