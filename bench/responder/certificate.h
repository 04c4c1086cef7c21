#pragma once

#include <string>

#include <openssl/types.h>

namespace responder {

/// A server context with a fresh key and a self-signed certificate for 127.0.0.1, which is written to the
/// file for clients to trust. The caller frees it; throws std::runtime_error.
[[nodiscard]] SSL_CTX* contextWithNewCertificate(const std::string& caFile);

} // namespace responder
