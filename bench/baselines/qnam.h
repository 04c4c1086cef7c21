#pragma once

#include "bench/baselines/contender.h"
#include "bench/support/sale.h"

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkRequest>

namespace bench {

/// Qt's network access manager with QJsonDocument, made blocking by an event loop: one manager, one request
/// template.
class Qnam : public Contender
{
public:
    Qnam(const Endpoint& endpoint, int lines);

    std::int64_t registerSale() override;

private:
    [[nodiscard]] QByteArray post(const QString& path, const QByteArray& body);
    [[nodiscard]] QByteArray get(const QString& path);

    Sale sale;
    QNetworkAccessManager manager;
    QNetworkRequest request;
    QString base;
    QString group;
};

} // namespace bench
