#include "emulator/server/framing.h"

#include <boost/beast/core/string.hpp>

namespace emulator {

namespace http = boost::beast::http;

namespace {

// The parser accepts a list of equal numbers as well.
bool allDigits(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

} // namespace

std::string_view framingProblem(const http::fields& fields, unsigned version)
{
    const auto codings = fields.count(http::field::transfer_encoding);
    const auto lengths = fields.count(http::field::content_length);
    if (codings + lengths > 1)
        return "there must be only one Content-Length or Transfer-Encoding";
    if (lengths > 0 && !allDigits(fields[http::field::content_length]))
        return "Content-Length must be a number";
    if (codings == 0)
        return {};
    if (version < 11)
        return "Transfer-Encoding needs HTTP/1.1";
    if (!boost::beast::iequals(fields[http::field::transfer_encoding], "chunked"))
        return "the only known Transfer-Encoding is chunked";
    return {};
}

} // namespace emulator
