#include "bench/ours/device.h"

#include "bench/ours/trust.h"
#include "host/abstractfiscalregister.h"
#include "host/abstractfrdriver.h"
#include "host/vposfrdriver.h"

#include <QJsonObject>
#include <QPluginLoader>
#include <QVariant>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace bench {

Device::Device(const Endpoint& endpoint, int lines)
    : sale(sampleSale(lines))
{
    QPluginLoader loader(QStringLiteral(PLUGIN_FILE));
    QVariant made;
    if (QObject* factory = loader.instance())
        QMetaObject::invokeMethod(factory, "getObject", Qt::DirectConnection, Q_RETURN_ARG(QVariant, made));
    object.reset(made.value<QObject*>());
    if (!object)
        throw std::runtime_error("cannot load the plugin: " + loader.errorString().toStdString());
    object->setProperty("url", QString::fromStdString(endpoint.url()));
    object->setProperty("login", u"bench"_s);
    object->setProperty("password", u"bench"_s);
    object->setProperty("groupCode", QString::fromLatin1(groupCode));
    object->setProperty("email", QString::fromLatin1(companyEmail));
    object->setProperty("inn", QString::fromLatin1(companyInn));
    object->setProperty("paymentAddress", QString::fromLatin1(paymentAddress));
    trust(endpoint);
    QMetaObject::invokeMethod(object.get(), "init", Qt::DirectConnection);
    driver = qobject_cast<hw::AbstractFiscalRegister*>(object.get())->getLegacyDriver();
    cloud = dynamic_cast<VposFrDriver*>(driver);
    driver->connect();
}

std::int64_t Device::registerSale()
{
    collect(*driver, sale);
    const QString uuid = cloud->documentClose(sale.document);
    const QJsonObject answer = cloud->getDocumentInfo(uuid);
    return answer.value("payload"_L1)["fiscal_document_attribute"_L1].toInteger();
}

void Device::setBuyer(std::int64_t number)
{
    sale.contact = FdRequisite(EFrDriver::BuyerContact, u"buyer%1@example.com"_s.arg(number));
}

} // namespace bench
