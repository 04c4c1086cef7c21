#include "emulator/server/session.h"

#include "emulator/server/framing.h"

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

// Between two pieces of an answer, the client has made progress.
constexpr std::size_t largestPiece = 64 * 1024;

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

struct Rejection
{
    int status = 400;
    std::string text{};
};

Rejection rejectionOf(const error_code& error)
{
    if (error == http::error::body_limit)
        return {413, error.message()};
    return {error == http::error::header_limit ? 431 : 400, error.message()};
}

// The peer is gone, or has been told to go.
bool isEnd(const error_code& error)
{
    return error == http::error::end_of_stream || error == beast::error::timeout;
}

template <class Stream>
class Session
{
public:
    Session(Stream& usedStream, SharedState& sharedState, Budget::Account& usedAccount)
        : stream(usedStream)
        , shared(sharedState)
        , account(usedAccount)
    {
    }

    asio::awaitable<void> serve()
    {
        for (bool keep = true; keep && account.isOpen();) {
            Answer answer;
            bool keepAlive = false;
            {
                Parser parser;
                parser.eager(true);
                parser.header_limit(static_cast<std::uint32_t>(shared.limits.headerBytes));
                parser.body_limit(shared.limits.bodyBytes);
                std::string raw;
                const auto [error, problem] = co_await read(parser, raw);
                if (isEnd(error) || !account.isOpen())
                    co_return;
                if (error || !problem.empty()) {
                    const Rejection rejection =
                        error ? rejectionOf(error) : Rejection{.text = std::string(problem)};
                    co_await refuse(rejection);
                    co_return;
                }
                const Request request = toRequest(parser, std::move(raw));
                answer = shared.handler(request);
                keepAlive = request.keepAlive;
            }
            // The request is gone, which may have been large, and its answer may be delayed for long.
            account.hold(buffer.capacity());
            if (answer.follow)
                keep = co_await sendEvents();
            else
                keep =
                    answer.next ? co_await sendPieces(answer, keepAlive) : co_await send(answer, keepAlive);
            account.hold(buffer.capacity());
        }
    }

private:
    // Why a request could not be read: an error, or what is wrong with its headers.
    struct Outcome
    {
        error_code error{};
        std::string_view problem{};
    };

    // Feeds the parser by hand so that `raw` holds every byte of this request and none of the next.
    asio::awaitable<Outcome> read(Parser& parser, std::string& raw)
    {
        // Around the pieces of a chunked body, a client may put as many bytes as it likes.
        const std::size_t most = shared.limits.headerBytes + 2 * shared.limits.bodyBytes;
        bool continueAsked = false;
        lowest().expires_after(shared.limits.idle);
        while (!parser.is_done()) {
            error_code error;
            const std::size_t used = buffer.size() > 0 ? parser.put(buffer.data(), error) : 0;
            raw.append(static_cast<const char*>(buffer.data().data()), used);
            buffer.consume(used);
            if (parser.is_header_done()) {
                const std::string_view problem = framingProblem(parser.get(), parser.get().version());
                if (!problem.empty())
                    co_return Outcome{.problem = problem};
            }
            if (raw.size() + buffer.size() > most)
                error = http::error::body_limit;
            if (error && error != http::error::need_more)
                co_return Outcome{.error = error};
            if (used > 0 && (!error || parser.is_done()))
                continue;
            if (parser.is_header_done() && !continueAsked &&
                parser.get()[http::field::expect] == "100-continue") {
                continueAsked = true;
                co_await write(continueReply);
            }
            const auto [failure, bytes] = co_await stream.async_read_some(buffer.prepare(8192), tuple);
            if (failure)
                co_return Outcome{.error = raw.empty() ? error_code(http::error::end_of_stream) : failure};
            buffer.commit(bytes);
            account.progress();
            account.hold(buffer.capacity() + raw.capacity() + parser.get().body().capacity());
        }
        co_return Outcome{};
    }

    asio::awaitable<void> refuse(const Rejection& rejection)
    {
        const Answer answer{.reply = {
                                .status = rejection.status,
                                .contentType = "text/plain",
                                .body = rejection.text + "\n",
                            }};
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
        account.hold(bytes.size() + answer.reply.body.size());
        const std::size_t piece = wire.piece > 0 ? wire.piece : largestPiece;
        for (std::size_t from = 0; from < bytes.size(); from += piece) {
            if (from > 0 && wire.pause.count() > 0)
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

    // Likewise, for a body that is never in memory as a whole.
    asio::awaitable<bool> sendPieces(const Answer& answer, bool keepAlive)
    {
        const bool keep = answer.keeps(keepAlive);
        const std::string start = head(answer.reply, std::nullopt, keep);
        bool written = co_await write(start);
        for (bool more = true; more && written;) {
            const std::string piece = answer.next();
            more = !piece.empty();
            const std::string chunk = chunkOf(piece);
            account.hold(piece.size() + chunk.size());
            written = co_await write(chunk);
        }
        co_return written&& keep;
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
        Hub::Follower follower(shared.hub, account, stream.get_executor());
        account.setBusy(true);
        bool written = co_await write(eventsHead);
        while (written) {
            if (!follower.hasEvent()) {
                follower.wake.expires_after(std::chrono::seconds(15));
                co_await follower.wake.async_wait(tuple);
            }
            const std::string event =
                follower.hasEvent() ? "data: " + follower.takeEvent() + "\n\n" : keepAliveLine;
            written = co_await write(event);
        }
        co_return false;
    }

    asio::awaitable<void> wait(std::chrono::milliseconds time)
    {
        account.setBusy(true);
        asio::steady_timer timer(stream.get_executor(), time);
        co_await timer.async_wait(tuple);
        account.setBusy(false);
        account.progress();
    }

    asio::awaitable<bool> write(std::string_view bytes)
    {
        lowest().expires_after(shared.limits.idle);
        const auto [failure, count] =
            co_await asio::async_write(stream, asio::buffer(bytes.data(), bytes.size()), tuple);
        account.progress();
        co_return !failure && account.isOpen();
    }

    beast::tcp_stream& lowest() { return beast::get_lowest_layer(stream); }

    Stream& stream;
    SharedState& shared;
    Budget::Account& account;
    beast::flat_buffer buffer;
};

} // namespace

asio::awaitable<void> serve(TcpStream& stream, SharedState& shared, Budget::Account& account)
{
    Session<TcpStream> session(stream, shared, account);
    co_await session.serve();
}

asio::awaitable<void> serve(TlsStream& stream, SharedState& shared, Budget::Account& account)
{
    Session<TlsStream> session(stream, shared, account);
    co_await session.serve();
}

} // namespace emulator
