#include "bench/baselines/qjsonsale.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <iterator>

using namespace Qt::Literals::StringLiterals;

namespace bench {

namespace {

// Copying an object that has its keys and assigning the values costs less than half as much as inserting
// them. The iterator visits the keys in sorted order.
QJsonObject itemOf(const SaleLine& line)
{
    static const QJsonObject prototype{{u"name"_s, {}}, {u"payment_method"_s, {}}, {u"payment_object"_s, {}},
        {u"price"_s, {}}, {u"quantity"_s, {}}, {u"sum"_s, {}}, {u"vat"_s, {}}};
    static const QJsonArray vats = [] {
        QJsonArray all;
        for (const char* name : vatNames)
            all.append(QJsonObject{{u"type"_s, QLatin1StringView(name)}});
        return all;
    }();
    QJsonObject item = prototype;
    auto value = item.begin();
    *value = line.name;
    *++value = QLatin1StringView(methodNames[line.method]);
    *++value = QLatin1StringView(objectNames[line.object]);
    *++value = line.price;
    *++value = line.quantity;
    *++value = line.sum;
    *++value = vats.at(line.taxCode);
    return item;
}

} // namespace

QByteArray qjsonText(const Sale& sale)
{
    static const QJsonObject company{{u"email"_s, QLatin1StringView(companyEmail)},
        {u"inn"_s, QLatin1StringView(companyInn)}, {u"payment_address"_s, QLatin1StringView(paymentAddress)},
        {u"sno"_s, u"osn"_s}};
    QJsonArray items;
    for (const SaleLine& line : sale.lines)
        items.append(itemOf(line));
    const QJsonObject request{
        {u"external_id"_s, QLatin1StringView(externalId)},
        {u"receipt"_s,
            QJsonObject{
                {u"client"_s, QJsonObject{{u"email"_s, sale.contact}}},
                {u"company"_s, company},
                {u"items"_s, items},
                {u"payments"_s, QJsonArray{QJsonObject{{u"sum"_s, sale.total}, {u"type"_s, 1}}}},
                {u"total"_s, sale.total},
            }},
        {u"timestamp"_s, QString::fromStdString(timestampNow())},
    };
    return QJsonDocument(request).toJson(QJsonDocument::Compact);
}

} // namespace bench
