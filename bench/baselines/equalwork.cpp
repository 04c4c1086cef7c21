#include "bench/baselines/equalwork.h"

#include "bench/baselines/qjsonsale.h"

#include <QJsonDocument>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace bench {

EqualWork::EqualWork(const Endpoint& endpoint, int lines)
    : sale(sampleSale(lines))
    , service(endpoint)
{
}

std::int64_t EqualWork::registerSale()
{
    lastResponse = {};
    payload.clear();
    const QVariantMap accepted = checked(service.post("/sell", qjsonText(sale)));
    const QVariantMap done =
        checked(service.get("/report/" + accepted.value(u"uuid"_s).toString().toStdString()));
    payload = done.value(u"payload"_s).toMap();
    if (done.value(u"status"_s).toString() != "done"_L1)
        throw std::runtime_error("equal work: not done");
    return getLastResponse().value("payload"_L1)["fiscal_document_attribute"_L1].toInteger();
}

void EqualWork::setBuyer(std::int64_t number)
{
    sale.contact = u"buyer%1@example.com"_s.arg(number);
}

QVariantMap EqualWork::checked(const QByteArray& body)
{
    QVariantMap response = QJsonDocument::fromJson(body).toVariant().toMap();
    if (response.isEmpty())
        throw std::runtime_error("equal work: no answer");
    lastResponse = QJsonObject::fromVariantMap(response);
    if (!response.value(u"error"_s).toMap().isEmpty())
        throw std::runtime_error("equal work: an error");
    return response;
}

} // namespace bench
