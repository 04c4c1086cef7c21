#pragma once

#include "bench/baselines/contender.h"
#include "bench/baselines/keptcurl.h"
#include "bench/support/sale.h"

namespace bench {

/// Bare libcurl with QJsonDocument: each answer is parsed once, and the one value that is wanted is read.
class CurlQJson : public Contender
{
public:
    CurlQJson(const Endpoint& endpoint, int lines);

    std::int64_t registerSale() override;

private:
    Sale sale;
    KeptCurl service;
};

} // namespace bench
