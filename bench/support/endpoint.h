#pragma once

#include <string>

namespace bench {

/// Where the responder listens.
struct Endpoint
{
    int port = 0;
    /// The certificate to trust; empty for plain HTTP.
    std::string caFile;

    [[nodiscard]] bool isTls() const { return !caFile.empty(); }
    [[nodiscard]] std::string host() const { return "127.0.0.1:" + std::to_string(port); }
    /// Base address of the service; ends in "/".
    [[nodiscard]] std::string url() const { return (isTls() ? "https://" : "http://") + host() + "/v4/"; }
};

inline constexpr const char* groupCode = "shop_group";

} // namespace bench
