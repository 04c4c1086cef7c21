#pragma once

#include "bench/baselines/contender.h"

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkRequest>

namespace bench {

/// Qt's network access manager with QJsonDocument, made blocking by an event loop; one manager, one request
/// template.
class Qnam : public Contender
{
public:
    explicit Qnam(const Endpoint& endpoint);

    std::int64_t registerSale(const Sale& sale) override;

private:
    [[nodiscard]] QByteArray post(const QString& path, const QByteArray& body);
    [[nodiscard]] QByteArray get(const QString& path);

    QNetworkAccessManager manager;
    QNetworkRequest request;
    QString base;
    QString group;
};

} // namespace bench
