#pragma once

namespace responder {

/// How many times a second bare sockets in the same process are answered: small POSTs on eight kept
/// connections of plain HTTP, a thread each, the best of several rounds. The sockets share the cores with the
/// responder, as everything that is measured against it does.
[[nodiscard]] double exchangesPerSecond(int port);

} // namespace responder
