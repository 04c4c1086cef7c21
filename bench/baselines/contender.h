#pragma once

#include "bench/support/endpoint.h"

#include <cstdint>
#include <memory>

namespace bench {

/// One way of registering the sample sale: compose it, post it, ask once for its state, read the answer. A
/// contender prepares the sale and obtains its token when it is constructed, and keeps its connection.
class Contender
{
public:
    virtual ~Contender() = default;

    /// Returns the fiscal sign in the service's answer; throws when there is none.
    virtual std::int64_t registerSale() = 0;
    /// Changes the buyer of later sales, where the contender does work for a new one.
    virtual void setBuyer(std::int64_t) {}
};

/// Makes a contender for sales of so many lines.
using Maker = std::unique_ptr<Contender> (*)(const Endpoint& endpoint, int lines);

template <typename T>
std::unique_ptr<Contender> make(const Endpoint& endpoint, int lines)
{
    return std::make_unique<T>(endpoint, lines);
}

} // namespace bench
