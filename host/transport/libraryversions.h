#pragma once

#include "host/export.h"

#include <QString>

namespace hostruntime {

/// The version of the HTTP library that is loaded.
[[nodiscard]] HOST_EXPORT QString curlVersion();

/// Name and version of the TLS library that it uses, "OpenSSL 3.0.19" for example.
[[nodiscard]] HOST_EXPORT QString tlsVersion();

} // namespace hostruntime
