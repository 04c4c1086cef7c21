#include "bench/baselines/rawsocket.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace bench {

namespace {

void appendNumber(std::string& text, double number)
{
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
    text.append(digits.begin(), end);
}

void appendEscaped(std::string& text, std::string_view value)
{
    const auto plain = [](char c) { return c != '"' && c != '\\' && static_cast<unsigned char>(c) >= 0x20; };
    if (std::all_of(value.begin(), value.end(), plain)) {
        text += value;
        return;
    }
    for (const char c : value) {
        if (c == '"' || c == '\\')
            text += '\\';
        text += plain(c) || c == '"' || c == '\\' ? c : ' ';
    }
}

void appendItem(std::string& text, const SaleLine& line)
{
    text += R"({"name":")";
    appendEscaped(text, line.nameUtf8);
    text += R"(","payment_method":")";
    text += methodNames[line.method];
    text += R"(","payment_object":")";
    text += objectNames[line.object];
    text += R"(","price":)";
    appendNumber(text, line.price);
    text += R"(,"quantity":)";
    appendNumber(text, line.quantity);
    text += R"(,"sum":)";
    appendNumber(text, line.sum);
    text += R"(,"vat":{"type":")";
    text += vatNames[line.taxCode];
    text += R"("}})";
}

// The keys stand in the order in which Qt sorts them.
void glueSale(std::string& text, const Sale& sale)
{
    text = R"({"external_id":")";
    text += externalId;
    text += R"(","receipt":{"client":{"email":")";
    text += buyer;
    text += R"("},"company":{"email":")";
    text += companyEmail;
    text += R"(","inn":")";
    text += companyInn;
    text += R"(","payment_address":")";
    text += paymentAddress;
    text += R"(","sno":"osn"},"items":[)";
    for (const SaleLine& line : sale.lines) {
        appendItem(text, line);
        text += ',';
    }
    if (!sale.lines.empty())
        text.pop_back();
    text += R"(],"payments":[{"sum":)";
    appendNumber(text, sale.total);
    text += R"(,"type":1}],"total":)";
    appendNumber(text, sale.total);
    text += R"(},"timestamp":")";
    text += timestampNow();
    text += R"("})";
}

} // namespace

RawSocket::RawSocket(const Endpoint& endpoint)
    : handle(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    , context(nullptr, &SSL_CTX_free)
    , session(nullptr, &SSL_free)
    , host("127.0.0.1:" + std::to_string(endpoint.port))
    , reply(64 * 1024, '\0')
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(endpoint.port));
    if (connect(handle, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("raw socket: no connection");
    const int on = 1;
    setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (endpoint.isTls())
        startTls(endpoint.caFile);
    post("/v4/getToken", R"({"login":"bench","pass":"bench"})");
    token = textAfter(R"("token":")", '"');
}

RawSocket::~RawSocket()
{
    session.reset();
    close(handle);
}

void RawSocket::startTls(const std::string& caFile)
{
    context.reset(SSL_CTX_new(TLS_client_method()));
    SSL_CTX_load_verify_locations(context.get(), caFile.c_str(), nullptr);
    SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER, nullptr);
    session.reset(SSL_new(context.get()));
    SSL_set_fd(session.get(), handle);
    if (SSL_connect(session.get()) != 1)
        throw std::runtime_error("raw socket: no TLS");
}

std::int64_t RawSocket::registerSale(const Sale& sale)
{
    glueSale(body, sale);
    exchange(body);
    const std::string_view sign = textAfter(R"("fiscal_document_attribute":)", ',');
    std::int64_t number = 0;
    if (std::from_chars(sign.data(), sign.data() + sign.size(), number).ec != std::errc())
        throw std::runtime_error("raw socket: no fiscal sign");
    return number;
}

QByteArray RawSocket::lastReceipt()
{
    get("/last");
    return {replyBody.data(), static_cast<qsizetype>(replyBody.size())};
}

void RawSocket::exchange(std::string_view text)
{
    post("/v4/shop_group/sell", text);
    std::string path = "/v4/shop_group/report/";
    path += textAfter(R"("uuid":")", '"');
    get(path);
}

void RawSocket::post(std::string_view path, std::string_view text)
{
    startRequest("POST ", path);
    request += "\r\nContent-type: application/json; charset=utf-8\r\nContent-Length: ";
    request += std::to_string(text.size());
    request += "\r\n\r\n";
    request += text;
    send();
    receive();
}

void RawSocket::get(std::string_view path)
{
    startRequest("GET ", path);
    request += "\r\n\r\n";
    send();
    receive();
}

void RawSocket::startRequest(std::string_view verb, std::string_view path)
{
    request = verb;
    request += path;
    request += " HTTP/1.1\r\nHost: ";
    request += host;
    request += "\r\ntoken: ";
    request += token;
}

void RawSocket::send()
{
    const auto size = static_cast<ssize_t>(request.size());
    const ssize_t sent = session ? SSL_write(session.get(), request.data(), static_cast<int>(size))
                                 : ::send(handle, request.data(), request.size(), MSG_NOSIGNAL);
    if (sent != size)
        throw std::runtime_error("raw socket: not sent");
}

void RawSocket::receive()
{
    std::size_t filled = 0;
    do {
        const std::size_t room = reply.size() - filled;
        const ssize_t part = session ? SSL_read(session.get(), reply.data() + filled, static_cast<int>(room))
                                     : recv(handle, reply.data() + filled, room, 0);
        if (part <= 0)
            throw std::runtime_error("raw socket: no answer");
        filled += static_cast<std::size_t>(part);
    } while (!findBody({reply.data(), filled}));
}

bool RawSocket::findBody(std::string_view received)
{
    static constexpr std::string_view name = "Content-Length: ";
    const std::size_t head = received.find("\r\n\r\n");
    const std::size_t field = received.find(name);
    if (head == std::string_view::npos || field == std::string_view::npos)
        return false;
    std::size_t length = 0;
    std::from_chars(received.data() + field + name.size(), received.data() + head, length);
    replyBody = received.substr(head + 4);
    return replyBody.size() >= length;
}

std::string_view RawSocket::textAfter(std::string_view key, char end) const
{
    const std::size_t at = replyBody.find(key);
    if (at == std::string_view::npos)
        return {};
    const std::string_view rest = replyBody.substr(at + key.size());
    return rest.substr(0, rest.find(end));
}

} // namespace bench
