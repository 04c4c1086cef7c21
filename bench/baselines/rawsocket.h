#pragma once

#include "bench/baselines/contender.h"

#include <QByteArray>

#include <memory>
#include <string_view>

#include <openssl/types.h>

namespace bench {

/// The floor: a bare socket, the request's text glued by hand, the answer searched for the two values that
/// are needed.
class RawSocket : public Contender
{
public:
    explicit RawSocket(const Endpoint& endpoint);
    ~RawSocket() override;
    RawSocket(const RawSocket&) = delete;
    RawSocket& operator=(const RawSocket&) = delete;

    std::int64_t registerSale(const Sale& sale) override;
    /// What a recording responder was sent last.
    [[nodiscard]] QByteArray lastReceipt();

private:
    void startTls(const std::string& caFile);
    void post(std::string_view path, std::string_view body);
    void get(std::string_view path);
    void exchange(std::string_view body);
    void startRequest(std::string_view verb, std::string_view path);
    void send();
    void receive();
    [[nodiscard]] bool findBody(std::string_view received);
    /// What stands between the key and the end in the last answer.
    [[nodiscard]] std::string_view textAfter(std::string_view key, char end) const;

    int handle = -1;
    std::unique_ptr<SSL_CTX, void (*)(SSL_CTX*)> context;
    std::unique_ptr<SSL, void (*)(SSL*)> session;
    std::string host;
    std::string token;
    std::string body;
    std::string request;
    std::string reply;
    std::string_view replyBody;
};

} // namespace bench
