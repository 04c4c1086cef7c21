#pragma once

#include "bench/baselines/contender.h"
#include "bench/support/child.h"

namespace bench {

/// PHP with its curl extension, when it is installed. The pipe to its process would count in the time of a
/// single sale, so PHP takes the time of several itself.
class Php : public Contender
{
public:
    [[nodiscard]] static bool isInstalled();

    Php(const Endpoint& endpoint, int lines);

    std::int64_t registerSale() override;
    /// Registers several sales; returns the seconds that they took.
    double secondsOf(int sales);

private:
    Child child;
    int lines;
    std::int64_t sign = 0;
};

} // namespace bench
