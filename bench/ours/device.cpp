#include "bench/ours/device.h"

#include "bench/ours/trust.h"
#include "host/abstractfiscalregister.h"
#include "host/abstractfrdriver.h"
#include "host/vposfrdriver.h"

#include <QJsonObject>
#include <QVariant>

#include <stdexcept>

namespace bench {

using namespace Qt::Literals::StringLiterals;

Device::Device(const Endpoint& endpoint)
{
    QPluginLoader loader(QStringLiteral(PLUGIN_FILE));
    QVariant made;
    if (QObject* factory = loader.instance())
        QMetaObject::invokeMethod(factory, "getObject", Qt::DirectConnection, Q_RETURN_ARG(QVariant, made));
    object.reset(made.value<QObject*>());
    if (!object)
        throw std::runtime_error("no plugin: " + loader.errorString().toStdString());
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

std::int64_t Device::registerSale(const HostSale& sale)
{
    collect(*driver, sale);
    const QString uuid = cloud->documentClose(sale.document);
    const QJsonObject answer = cloud->getDocumentInfo(uuid);
    return answer.value("payload"_L1)["fiscal_document_attribute"_L1].toInteger();
}

} // namespace bench
