#pragma once

#include "bench/support/sale.h"

#include <cstdint>
#include <string>

namespace bench {

/// Where the responder listens.
struct Endpoint
{
    int port = 0;
    /// The certificate to trust; empty for plain HTTP.
    std::string caFile;

    [[nodiscard]] bool isTls() const { return !caFile.empty(); }
    /// Base address of the service; ends in "/".
    [[nodiscard]] std::string url() const
    {
        return (isTls() ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(port) + "/v4/";
    }
};

inline constexpr const char* groupCode = "shop_group";

/// One way of registering a sale: compose it, post it, ask once for its state, read the answer. A contender
/// holds its token and its connection.
class Contender
{
public:
    virtual ~Contender() = default;

    /// Returns the fiscal sign that the service answered; throws when there is none.
    virtual std::int64_t registerSale(const Sale& sale) = 0;
};

} // namespace bench
