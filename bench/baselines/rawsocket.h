#pragma once

#include "bench/baselines/contender.h"
#include "bench/support/sale.h"

#include <QByteArray>

#include <memory>
#include <string_view>

#include <openssl/types.h>

namespace bench {

/// The floor: a bare socket, the text of the request concatenated by hand, the answer searched for the two
/// values that are needed.
class RawSocket : public Contender
{
public:
    using Wire = std::unique_ptr<BIO, void (*)(BIO*)>;

    RawSocket(const Endpoint& endpoint, int lines);

    std::int64_t registerSale() override;
    /// The first receipt that the responder has received since the previous call.
    [[nodiscard]] QByteArray lastReceipt();

private:
    void post(std::string_view path, std::string_view text);
    void get(std::string_view path);
    void startRequest(std::string_view verb, std::string_view path);
    void exchange();
    [[nodiscard]] bool findBody(std::string_view received);
    /// The text between the key and the end in the last answer.
    [[nodiscard]] std::string_view textAfter(std::string_view key, char end) const;

    Sale sale;
    Wire wire;
    std::string host;
    std::string token;
    std::string body;
    std::string request;
    std::string reply;
    std::string_view replyBody;
};

} // namespace bench
