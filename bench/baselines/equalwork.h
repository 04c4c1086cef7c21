#pragma once

#include "bench/baselines/contender.h"
#include "bench/baselines/keptcurl.h"
#include "bench/support/sale.h"

#include <QJsonObject>
#include <QVariantMap>

namespace bench {

/// What the host's contract demands of a driver, with libcurl and Qt and nothing more: each answer becomes a
/// QVariantMap, is checked for an error, and is kept as a QJsonObject and, of the report, as the payload.
class EqualWork : public Contender
{
public:
    EqualWork(const Endpoint& endpoint, int lines);

    std::int64_t registerSale() override;
    void setBuyer(std::int64_t number) override;

private:
    QVariantMap checked(const QByteArray& body);
    [[nodiscard]] QJsonObject getLastResponse() const { return lastResponse; }

    Sale sale;
    KeptCurl service;
    QJsonObject lastResponse;
    QVariantMap payload;
};

} // namespace bench
