#pragma once

#include <boost/beast/http/fields.hpp>

#include <string_view>

namespace emulator {

/// Why it is in doubt where a request with these headers ends; empty if it is not. Whoever guesses
/// differently than the client would take a body for the next request. `version` is 11 for HTTP/1.1.
[[nodiscard]] std::string_view framingProblem(const boost::beast::http::fields& fields, unsigned version);

} // namespace emulator
