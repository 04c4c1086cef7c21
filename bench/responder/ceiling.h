#pragma once

namespace responder {

/// How many times a second a bare socket in the same process is answered: a small POST on a kept connection
/// of plain HTTP, one after the other, the best of several rounds.
[[nodiscard]] double exchangesPerSecond(int port);

} // namespace responder
