#include "bench/baselines/curlqjson.h"

#include "bench/baselines/qjsonsale.h"

#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;

namespace bench {

CurlQJson::CurlQJson(const Endpoint& endpoint, int lines)
    : sale(sampleSale(lines))
    , service(endpoint)
{
}

std::int64_t CurlQJson::registerSale()
{
    const QJsonDocument accepted = QJsonDocument::fromJson(service.post("/sell", qjsonText(sale)));
    const std::string uuid = accepted["uuid"_L1].toString().toStdString();
    const QJsonDocument done = QJsonDocument::fromJson(service.get("/report/" + uuid));
    return done["payload"_L1]["fiscal_document_attribute"_L1].toInteger();
}

} // namespace bench
