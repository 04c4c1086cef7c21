#include "emulator/http/session.h"

#include <boost/asio.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>

#include <tuple>

namespace emulator {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using Parser = http::request_parser<http::string_body>;
using boost::system::error_code;

// GCC 12 destroys temporaries of an awaited call twice, so everything that is written has a name.
const std::string continueReply = "HTTP/1.1 100 Continue\r\n\r\n";
const std::string eventsHead = "HTTP/1.1 200 OK\r\nServer: fremulator\r\nContent-Type: text/event-stream\r\n"
                               "Cache-Control: no-store\r\nConnection: close\r\n\r\n: hello\n\n";
const std::string keepAliveLine = ": still here\n\n";

constexpr auto tuple = asio::as_tuple(asio::use_awaitable);

Request toRequest(Parser& parser, std::string raw)
{
    auto& message = parser.get();
    Request request;
    request.method = message.method_string();
    setTarget(request, message.target());
    for (const auto& field : message)
        request.headers.emplace_back(field.name_string(), field.value());
    request.body = std::move(message.body());
    request.raw = std::move(raw);
    request.keepAlive = message.keep_alive();
    return request;
}

int statusOf(const error_code& error)
{
    if (error == http::error::body_limit)
        return 413;
    return error == http::error::header_limit ? 431 : 400;
}

template <class Stream>
class Session
{
public:
    Session(Stream& usedStream, SharedState& sharedState)
        : stream(usedStream)
        , shared(sharedState)
    {
    }

    asio::awaitable<void> serve()
    {
        for (bool keep = true; keep;) {
            Parser parser;
            parser.eager(true);
            parser.header_limit(static_cast<std::uint32_t>(shared.limits.headerBytes));
            parser.body_limit(shared.limits.bodyBytes);
            std::string raw;
            if (const error_code error = co_await read(parser, raw)) {
                if (error != http::error::end_of_stream && error != beast::error::timeout)
                    co_await refuse(error);
                co_return;
            }
            const Request request = toRequest(parser, std::move(raw));
            const Answer answer = shared.handler(request);
            if (answer.follow)
                keep = co_await sendEvents();
            else
                keep = co_await send(answer, request.keepAlive);
        }
    }

private:
    // Feeds the parser by hand so that `raw` holds every byte of this request and none of the next.
    asio::awaitable<error_code> read(Parser& parser, std::string& raw)
    {
        bool continueAsked = false;
        lowest().expires_after(shared.limits.idle);
        while (!parser.is_done()) {
            error_code error;
            const std::size_t used = buffer.size() > 0 ? parser.put(buffer.data(), error) : 0;
            raw.append(static_cast<const char*>(buffer.data().data()), used);
            buffer.consume(used);
            if (error && error != http::error::need_more)
                co_return error;
            if (used > 0 && (!error || parser.is_done()))
                continue;
            if (parser.is_header_done() && !continueAsked &&
                parser.get()[http::field::expect] == "100-continue") {
                continueAsked = true;
                co_await write(continueReply);
            }
            const auto [failure, bytes] = co_await stream.async_read_some(buffer.prepare(8192), tuple);
            if (failure)
                co_return raw.empty() ? error_code(http::error::end_of_stream) : failure;
            buffer.commit(bytes);
        }
        co_return error_code();
    }

    asio::awaitable<void> refuse(error_code error)
    {
        const Answer answer{
            .reply = {
                .status = statusOf(error), .contentType = "text/plain", .body = error.message() + "\n"}};
        const std::string bytes = answer.bytes(false);
        co_await write(bytes);
    }

    // Returns whether the connection can carry another request.
    asio::awaitable<bool> send(const Answer& answer, bool keepAlive)
    {
        const Wire& wire = answer.wire;
        if (wire.delay.count() > 0)
            co_await wait(wire.delay);
        const std::string bytes = answer.bytes(keepAlive);
        const std::size_t piece = wire.piece > 0 ? wire.piece : std::max<std::size_t>(1, bytes.size());
        for (std::size_t from = 0; from < bytes.size(); from += piece) {
            if (from > 0)
                co_await wait(wire.pause);
            const bool written = co_await write(std::string_view(bytes).substr(from, piece));
            if (!written)
                co_return false;
        }
        if (wire.end == Wire::End::Reset)
            reset();
        if (wire.end == Wire::End::Hold)
            co_await holdUntilPeerLeaves();
        co_return answer.keeps(keepAlive);
    }

    void reset()
    {
        error_code ignored;
        lowest().socket().set_option(asio::socket_base::linger(true, 0), ignored);
        lowest().socket().close(ignored);
    }

    asio::awaitable<void> holdUntilPeerLeaves()
    {
        lowest().expires_never();
        for (error_code failure; !failure;) {
            buffer.clear();
            std::tie(failure, std::ignore) = co_await stream.async_read_some(buffer.prepare(8192), tuple);
        }
    }

    asio::awaitable<bool> sendEvents()
    {
        Hub::Follower follower(shared.hub, stream.get_executor());
        bool written = co_await write(eventsHead);
        while (written) {
            if (follower.pending.empty()) {
                follower.wake.expires_after(std::chrono::seconds(15));
                co_await follower.wake.async_wait(tuple);
            }
            if (follower.pending.empty()) {
                written = co_await write(keepAliveLine);
                continue;
            }
            const std::string event = "data: " + follower.pending.front() + "\n\n";
            follower.pending.pop_front();
            written = co_await write(event);
        }
        co_return false;
    }

    asio::awaitable<void> wait(std::chrono::milliseconds time)
    {
        asio::steady_timer timer(stream.get_executor(), time);
        co_await timer.async_wait(tuple);
    }

    asio::awaitable<bool> write(std::string_view bytes)
    {
        lowest().expires_after(shared.limits.idle);
        const auto [failure, count] =
            co_await asio::async_write(stream, asio::buffer(bytes.data(), bytes.size()), tuple);
        co_return !failure;
    }

    beast::tcp_stream& lowest() { return beast::get_lowest_layer(stream); }

    Stream& stream;
    SharedState& shared;
    beast::flat_buffer buffer;
};

} // namespace

asio::awaitable<void> serve(TcpStream& stream, SharedState& shared)
{
    Session<TcpStream> session(stream, shared);
    co_await session.serve();
}

asio::awaitable<void> serve(TlsStream& stream, SharedState& shared)
{
    Session<TlsStream> session(stream, shared);
    co_await session.serve();
}

} // namespace emulator
