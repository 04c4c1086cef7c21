#include "bench/baselines/rawsocket.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/bio.h>
#include <openssl/ssl.h>
#include <sys/socket.h>

namespace bench {

namespace {

void appendNumber(std::string& text, double number)
{
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
    text.append(digits.begin(), end);
}

// Looks whether the value needs escaping, as any writer of JSON must; no sample does.
void appendText(std::string& text, std::string_view value)
{
    const auto plain = [](char c) { return c != '"' && c != '\\' && static_cast<unsigned char>(c) >= 0x20; };
    if (!std::all_of(value.begin(), value.end(), plain))
        throw std::invalid_argument("raw socket: a name that needs escaping");
    text += value;
}

void appendItem(std::string& text, const SaleLine& line)
{
    text += R"({"name":")";
    appendText(text, line.nameUtf8);
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

// The keys are in the order in which Qt sorts them.
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

RawSocket::Wire connected(const Endpoint& endpoint)
{
    RawSocket::Wire wire(nullptr, &BIO_free_all);
    if (endpoint.isTls()) {
        const std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context(
            SSL_CTX_new(TLS_client_method()), &SSL_CTX_free);
        SSL_CTX_load_verify_locations(context.get(), endpoint.caFile.c_str(), nullptr);
        SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER, nullptr);
        wire.reset(BIO_new_ssl_connect(context.get()));
        BIO_set_conn_hostname(wire.get(), endpoint.host().c_str());
    } else {
        wire.reset(BIO_new_connect(endpoint.host().c_str()));
    }
    int socket = -1;
    if (BIO_do_connect(wire.get()) != 1 || BIO_get_fd(wire.get(), &socket) < 0)
        throw std::runtime_error("raw socket: no connection");
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return wire;
}

} // namespace

RawSocket::RawSocket(const Endpoint& endpoint, int lines)
    : sale(sampleSale(lines))
    , wire(connected(endpoint))
    , host(endpoint.host())
    , reply(64 * 1024, '\0')
{
    post("/v4/getToken", R"({"login":"bench","pass":"bench"})");
    token = textAfter(R"("token":")", '"');
}

std::int64_t RawSocket::registerSale()
{
    glueSale(body, sale);
    post("/v4/shop_group/sell", body);
    std::string path = "/v4/shop_group/report/";
    path += textAfter(R"("uuid":")", '"');
    get(path);
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

void RawSocket::post(std::string_view path, std::string_view text)
{
    startRequest("POST ", path);
    request += "\r\nContent-type: application/json; charset=utf-8\r\nContent-Length: ";
    request += std::to_string(text.size());
    request += "\r\n\r\n";
    request += text;
    exchange();
}

void RawSocket::get(std::string_view path)
{
    startRequest("GET ", path);
    request += "\r\n\r\n";
    exchange();
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

void RawSocket::exchange()
{
    if (BIO_write(wire.get(), request.data(), static_cast<int>(request.size())) !=
        static_cast<int>(request.size()))
        throw std::runtime_error("raw socket: not sent");
    std::size_t filled = 0;
    do {
        const int part = BIO_read(wire.get(), reply.data() + filled, static_cast<int>(reply.size() - filled));
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
